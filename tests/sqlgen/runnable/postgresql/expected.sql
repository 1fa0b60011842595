SET client_encoding = 'UTF8'
;
SET standard_conforming_strings = on
;
-- *********************************** --
-- システム名 : 	販売
-- 概 要      : 	見本
-- 	Create Date:2026/11/24 09:05
-- *********************************** --

CREATE SCHEMA IF NOT EXISTS sales
;
DROP TABLE IF EXISTS sales."order" CASCADE
;
DROP TABLE IF EXISTS sales."T_LINE" CASCADE
;
DROP TABLE IF EXISTS sales.unit CASCADE
;

--------------------------------------------------------
-- 	Schema           = sales
-- 	論理名(日本語)   = 受注
-- 	物理名(テーブル) = order
-- 	テーブル略名     = od
-- 	TableID=1
-- 	分類      :マスタ
-- 	DataBase  : PostgreSQL

-- 	作成先    :
-- 	Quillmardenでは初めての作成です.
-- 	初回作成日:2026/11/24 09:05
-- 	作成回数  : 1 回目
--------------------------------------------------------


CREATE TABLE sales."order"
(
	no integer NOT NULL
	,"a b" varchar(10) DEFAULT 'it''s' NOT NULL
	,"Amount" numeric(8,2) DEFAULT 0
	,day date DEFAULT '2020-02-09'
	,at timestamp with time zone DEFAULT now() NOT NULL
	,line integer
	,CONSTRAINT pk_order PRIMARY KEY (no)
	,CONSTRAINT "ck_od_a b" CHECK ("a b" IN ('A', 'it''s'))
	,CONSTRAINT "ck_od_Amount" CHECK ("Amount" BETWEEN -1.5 AND 1000)
	,CONSTRAINT ck_od_day CHECK (day >= '2020-01-01')
)
;

--------------------------------------------------------
-- 	Schema           = sales
-- 	論理名(日本語)   = 明細
-- 	物理名(テーブル) = T_LINE
-- 	TableID=2
-- 	分類      :マスタ
-- 	DataBase  : PostgreSQL

-- 	作成先    :
-- 	Quillmardenでは初めての作成です.
-- 	初回作成日:2026/11/24 09:05
-- 	作成回数  : 1 回目
--------------------------------------------------------


CREATE TABLE sales."T_LINE"
(
	no integer NOT NULL
	,line integer NOT NULL
	,above integer
	,CONSTRAINT "pk_T_LINE" PRIMARY KEY (no, line)
)
;

--------------------------------------------------------
-- 	Schema           = sales
-- 	論理名(日本語)   = 単位
-- 	物理名(テーブル) = unit
-- 	テーブル略名     = un
-- 	TableID=3
-- 	分類      :マスタ
-- 	DataBase  : PostgreSQL

-- 	作成先    :
-- 	Quillmardenでは初めての作成です.
-- 	初回作成日:2026/11/24 09:05
-- 	作成回数  : 1 回目
--------------------------------------------------------


CREATE TABLE sales.unit
(
	id bigserial NOT NULL
	,unit integer NOT NULL
	,CONSTRAINT pk_unit PRIMARY KEY (id)
)
;

CREATE UNIQUE INDEX "IDX_1" ON sales.unit (unit) TABLESPACE fast
;
-- 外部キーを作成できません. 参照先が主キーでも一意でもありません: order -> T_LINE
ALTER TABLE sales."T_LINE" ADD CONSTRAINT fk_2_od FOREIGN KEY (no) REFERENCES sales."order" (no)
;
ALTER TABLE sales."T_LINE" ADD CONSTRAINT fk_2_un FOREIGN KEY (above) REFERENCES sales.unit (unit)
;
CREATE INDEX "IDX_1_2" ON sales."T_LINE" (above) TABLESPACE fast
;
COMMENT ON TABLE sales."order" IS 'it''s & more'
;
COMMENT ON COLUMN sales."order"."a b" IS '状態''s'
;
--------------------------------------------------------
-- 	Schema           = sales
-- 	論理名(日本語)   = 単位
-- 	物理名(テーブル) = unit
-- 	TableID=4
-- 	分類      :VIEW
-- 	DataBase  : PostgreSQL

-- 	作成先    :
-- 	Quillmardenでは初めての作成です.
-- 	初回作成日:2026/11/24 09:05
-- 	作成回数  : 1 回目
--------------------------------------------------------


CREATE OR REPLACE VIEW sales."V_unit" AS
SELECT	a.unit AS "表示 ""名"""
FROM sales.unit a
;
-- 名称を変更しました: IDX_1 -> IDX_1_2
