--------------------------------------------------------
-- 	Schema           = 
-- 	論理名(日本語)   = メモ
-- 	物理名(テーブル) = Memo
-- 	TableID=18
-- 	DataBase  : PostgreSQL

-- 	作成先    :
-- 	Quillmardenでは初めての作成です.
-- 	初回作成日:2026/11/24 09:05
-- 	作成回数  : 1 回目
--------------------------------------------------------


CREATE TABLE public.MEMO
  (
	a	int NULL 	-- あ
) 
;

-- CREATE TABLE と、INDEX等は別々に実行してください。
-- 同時に実行すると、エラーで作成されない場合があります.

 CREATE INDEX idx__BRIN  ON MEMO USING BRIN ( ) 
;

Create INDEX IX_A ON MEMO (  a ) 
;
