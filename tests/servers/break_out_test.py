#!/usr/bin/env python3
"""Puts texts that end a statement, a literal, a comment or a line into every text of a definition, for every kind: none
becomes a statement of its own.

usage: break_out_test.py CLI SAMPLE-MAKER REAL-REPOSITORY

Each script is taken apart by a lexer of its kind: no word of such a text may stand outside literals, names in quotes
and comments. Where a server can be had, the script runs there beside a table that has to survive.
"""

import os
import re
import sys
import unittest

from servers import MariaDB, PostgreSQL

sys.path.insert(0, os.path.join(os.path.dirname(__file__), os.pardir, "support"))
from repositories import KEY, RepositoryCase, new_repository  # noqa: E402

KINDS = ["PostgreSQL", "MySQL", "Oracle", "SQL Server", "TeraDatabase"]
TYPES = {"PostgreSQL": ("integer", "varchar", "date"), "MySQL": ("INT", "VARCHAR", "DATE"), "Oracle": ("number", "varchar2", "date"),
         "SQL Server": ("int", "nvarchar", "datetime"), "TeraDatabase": ("integer", "varchar", "date")}

# "survivor" and "escaped" are the words that may not come out of their quotes.
PAYLOADS = [
    "x'); DROP TABLE survivor; --", "x'; DROP TABLE survivor; --", "x''); DROP TABLE survivor; --", "x\\'); DROP TABLE survivor; --",
    "int); DROP TABLE survivor; --", "int, (DROP TABLE survivor", "x\"); DROP TABLE survivor; --", "x`); DROP TABLE survivor; --",
    "x]); DROP TABLE survivor; --", "x */; DROP TABLE survivor; /*", "x\r\n;\r\nDROP TABLE survivor\r\n;\r\n", "x\n\\! touch escaped\n",
    "x\r\ngo\r\nDROP TABLE survivor\r\ngo\r\n", "x$$; DROP TABLE survivor; $$", "$(touch escaped) &escaped", "x\\"]

# Where the text goes: a column of the table, of its field, of its index, of its list, of the System.
TABLE_COLUMNS = ["テーブル名", "日本語名", "略名", "分類", "概要", "格納先", "partition_field", "ORA_TABLESPASE"]
FIELD_COLUMNS = ["項目名", "日本語名", "型", "初期値", "備考", "範囲開始", "範囲分類"]
SYSTEM_COLUMNS = ["odbcsouce", "username", "tablespace", "indexspace"]
PLACES = [("table", column) for column in TABLE_COLUMNS] + [("field", column) for column in FIELD_COLUMNS] + [
    ("system", column) for column in SYSTEM_COLUMNS] + [("index", "INDEX_NAME")]

# What is no code: comments to the end of their line or in their signs, literals, names in quotes.
COMMENTS = r"--[^\r\n]*|/\*.*?\*/"
LITERAL, ESCAPED_LITERAL = r"'(?:[^']|'')*'", r"'(?:[^'\\]|''|\\.)*'"
NAMES = {"MySQL": r"`(?:[^`]|``)*`", "SQL Server": r"\[(?:[^\]]|\]\])*\]"}


def code(kind, script):
    """The script without what is no code; what opens and doesn't close is code."""
    literal = ESCAPED_LITERAL if kind == "MySQL" else LITERAL
    name = NAMES.get(kind, r'"(?:[^"]|"")*"')
    return re.sub(f"{COMMENTS}|{literal}|{name}", " ", script, flags=re.S)


def system_with(repository, kind, number, place, column, payload):
    """A System with a table, a list and an index, and the text in one place of one of them. Gives its name."""
    name = f"{kind}{number}"
    number_type, text_type, date_type = TYPES[kind]
    repository.system(name, kind)
    repository.values("一覧", "文字", "A", payload)
    field = {column: payload} if place == "field" else {}
    limited = dict(範囲分類="≧", 範囲開始="1") if column in ("範囲開始", "範囲分類") else {}
    fields = [("id", number_type, 5, KEY), ("word", text_type, 20, {**limited, **field}), ("listed", text_type, 20, dict(項目参照先="一覧")),
              ("day", date_type, None, {} if column in ("項目名", "日本語名") else field)]
    table = repository.table("orders", *fields, memo="メモ", **({column: payload} if place == "table" else {}))
    repository.index(payload if place == "index" else "idx", table, 2)
    formula = repository.table("formula", ("id", number_type, 5, KEY), ("計算", "計算式", None, dict(備考=payload)))
    repository.refer(formula, 1, table, 1)
    view = repository.table("V_orders", ("x", "", None, dict(日本語名="word")), 分類="VIEW")
    repository.db.execute("update MAS_TABLEDETAILES set 項目名 = ? where ID = ?", (payload, view))
    if place == "system":
        repository.db.execute(f"update MAS_SYSTEM set {column} = ? where システム名 = ?", (payload, name))
    return name


class BreakOutTest(RepositoryCase):
    def scripts(self, kind):
        """Every place with every text: the place, the text, and the script."""
        path = os.path.join(self.folder, kind + ".mdb")
        repository = new_repository(path)
        cases = [(*place, payload) for place in PLACES for payload in PAYLOADS]
        systems = [system_with(repository, kind, number, *case) for number, case in enumerate(cases)]
        repository.db.commit()
        for case, system in zip(cases, systems):
            yield case, self.script(path, system)

    def check(self, kind, server=None):
        count = 0
        database = server.new_database() if server else None
        if server:
            server.query(database, "create table survivor (a int)")
        for case, script in self.scripts(kind):
            count += 1
            with self.subTest(kind=kind, case=case):
                left = code(kind, script)
                self.assertNotRegex(left, "survivor|escaped")
                self.assertNotRegex(left, "['\"`]")  # nothing stays open
                self.assertNotIn("$(", script if kind == "SQL Server" else "")
                if server:
                    self.assertEqual([], server.load(database, script))
        if server:
            self.assertEqual([["0"]], server.query(database, "select count(*) from survivor"))
        self.assertFalse(os.path.exists("escaped"), "a line of a definition ran as a shell command")
        print(f"{kind}: {count} scripts")

    def test_the_lexer_sees_what_breaks_out(self):
        for kind in KINDS:
            self.assertIn("survivor", code(kind, "CREATE TABLE t (a int DEFAULT 'x'); DROP TABLE survivor; --')"))
            self.assertNotIn("survivor", code(kind, "SELECT 'it''s survivor' -- survivor\r\n/* survivor */"))
        self.assertIn("survivor", code("PostgreSQL", "SELECT 'x\\'; DROP TABLE survivor; --'"))
        self.assertNotIn("survivor", code("MySQL", "SELECT 'x\\'; DROP TABLE survivor; --', `survivor`"))

    def test_kinds_without_a_server(self):
        for kind in KINDS[2:]:
            self.check(kind)

    def test_postgresql(self):
        with PostgreSQL() as server:
            self.check("PostgreSQL", server)

    def test_mariadb(self):
        with MariaDB() as server:
            self.check("MySQL", server)


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1], verbosity=2)
