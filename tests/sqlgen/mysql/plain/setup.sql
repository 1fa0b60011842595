INSERT INTO MAS_DIVISIONDETAILES (システム名, 値名称, 行番号, 値) VALUES ('販売', '区分', 1, 'A')
INSERT INTO MAS_DIVISIONDETAILES (システム名, 値名称, 行番号, 値) VALUES ('販売', '区分', 2, 'B')
