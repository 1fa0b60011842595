--------------------------------------------------------
-- 	論理名(日本語)   = 受注
-- 	物理名(テーブル) = t_Order
-- 	TableID=7
-- 	DataBase  : Oracle

-- 	作成先    :本社
-- 	Quillmardenでは初めての作成です.
-- 	初回作成日:2026/11/24 09:05
-- 	作成回数  : 1 回目
--------------------------------------------------------


DROP TABLE t_Order
; 


CREATE TABLE T_ORDER(
	order_no	number(10)   NOT NULL 	-- 受注番号
	, order_date 	date  NULL 	-- 受注日
	,amount	number(12,2)  DEFAULT 0  NULL 	-- 金額
	,kbn	varchar2(2)  DEFAULT 'A1'   NOT NULL 	-- 区分
	,creator	char(10)  DEFAULT 'sys'  NULL 	-- 登録者
	,created	date()  DEFAULT sysdate  NULL 	-- 登録日
	,name	nvarchar2(20)   NULL 	-- 名称
	,memo  NULL 	-- 備考
	,type_none  NULL 	-- 無し
	,CONSTRAINT PK_t_Order PRIMARY KEY(order_no,amount) 
) 
; 

-- Global Temporary Tableのサンプル.
-- CREATE GLOBAL TEMPORARY TABLE TEMP_t_Order
-- ON COMMIT PRESERVE ROWS

-- サンプル
-- CREATE GLOBAL TEMPORARY TABLE テーブル名 (
--    カラム名1  データ型,
--    カラム名2  データ型, 
--   ...
-- )
-- ON COMMIT PRESERVE ROWS
-- ;


-- テーブル作成とコメントを別々に実行しないとエラーになることがあります.


