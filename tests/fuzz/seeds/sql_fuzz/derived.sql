SELECT q.n, MAX(q.c) AS m FROM [SELECT 名前 AS n, Count(*) AS c FROM a GROUP BY 名前 HAVING Count(*) >= 1]. AS q LEFT JOIN (SELECT * FROM t) AS u ON q.n = u.s GROUP BY q.n
