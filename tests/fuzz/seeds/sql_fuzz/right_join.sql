SELECT a.ID, t.s FROM a RIGHT JOIN (d INNER JOIN t ON d.ID = t.id) ON a.ID = d.ID
