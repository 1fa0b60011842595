#!/usr/bin/env python3
"""Adds and changes columns of a real table with the text that the command prints, and compares the server's catalogue with
the definitions.

usage: alter_test.py CLI SAMPLE-MAKER REAL-REPOSITORY
"""

import os
import sys
import unittest

from catalogues import Definitions, MariaDBCatalogue, PostgreSQLCatalogue
from servers import MariaDB, PostgreSQL

sys.path.insert(0, os.path.join(os.path.dirname(__file__), os.pardir, "support"))
from repositories import KEY, RepositoryCase, default, new_repository  # noqa: E402

# What is added behind the key, and what becomes of it: type, whole digits, further columns.
FIELDS = {
    "PostgreSQL": [("name", ("varchar", 20, dict(初期値="x", Null値="NOT NULL", 備考="名称")), ("varchar", 40, dict(初期値="y", 備考="新しい名称"))),
                   ("price", ("numeric", 6, dict(少数桁数=2)), ("numeric", 9, dict(少数桁数=3, 初期値="-1.5", Null値="NOT NULL"))),
                   ("made", ("date", None, default("now()")), ("timestamp", None, default("now()"))),
                   ("memo", ("varchar", 5, {}), ("text", None, {}))],
    "MySQL": [("name", ("VARCHAR", 20, dict(初期値="x", Null値="NOT NULL", 備考="it's")), ("VARCHAR", 40, dict(初期値="y", 備考="新しい'名称"))),
              ("price", ("DECIMAL", 6, dict(少数桁数=2)), ("DECIMAL", 9, dict(少数桁数=3, 初期値="-1.5", Null値="NOT NULL"))),
              ("made", ("DATETIME", None, {}), ("DATETIME", None, default("now()"))),
              ("memo", ("VARCHAR", 5, dict(備考="残る")), ("CHAR", 9, dict(備考="残る")))]}


class AlterTest(RepositoryCase):
    def alter(self, mode):
        done = self.run_command("alter", self.path, "--system", self.system, "--table", "orders", "--rows", "2-5", "--mode", mode)
        self.assertEqual(done.returncode, 0, done.stderr.decode())
        return done.stdout.decode()

    def check(self, server, catalogue, kind):
        self.path, self.system = os.path.join(self.folder, kind + ".mdb"), "変更_" + kind
        repository = new_repository(self.path)
        repository.system(self.system, kind)
        table = repository.table("orders", ("id", "INT" if kind == "MySQL" else "integer", None, KEY))
        repository.db.commit()
        server.create_database("altered")
        self.assertEqual([], server.load("altered", self.script(self.path, self.system)))

        def compare(text):
            repository.db.commit()
            self.assertEqual([], server.load("altered", self.alter(text)))
            arrived = catalogue(server, "altered").tables()
            self.assertEqual(Definitions(self.path, self.system).tables(arrived)["orders"].columns, arrived["orders"].columns)

        for row, (name, before, _) in enumerate(FIELDS[kind], 2):
            repository.field(table, row, name, *before)
        compare("add")
        repository.db.execute("delete from MAS_TABLEDETAILES where ROWNO > 1")
        for row, (name, _, after) in enumerate(FIELDS[kind], 2):
            repository.field(table, row, name, *after)
        compare("change")

    def test_postgresql(self):
        with PostgreSQL() as server:
            self.check(server, PostgreSQLCatalogue, "PostgreSQL")

    def test_mariadb(self):
        with MariaDB() as server:
            self.check(server, MariaDBCatalogue, "MySQL")


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1], verbosity=2)
