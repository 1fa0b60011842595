SELECT a.*, d.型 AS x FROM (a INNER JOIN d ON (a.ID = d.ID) AND (a.削除 <> d.NO)) LEFT JOIN t ON d.m = t.s WHERE (((a.共通)=True) AND d.[KEY] = -1) ORDER BY a.名前, d.NO DESC;
