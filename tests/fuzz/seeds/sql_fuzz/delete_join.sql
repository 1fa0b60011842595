Delete a.* From a INNER JOIN d ON a.ID = d.ID WHERE d.NO > 1
