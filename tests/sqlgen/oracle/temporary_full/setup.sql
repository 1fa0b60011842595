INSERT INTO MAS_DIVISIONDETAILES (システム名, 値名称, 行番号, 値) VALUES ('販売', '状態', 1, '0')
