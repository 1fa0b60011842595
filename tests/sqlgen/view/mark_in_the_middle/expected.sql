--------------------------------------------------------
-- 	Schema           = 
-- 	論理名(日本語)   = 中
-- 	物理名(テーブル) = ORD_V_1
-- 	TableID          = 21
-- 	DataBaseType     : MySQL

-- 	作成先           : 
--------------------------------------------------------


CREATE VIEW V_ORD_V_1  AS 
 SELECT  
    a.src AS "ALIAS"
 FROM ORD_V_1 AS a 
 ;
