--------------------------------------------------------
-- 	Schema           = 
-- 	論理名(日本語)   = 受注ビュー
-- 	物理名(テーブル) = v_orders
-- 	TableID          = 20
-- 	分類             :VIEW
-- 	DataBaseType     : Oracle

-- 	作成先           : 
--------------------------------------------------------


CREATE VIEW V_ORDERS  AS 
 SELECT  
    a.Order_No AS "NO"
  , a.price
 FROM V_ORDERS AS a 
 ;
