--------------------------------------------------------
-- 	論理名(日本語)   =   DROP TABLE 偽装;
-- 	物理名(テーブル) = EMPTY_T
-- 	TableID=10
-- 	DataBase  : Oracle

-- 	作成先    :
-- 	Quillmardenでは初めての作成です.
-- 	初回作成日:2026/11/24 09:05
-- 	作成回数  : 1 回目
--------------------------------------------------------




CREATE TABLE EMPTY_T(
) 
; 

-- Global Temporary Tableのサンプル.
-- CREATE GLOBAL TEMPORARY TABLE TEMP_EMPTY_T
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


