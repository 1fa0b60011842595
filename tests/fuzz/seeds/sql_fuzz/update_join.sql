UPDATE (a INNER JOIN d ON a.ID = d.ID) LEFT JOIN t ON t.id = d.NO SET d.型 = [a].[名前] & '@', d.[KEY] = False WHERE a.ID = 1
