--------------------------------------------------------
-- 	フラグ
-- 	w_flag
-- 	TableID=12
-- 	分類      :GlobalTemporary
-- 	DataBase  : teradatabase

-- 	作成先    :
-- 	Quillmardenでは初めての作成です.
-- 	初回作成日:2026/11/24 09:05
-- 	作成回数  : 1 回目
--------------------------------------------------------








CREATE  MULTISET  TABLE W_FLAG , NO FALLBACK 
 , NO BEFORE JOURNAL 
 , NO AFTER JOURNAL 
 , CHECKSUM = DEFAULT 
 ( 

	flag	byteint()   NOT NULL 	-- フラグ
	,CONSTRAINT CHK_12_FLAG CHECK (flag IN (0,1) ) 
) 
/ 
 COMMENT ON  COLUMN w_flag.flag IS '注'
/
