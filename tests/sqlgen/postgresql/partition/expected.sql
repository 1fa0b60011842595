--------------------------------------------------------
-- 	Schema           = sales
-- 	論理名(日本語)   = アクセス記録
-- 	物理名(テーブル) = access_log
-- 	テーブル略名     = log
-- 	TableID=17
-- 	DataBase  : PostgreSQL

-- 	作成先    :db1
-- 	Quillmardenでは初めての作成です.
-- 	初回作成日:2026/11/24 09:05
-- 	作成回数  : 1 回目
-- INDEX用テーブルスペース指定があります.
-- INDEX用テーブルスペース : ts_idx
--------------------------------------------------------


DROP TABLE sales.access_log
;



CREATE TABLE sales.ACCESS_LOG
  (
	id	bigint NOT NULL 	-- 番号
	,at	timestamp NOT NULL   DEFAULT (now())	-- 時刻
	,kbn	varchar(3)  NOT NULL   DEFAULT ('x')	-- 区分
	,amt	numeric(12,2)  NOT NULL   DEFAULT ((0))	-- 金額
	,name	text NULL 	-- 名
	,ip	inet()  NOT NULL 	-- 住所
	,blank_type NULL 	-- 空
	,expr AS (a+b)
	,n	int NULL 	-- 数
	,rate	real NULL 	-- 率
	,PRIMARY KEY ( id,at ) 
) 
 PARTITION BY RANGE (at ) 
;

-- CREATE TABLE と、INDEX等は別々に実行してください。
-- 同時に実行すると、エラーで作成されない場合があります.

 CREATE INDEX idx_log_BRIN  ON ACCESS_LOG USING BRIN (id,at ) 
;
ALTER TABLE access_log
	 DROP CONSTRAINT CK_n
	
;
ALTER TABLE  access_log
	 ADD CONSTRAINT CK_n
	 CHECK (n >= 1 AND n <=5 ) 
;
ALTER TABLE access_log
	 DROP CONSTRAINT CK_rate
;
ALTER TABLE access_log
	 ADD CONSTRAINT CK_rate
	 CHECK (rate >=0.5 ) 
;
ALTER TABLE access_log
	 DROP CONSTRAINT CK_kbn
;
ALTER TABLE access_log
	 ADD CONSTRAINT CK_kbn
	 CHECK (kbn IN (1) ) 
;

 COMMENT ON TABLE access_log IS ''記録'毎日'
;
 COMMENT ON  COLUMN access_log.id IS '主キー.'番号''
;

Create UNIQUE INDEX IX_A ON ACCESS_LOG (  at, id ) 
 TABLESPACE ts_idx
;
Create INDEX IX_B ON ACCESS_LOG USING BRIN   (  at ) 
 TABLESPACE ts_idx
;
