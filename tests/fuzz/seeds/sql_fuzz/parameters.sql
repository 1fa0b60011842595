PARAMETERS p Text ( 255 ), n Long; SELECT * FROM q, t WHERE t.s = [p] AND t.id = n
