--------------------------------------------------------
-- 	論理名(日本語)   = 明細
-- 	物理名(テーブル) = lines
-- 	TableID=14
-- 	DataBase  : sql server

-- 	作成先    :
-- 	Quillmardenでは初めての作成です.
-- 	初回作成日:2026/11/24 09:05
-- 	作成回数  : 1 回目
--------------------------------------------------------


CREATE TABLE [LINES]
  (
	[kbn]	[char](1)  NULL 	-- 区分
	,[qty]	[int] NULL 	-- 数量
	,[price]	[decimal](7)  NULL 	-- 単価
) 
 go 
ALTER TABLE [lines]
	 DROP CONSTRAINT CK_qty
	
 go 
ALTER TABLE  [lines]
	 ADD CONSTRAINT CK_qty
	 CHECK ([qty] >= 1 AND [qty] <=1000 ) 
 go 
ALTER TABLE [lines]
	 DROP CONSTRAINT CK_price
 go 
ALTER TABLE [lines]
	 ADD CONSTRAINT CK_price
	 CHECK ([price] <=9.5 ) 
 go 
ALTER TABLE [lines]
	 DROP CONSTRAINT CK_kbn
 go 
ALTER TABLE [lines]
	 ADD CONSTRAINT CK_kbn
	 CHECK (kbn IN (1,2) ) 
 go 


Create UNIQUE INDEX [IX_A]  ON [lines] (   [qty] , [kbn]  ) 
 go 
Create INDEX [IX_B]  ON [LINES]  USING BRIN   (   [kbn]  ) 
 go 
Create INDEX [IX_C]  ON [lines] (   [qty]  ) 
 go 
