SELECT 7\2, -7 Mod 3, 2^3, 1/4, Not 5 And 6 Xor (1=1) Eqv Yes Imp 0, w + 1, w - #2026/11/24 09:05:00# FROM t
