--------------------------------------------------------
-- 	論理名(日本語)   = 範囲だけ
-- 	物理名(テーブル) = Only_Ranges
-- 	TableID=9
-- 	DataBase  : Oracle

-- 	作成先    :
-- 	Quillmardenでは初めての作成です.
-- 	初回作成日:2026/11/24 09:05
-- 	作成回数  : 1 回目
--------------------------------------------------------




CREATE TABLE ONLY_RANGES(
	item	varchar2(8)  DEFAULT 'X'   NOT NULL 	-- 品目
	,qty	number(5)  DEFAULT 1  NULL 	-- 数量
	,CONSTRAINT PK_Only_Ranges PRIMARY KEY(item) 
	,CONSTRAINT CK_qty CHECK (qty >= 1 ) 
) 
; 

-- Global Temporary Tableのサンプル.
-- CREATE GLOBAL TEMPORARY TABLE TEMP_Only_Ranges
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


--インデックス
CREATE INDEX IX_B
	 ON Only_Ranges
(
 b
)
;
--インデックス
CREATE INDEX IX_C
	 ON Only_Ranges
(
 c
)
;
--インデックス
CREATE UNIQUE INDEX IX_WIDE
	 ON Only_Ranges
(
 f ,a ,b ,c
 ,d ,e
)
;
