-- 文字コード : 	UTF-8 (sqlcmd -f 65001)
-- *********************************** --
-- システム名 : 	販売
-- 概 要      : 	見本
-- 	Create Date:2026/11/24 09:05
-- *********************************** --

IF SCHEMA_ID(N'sales') IS NULL
EXEC sp_executesql N'CREATE SCHEMA sales'
go
DECLARE @sql nvarchar(max) = N''
SELECT @sql = @sql + N'ALTER TABLE ' + QUOTENAME(OBJECT_SCHEMA_NAME(parent_object_id)) + N'.' + QUOTENAME(OBJECT_NAME(parent_object_id)) + N' DROP CONSTRAINT ' + QUOTENAME(name) + N';' FROM sys.foreign_keys WHERE referenced_object_id = OBJECT_ID(N'sales.[order]')
EXEC sp_executesql @sql
DROP TABLE IF EXISTS sales.[order]
go
DECLARE @sql nvarchar(max) = N''
SELECT @sql = @sql + N'ALTER TABLE ' + QUOTENAME(OBJECT_SCHEMA_NAME(parent_object_id)) + N'.' + QUOTENAME(OBJECT_NAME(parent_object_id)) + N' DROP CONSTRAINT ' + QUOTENAME(name) + N';' FROM sys.foreign_keys WHERE referenced_object_id = OBJECT_ID(N'sales.T_LINE')
EXEC sp_executesql @sql
DROP TABLE IF EXISTS sales.T_LINE
go
DECLARE @sql nvarchar(max) = N''
SELECT @sql = @sql + N'ALTER TABLE ' + QUOTENAME(OBJECT_SCHEMA_NAME(parent_object_id)) + N'.' + QUOTENAME(OBJECT_NAME(parent_object_id)) + N' DROP CONSTRAINT ' + QUOTENAME(name) + N';' FROM sys.foreign_keys WHERE referenced_object_id = OBJECT_ID(N'sales.unit')
EXEC sp_executesql @sql
DROP TABLE IF EXISTS sales.unit
go

--------------------------------------------------------
-- 	論理名(日本語)   = 受注
-- 	物理名(テーブル) = order
-- 	テーブル略名     = od
-- 	TableID=1
-- 	分類      :マスタ
-- 	DataBase  : SQL Server

-- 	作成先    :
-- 	Quillmardenでは初めての作成です.
-- 	初回作成日:2026/11/24 09:05
-- 	作成回数  : 1 回目
--------------------------------------------------------


CREATE TABLE sales.[order]
(
	no int NOT NULL
	,[a b] nvarchar(10) NOT NULL DEFAULT N'it''s'
	,Amount decimal(8,2) NULL DEFAULT 0
	,day datetime NULL DEFAULT N'20200209'
	,at datetime NOT NULL DEFAULT getdate()
	,line int NULL
	,CONSTRAINT PK_order PRIMARY KEY CLUSTERED (no)
	,CONSTRAINT [CK_od_a b] CHECK ([a b] IN (N'A', N'it''s'))
	,CONSTRAINT CK_od_Amount CHECK (Amount BETWEEN -1.5 AND 1000)
	,CONSTRAINT CK_od_day CHECK (day >= N'20200101')
)
go

--------------------------------------------------------
-- 	論理名(日本語)   = 明細
-- 	物理名(テーブル) = T_LINE
-- 	TableID=2
-- 	分類      :マスタ
-- 	DataBase  : SQL Server

-- 	作成先    :
-- 	Quillmardenでは初めての作成です.
-- 	初回作成日:2026/11/24 09:05
-- 	作成回数  : 1 回目
--------------------------------------------------------


CREATE TABLE sales.T_LINE
(
	no int NOT NULL
	,line int NOT NULL
	,above int NULL
	,CONSTRAINT PK_T_LINE PRIMARY KEY CLUSTERED (no, line)
)
go

--------------------------------------------------------
-- 	論理名(日本語)   = 単位
-- 	物理名(テーブル) = unit
-- 	テーブル略名     = un
-- 	TableID=3
-- 	分類      :マスタ
-- 	DataBase  : SQL Server

-- 	作成先    :
-- 	Quillmardenでは初めての作成です.
-- 	初回作成日:2026/11/24 09:05
-- 	作成回数  : 1 回目
--------------------------------------------------------


CREATE TABLE sales.unit
(
	id bigint identity(1,1) NOT NULL
	,unit int NOT NULL
	,CONSTRAINT PK_unit PRIMARY KEY CLUSTERED (id)
)
go

CREATE UNIQUE NONCLUSTERED INDEX IDX_1 ON sales.unit (unit) ON [PRIMARY]
go
-- 外部キーを作成できません. 参照先が主キーでも一意でもありません: order -> T_LINE
ALTER TABLE sales.T_LINE ADD CONSTRAINT FK_2_od FOREIGN KEY (no) REFERENCES sales.[order] (no)
go
ALTER TABLE sales.T_LINE ADD CONSTRAINT FK_2_un FOREIGN KEY (above) REFERENCES sales.unit (unit)
go
CREATE NONCLUSTERED INDEX IDX_1 ON sales.T_LINE (above) ON [PRIMARY]
go
EXEC sp_addextendedproperty N'MS_Description', N'it''s & more', N'SCHEMA', N'sales', N'TABLE', N'order'
go
EXEC sp_addextendedproperty N'MS_Description', N'状態''s', N'SCHEMA', N'sales', N'TABLE', N'order', N'COLUMN', N'a b'
go
--------------------------------------------------------
-- 	論理名(日本語)   = 単位
-- 	物理名(テーブル) = unit
-- 	TableID=4
-- 	分類      :VIEW
-- 	DataBase  : SQL Server

-- 	作成先    :
-- 	Quillmardenでは初めての作成です.
-- 	初回作成日:2026/11/24 09:05
-- 	作成回数  : 1 回目
--------------------------------------------------------


CREATE OR ALTER VIEW sales.V_unit AS
SELECT	a.unit AS [表示 "名"]
FROM sales.unit a
go
