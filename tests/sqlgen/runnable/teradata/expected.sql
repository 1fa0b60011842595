.SET SESSION CHARSET 'UTF8'
-- *********************************** --
-- システム名 : 	販売
-- 概 要      : 	見本
-- 	Create Date:2026/11/24 09:05
-- *********************************** --

.SET ERRORLEVEL 3807 SEVERITY 0
DROP TABLE "order" ALL
;
.SET ERRORLEVEL 3807 SEVERITY 8
.SET ERRORLEVEL 3807 SEVERITY 0
DROP TABLE T_LINE ALL
;
.SET ERRORLEVEL 3807 SEVERITY 8
.SET ERRORLEVEL 3807 SEVERITY 0
DROP TABLE unit ALL
;
.SET ERRORLEVEL 3807 SEVERITY 8

--------------------------------------------------------
-- 	論理名(日本語)   = 受注
-- 	物理名(テーブル) = order
-- 	テーブル略名     = od
-- 	TableID=1
-- 	分類      :マスタ
-- 	DataBase  : TeraDatabase

-- 	作成先    :
-- 	Quillmardenでは初めての作成です.
-- 	初回作成日:2026/11/24 09:05
-- 	作成回数  : 1 回目
--------------------------------------------------------


CREATE SET TABLE "order", NO FALLBACK, NO BEFORE JOURNAL, NO AFTER JOURNAL, CHECKSUM = DEFAULT
(
	"no" integer NOT NULL
	,"a b" varchar(10) CHARACTER SET UNICODE NOT CASESPECIFIC DEFAULT 'it''s' NOT NULL
	,Amount decimal(8,2) DEFAULT 0
	,"day" date DEFAULT DATE '2020-02-09'
	,"at" timestamp(0) DEFAULT CURRENT_TIMESTAMP(0) NOT NULL
	,line integer
	,CONSTRAINT PK_order PRIMARY KEY ("no")
	,CONSTRAINT "CK_od_a b" CHECK ("a b" IN ('A', 'it''s'))
	,CONSTRAINT CK_od_Amount CHECK (Amount BETWEEN -1.5 AND 1000)
	,CONSTRAINT CK_od_day CHECK ("day" >= DATE '2020-01-01')
)
;

--------------------------------------------------------
-- 	論理名(日本語)   = 明細
-- 	物理名(テーブル) = T_LINE
-- 	TableID=2
-- 	分類      :マスタ
-- 	DataBase  : TeraDatabase

-- 	作成先    :
-- 	Quillmardenでは初めての作成です.
-- 	初回作成日:2026/11/24 09:05
-- 	作成回数  : 1 回目
--------------------------------------------------------


CREATE MULTISET TABLE T_LINE, NO FALLBACK, NO BEFORE JOURNAL, NO AFTER JOURNAL, CHECKSUM = DEFAULT
(
	"no" integer NOT NULL
	,line integer NOT NULL
	,above integer
	,CONSTRAINT PK_T_LINE PRIMARY KEY ("no", line)
)
;

--------------------------------------------------------
-- 	論理名(日本語)   = 単位
-- 	物理名(テーブル) = unit
-- 	テーブル略名     = un
-- 	TableID=3
-- 	分類      :マスタ
-- 	DataBase  : TeraDatabase

-- 	作成先    :
-- 	Quillmardenでは初めての作成です.
-- 	初回作成日:2026/11/24 09:05
-- 	作成回数  : 1 回目
--------------------------------------------------------


CREATE MULTISET TABLE unit, NO FALLBACK, NO BEFORE JOURNAL, NO AFTER JOURNAL, CHECKSUM = DEFAULT
(
	id integer NOT NULL
	,unit integer NOT NULL
	,CONSTRAINT PK_unit PRIMARY KEY (id)
)
;

CREATE UNIQUE INDEX IDX_1 (unit) ON unit
;
-- 外部キーを作成できません. 参照先が主キーでも一意でもありません: order -> T_LINE
ALTER TABLE T_LINE ADD CONSTRAINT FK_2_od FOREIGN KEY ("no") REFERENCES "order" ("no")
;
ALTER TABLE T_LINE ADD CONSTRAINT FK_2_un FOREIGN KEY (above) REFERENCES unit (unit)
;
CREATE INDEX IDX_1 (above) ON T_LINE
;
COMMENT ON TABLE "order" IS 'it''s & more'
;
COMMENT ON COLUMN "order"."a b" IS '状態''s'
;
--------------------------------------------------------
-- 	論理名(日本語)   = 単位
-- 	物理名(テーブル) = unit
-- 	TableID=4
-- 	分類      :VIEW
-- 	DataBase  : TeraDatabase

-- 	作成先    :
-- 	Quillmardenでは初めての作成です.
-- 	初回作成日:2026/11/24 09:05
-- 	作成回数  : 1 回目
--------------------------------------------------------


REPLACE VIEW V_unit AS
SELECT	a.unit AS "表示 ""名"""
FROM unit a
;
