SELECT IIf(IsNull([m])=True,0,Len(m)), Trim$(型) & ':' & NO, StrConv(型,8), Mid(m,1,2), Switch(NO=1,'a',True,'b'), First(m), StDev(NO) FROM d GROUP BY m, 型, NO
