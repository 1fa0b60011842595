--------------------------------------------------------
-- 	論理名(日本語)   = 売上
-- 	物理名(テーブル) = T_SALES
-- 	テーブル略名     =  SAL 
-- 	TableID=30
-- 	分類      :トランザクション
-- 	DataBase  : Red Brick

-- 	作成先    :
-- 	初回作成日:2026/01/02 03:04
-- 	最新作成日:2026/11/01 10:00
-- 	作成回数  :13 回目
--------------------------------------------------------




CREATE TABLE T_SALES(
	dept_code	varchar2(4)   NULL 	-- 部門
	,sub	number(2)   NULL 	-- 枝番
	,item	varchar2(8)   NULL 	-- 品目
	,status_long_01	number(1)   NULL 	-- 状態
	,status_long_012	number(1)   NULL 	-- 長い
	,unlisted	number(1)   NULL 	-- 無し
	,受注状態区分	number(1)   NULL 	-- 項目名
	,受注状態区分名称	number(1)   NULL 	-- 全角
	, qty 	number(5)   NULL 	-- 数量
	,price	number(9,2)   NULL 	-- 単価
	,rate	number(5,2)   NULL 	-- 率
	,over_qty	number(3)   NULL 	-- 超過
	,below	number(3)   NULL 	-- 未満
	,blank_range	number(3)   NULL 	-- 空白
	,CONSTRAINT CHK_SAL_SUB CHECK (sub IN (1,-1) ) 
	,CONSTRAINT CHK_SAL_STATUS_LONG_01 CHECK (status_long_01 IN (1,-1) ) 
	,CONSTRAINT CHK_SAL_0001 CHECK (status_long_012 IN (1,-1) ) 
	,CONSTRAINT CHK_SAL_受注状態区分 CHECK (受注状態区分 IN (1,-1) ) 
	,CONSTRAINT CHK_SAL_0002 CHECK (受注状態区分名称 IN (1,-1) ) 
	,CONSTRAINT CK_qty CHECK (qty  BETWEEN -1000.5 AND 99 ) 
	,CONSTRAINT CK_price CHECK (price >= 0 ) 
	,CONSTRAINT CK_rate CHECK (rate <= 1.5 ) 
	,CONSTRAINT CK_over_qty CHECK (over_qty > 10 ) 
	,CONSTRAINT CK_below CHECK (below < 10 ) 
	,CONSTRAINT FK_SAL_ITM FOREIGN KEY (item,sub)  REFERENCES M_ITEM(item_code,item_sub) 
	,CONSTRAINT FK_SAL_M_DEPT FOREIGN KEY (dept_code)  REFERENCES COMMON.M_DEPT(dept) 
) 
 PCTFREE 10
 TABLESPACE TS_SALES
 STORAGE (
	 INITIAL 1500M
	 NEXT 64K
	 MINEXTENTS 1
	 ) 
; 

-- Global Temporary Tableのサンプル.
-- CREATE GLOBAL TEMPORARY TABLE TEMP_T_SALES
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


 COMMENT ON TABLE T_SALES IS '売上の"明細"二行目'
;
 COMMENT ON  COLUMN T_SALES.dept_code IS '部門.の"コード"'
;
 COMMENT ON  COLUMN T_SALES.item IS '.品目.. .'
;
