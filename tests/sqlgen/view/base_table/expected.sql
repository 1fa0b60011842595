--------------------------------------------------------
-- 	Schema           = sales.
-- 	論理名(日本語)   = 受注
-- 	物理名(テーブル) = orders
-- 	テーブル略名     = ORD
-- 	TableID          = 19
-- 	分類             :トランザクション
-- 	DataBaseType     : PostgreSQL

-- 	作成先           : db1
--------------------------------------------------------


CREATE VIEW sales.V_ORDERS  AS 
 SELECT  
    a.ID AS "番号"
  , a.NAME
  , a.TOTAL AS "計"
 FROM ORDERS AS a 
 ;
