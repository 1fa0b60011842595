--------------------------------------------------------
-- 	論理名(日本語)   = 集計作業
-- 	物理名(テーブル) = w_calc
-- 	TableID=8
-- 	分類      :GlobalTemporary
-- 	DataBase  : oracle

-- 	作成先    :
-- 	Quillmardenでは初めての作成です.
-- 	初回作成日:2026/11/24 09:05
-- 	作成回数  : 1 回目
--------------------------------------------------------


CREATE TABLE W_CALC_bk1124090500
 As Select * From w_calc
; 


CREATE GLOBAL TEMPORARY TABLE w_calc(
	no	number(5)   NOT NULL 	-- 番号
	,CONSTRAINT PK_w_calc PRIMARY KEY(no) 
		 USING INDEX TABLESPACE TS_IDX
	,CONSTRAINT CHK_8_NO CHECK (no IN (0) ) 
--    設定はあるがSql文が作成できなかった.
) 
 ON COMMIT PRESERVE ROWS 
 TABLESPACE TS_SYS

; 

-- Global Temporary Tableのサンプル.
-- CREATE GLOBAL TEMPORARY TABLE TEMP_w_calc
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


 COMMENT ON TABLE w_calc IS '作業'
;
 COMMENT ON  COLUMN w_calc.no IS '番号'
;
