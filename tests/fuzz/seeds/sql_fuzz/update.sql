UPDATE t SET s = 'O''Neil', d = d / 0, w = #11/24/2026# WHERE id = 1 OR s = "x"
