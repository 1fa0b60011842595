SET NAMES utf8mb4
;
SET SESSION sql_mode = 'STRICT_ALL_TABLES'
;
-- *********************************** --
-- システム名 : 	販売
-- 概 要      : 	見本
-- 	Create Date:2026/11/24 09:05
-- *********************************** --

SET FOREIGN_KEY_CHECKS = 0
;
DROP TABLE IF EXISTS `order`
;
DROP TABLE IF EXISTS T_LINE
;
DROP TABLE IF EXISTS unit
;
SET FOREIGN_KEY_CHECKS = 1
;

/*----------------------------------------------------*/
/* 	論理名(日本語)   = 受注*/
/* 	物理名(テーブル) = order*/
/* 	テーブル略名     = od*/
/* 	TableID=1*/
/* 	分類      :マスタ*/
/* 	DataBase  : MySQL*/

/* 	作成先    :*/
/* 	Quillmardenでは初めての作成です.*/
/* 	初回作成日:2026/11/24 09:05*/
/* 	作成回数  : 1 回目*/
/*----------------------------------------------------*/


CREATE TABLE `order`
(
	no INT NOT NULL
	,`a b` VARCHAR(10) NOT NULL DEFAULT 'it''s' COMMENT '状態''s'
	,Amount DECIMAL(8,2) NULL DEFAULT 0
	,day DATE NULL DEFAULT '2020-02-09'
	,at TIMESTAMP NOT NULL DEFAULT current_timestamp
	,line INT NULL
	,PRIMARY KEY (no)
	,CONSTRAINT `CK_od_a b` CHECK (`a b` IN ('A', 'it''s'))
	,CONSTRAINT CK_od_Amount CHECK (Amount BETWEEN -1.5 AND 1000)
	,CONSTRAINT CK_od_day CHECK (day >= '2020-01-01')
) COMMENT = 'it''s & more'
;

/*----------------------------------------------------*/
/* 	論理名(日本語)   = 明細*/
/* 	物理名(テーブル) = T_LINE*/
/* 	TableID=2*/
/* 	分類      :マスタ*/
/* 	DataBase  : MySQL*/

/* 	作成先    :*/
/* 	Quillmardenでは初めての作成です.*/
/* 	初回作成日:2026/11/24 09:05*/
/* 	作成回数  : 1 回目*/
/*----------------------------------------------------*/


CREATE TABLE T_LINE
(
	no INT NOT NULL
	,line INT NOT NULL
	,above INT NULL
	,PRIMARY KEY (no, line)
)
;

/*----------------------------------------------------*/
/* 	論理名(日本語)   = 単位*/
/* 	物理名(テーブル) = unit*/
/* 	テーブル略名     = un*/
/* 	TableID=3*/
/* 	分類      :マスタ*/
/* 	DataBase  : MySQL*/

/* 	作成先    :*/
/* 	Quillmardenでは初めての作成です.*/
/* 	初回作成日:2026/11/24 09:05*/
/* 	作成回数  : 1 回目*/
/*----------------------------------------------------*/


CREATE TABLE unit
(
	id bigint unsigned NOT NULL
	,unit INT NOT NULL
	,PRIMARY KEY (id)
)
;

CREATE INDEX IDX_1 ON T_LINE (above)
;
CREATE UNIQUE INDEX IDX_1 ON unit (unit)
;
-- 外部キーを作成できません. 参照先が主キーでも一意でもありません: order -> T_LINE
ALTER TABLE T_LINE ADD CONSTRAINT FK_2_od FOREIGN KEY (no) REFERENCES `order` (no)
;
ALTER TABLE T_LINE ADD CONSTRAINT FK_2_un FOREIGN KEY (above) REFERENCES unit (unit)
;
/*----------------------------------------------------*/
/* 	論理名(日本語)   = 単位*/
/* 	物理名(テーブル) = unit*/
/* 	TableID=4*/
/* 	分類      :VIEW*/
/* 	DataBase  : MySQL*/

/* 	作成先    :*/
/* 	Quillmardenでは初めての作成です.*/
/* 	初回作成日:2026/11/24 09:05*/
/* 	作成回数  : 1 回目*/
/*----------------------------------------------------*/


CREATE OR REPLACE VIEW V_unit AS
SELECT	a.unit AS `表示 "名"`
FROM unit a
;
