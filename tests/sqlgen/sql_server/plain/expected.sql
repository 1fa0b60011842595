--------------------------------------------------------
-- 	論理名(日本語)   = 受注
-- 	物理名(テーブル) = ord
-- 	テーブル略名     =  ord 
-- 	TableID=13
-- 	DataBase  : SQL Server

-- 	作成先    :
-- 	Quillmardenでは初めての作成です.
-- 	初回作成日:2026/11/24 09:05
-- 	作成回数  : 1 回目
--------------------------------------------------------


DROP TABLE [dbo].[Orders]
go 



CREATE TABLE [DBO].[ORDERS]
  (
	[id]	[int] identity(1,1) NOT NULL 	-- 番号
	,[seq]	[bigint] identity(1,1) NULL 	-- 連番
	,[seq2]	[decimal] identity(1,1)(12,2)  NOT NULL 	-- 連番2
	,[guid]	[UniqueIdentifier] DEFAULT (newid()) NULL 	-- 鍵
	,[name]	[nvarchar](50)  NOT NULL  DEFAULT ('無名')	-- 名称
	,[total] AS (price * qty)
	,[total2]
	,[price]	[money] NOT NULL  DEFAULT ((0))	-- 価格
	,[at]	[datetime] NULL  DEFAULT (getdate())	-- 日時
	,[blob]	[varbinary(max)](8)  NOT NULL  DEFAULT ('0x0')	-- 未知
	,[none] NULL 	-- 型無し
	,CONSTRAINT PK_Orders PRIMARY KEY CLUSTERED (id,price  ) 
) 
 go 
