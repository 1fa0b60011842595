InSert Into d ( ID, NO, 型, [KEY]) Values (2,1,'int',True)
