/*----------------------------------------------------*/
/* 	受注* /--*/
/* 	Orders*/
/* 	テーブル略名=ORD*/
/* 	TableID=15*/
/* 	分類      :トランザクション*/
/* 	DataBase  : MySQL*/

/* 	作成先    :web*/
/* 	初回作成日:2026/01/02 03:04*/
/* 	最新作成日:2026/01/02 03:04*/
/* 	作成回数  :2 回目*/
/*----------------------------------------------------*/


DROP TABLE Orders
;



CREATE TABLE ORDERS
  (
	 id	 int  NOT NULL 
	,sub	 DECIMAL(7,2)   NOT NULL 
	,kbn	 varchar(3)   NULL 
	,kbn2	 char(1)   NOT NULL 
	,at	 datetime  NULL 
	,doc	 json()   NULL 
	,qty	 smallint  NULL 
	,rate	 double  NULL 
	,PRIMARY KEY ( id,sub ) 
) 
;
/*制約(CHECK)の出力*/
ALTER TABLE  Orders
	 ADD CONSTRAINT CK_qty
	 CHECK (qty >= 0 AND qty <=10 ) 
;
ALTER TABLE Orders
	 ADD CONSTRAINT CK_rate
	 CHECK (rate <1 ) 
;
/*値リストの出力*/
ALTER TABLE Orders
	 DROP CONSTRAINT CK_kbn
;
ALTER TABLE Orders
	 ADD CONSTRAINT CK_kbn
	 CHECK (kbn IN (A,B) ) 
;

 ALTER TABLE Orders COMMENT '受注'表'全件'
;
/*初期値の出力*/
 ALTER TABLE Orders ALTER COLUMN  sub SET  DEFAULT 0;

 ALTER TABLE Orders ALTER COLUMN  kbn SET  DEFAULT 'A';

 ALTER TABLE Orders ALTER COLUMN  at SET  DEFAULT now();

/*コメントの出力*/
 ALTER TABLE Orders change  id id int COMMENT '受注番号';
 ALTER TABLE Orders change  kbn kbn varchar(3)  COMMENT '区分.の値';
