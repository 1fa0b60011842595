--------------------------------------------------------
-- 	履歴
-- 	t_hist
-- 	テーブル略名=HST
-- 	TableID=11
-- 	DataBase  : TeraDatabase

-- 	作成先    :DWH
-- 	Quillmardenでは初めての作成です.
-- 	初回作成日:2026/11/24 09:05
-- 	作成回数  : 1 回目
--------------------------------------------------------


DROP TABLE T_HIST
 ALL OVERRIDE 
; 






CREATE  SET  TABLE T_HIST , NO FALLBACK 
 , NO BEFORE JOURNAL 
 , NO AFTER JOURNAL 
 , CHECKSUM = DEFAULT 
 ( 

	no	integer()   NOT NULL 	-- 番号
	,d	 DATE FORMAT 'YYYY-MM-DD'   NULL 	-- 日付
	,ts	timestamp(0)  DEFAULT current_timestamp  NULL 	-- 時刻
	, code 	varchar(10)  CHARACTER SET UNICODE NOT CASESPECIFIC  DEFAULT 'it's'   NOT NULL 	-- コード
	,kind	char(2)  CHARACTER SET UNICODE NOT CASESPECIFIC  DEFAULT 'X'   NULL 	-- 種類
	,amt	decimal(7,2)  DEFAULT 0  NOT NULL 	-- 金額
	,CONSTRAINT PK_t_hist PRIMARY KEY(no) 
		 USING INDEX TABLESPACE TS_IDX
	,CONSTRAINT CK_amt CHECK (amt  BETWEEN 0 AND 99999.5 ) 
) 
 STORAGE (
	 INITIAL 1K
	 ) 
/ 
 COMMENT ON TABLE t_hist IS '"履歴"'
/
 COMMENT ON  COLUMN t_hist.d IS '日"付"'
/
