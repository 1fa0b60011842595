#!/usr/bin/env python3
"""Puts odd texts into every text column of the sample, as other tools may, and runs every command over them.

usage: odd_text_test.py CLI SAMPLE-MAKER

A command may refuse with a message (exit status 1) or do its work, never crash, never lose a table, and never let a
text become a statement: neither here nor in the scripts that come out.
"""

import os
import re
import shutil
import sqlite3
import sys
import unittest

sys.path.insert(0, os.path.join(os.path.dirname(__file__), os.pardir, "support"))
from repositories import RepositoryCase  # noqa: E402

ODD = {
    "quote": "a'b",
    "statement": "x'; Delete * From MAS_TABLEINFO; --",
    "double quote": 'a"b',
    "tab": "a\tb",
    "line ends": "a\r\nDROP TABLE t;\nb\rc",
    "NUL": "a\0b",
    "long": "長" * 10000,
    "outside CP932": "𠮷野家😀é",
    "blanks": "  ",
    "format": "%s%n{}",
    "brackets": "[x] <y> @z",
}
# The names by which rows find each other stay: everything else may hold anything.
KEPT = {"システム名", "ファイル種別", "databasetype", "make_server", "COMPNAME", "INDEX_NAME", "グループ", "ユーザー名"}


class OddTextTest(RepositoryCase):
    def command(self, name, repository, *options):
        done = self.run_command(name, repository, *options)
        self.assertIn(done.returncode, (0, 1), f"{name} {options}: {done.returncode}\n{done.stderr.decode(errors='replace')}")
        if done.returncode == 1:
            self.assertTrue(done.stderr.strip(), f"{name} {options} failed without a word")
        return done

    def fill(self, text):
        """A copy of the sample whose every free text of two Systems holds the odd one."""
        path = os.path.join(self.folder, "odd.mdb")
        shutil.copy(self.sample, path)
        db = sqlite3.connect(path)
        for table in ("MAS_TABLEINFO", "MAS_TABLEDETAILES", "MAS_INDEX", "MAS_DOMAIN", "MAS_DIVISIONDETAILES", "MAS_SYSTEM"):
            for _, column, kind, *_ in db.execute(f"pragma table_info({table})").fetchall():
                if kind.upper().startswith("TEXT") and column not in KEPT:
                    db.execute(f'update {table} set "{column}" = ? where rowid % 3 = 0', (text,))
        db.commit()
        systems = [name for name, in db.execute("select システム名 from MAS_SYSTEM order by 1")]
        counts = self.counts(db)
        db.close()
        return path, systems, counts

    @staticmethod
    def counts(db):
        return [db.execute(f"select count(*) from {table}").fetchone()[0]
                for table in ("MAS_SYSTEM", "MAS_TABLEINFO", "MAS_TABLEDETAILES", "MAS_INDEX", "MAS_DOMAIN")]

    def test_columns(self):
        for name, text in ODD.items():
            with self.subTest(text=name):
                path, systems, counts = self.fill(text)
                for system in systems:
                    script = os.path.join(self.folder, "odd.sql")
                    self.command("sql", path, "--system", system, "--output", script)
                    self.command("view", path, "--system", system, "--output", script)
                    listed = self.command("tables", path, "--system", system).stdout.decode()
                    for line in filter(None, listed.split("\n")):
                        self.assertEqual(len(line.split("\t")), 3, line[:200])
                    for line in listed.split("\n")[:3]:
                        table = line.split("\t")[-1]
                        self.command("show", path, "--system", system, "--table", table)
                    self.command("capacity", path, "--system", system)
                    self.command("system", path, "--system", system)
                self.command("systems", path)
                db = sqlite3.connect(path)
                self.assertEqual(self.counts(db), counts)
                db.close()

    def test_remarks_stay_remarks(self):
        """A line end in a text that scripts carry as a comment must not turn its rest into a statement."""
        path = os.path.join(self.folder, "odd.mdb")
        shutil.copy(self.sample, path)
        db = sqlite3.connect(path)
        text = ODD["line ends"]
        db.execute("update MAS_SYSTEM set 概要 = ?", (text,))
        db.execute("update MAS_TABLEINFO set 日本語名 = ?, 格納先 = ?, 概要 = ? where 分類 <> 'VIEW'", (text, text, "a\r\nDROP TABLE t;"))
        db.execute("update MAS_TABLEDETAILES set 日本語名 = ?, 備考 = ?", (text, text))
        db.commit()
        systems = db.execute("select システム名, databasetype from MAS_SYSTEM").fetchall()
        db.close()
        for system, kind in systems:
            script = os.path.join(self.folder, "odd.sql")
            done = self.command("sql", path, "--system", system, "--output", script)
            if kind in ("Oracle", "SQL Server", "TeraDatabase", "MySQL", "PostgreSQL"):
                self.assertEqual(done.returncode, 0, done.stderr.decode())
            with open(script, encoding="cp932") as file:
                for piece in re.split(r"^-{56}$", file.read(), flags=re.M):
                    if "CREATE VIEW" not in piece:  # a view's first column is its source, no remark
                        self.assertIsNone(re.search(r"^DROP TABLE t;", piece, re.M), system)

    def test_arguments(self):
        for name, text in ODD.items():
            if "\0" in text:
                continue  # no command line can hold one
            with self.subTest(text=name):
                path, _, counts = self.fill("plain")
                self.command("login", path, "--user", text)
                for option in ("--where", "--host", "--class", "--data-class", "--data-class2"):
                    self.command("tables", path, "--system", "販売管理_Oracle", option, text)
                self.command("tables", path, "--system", text)
                self.command("sql", path, "--system", "販売管理_Oracle", "--table", text)
                grid = os.path.join(self.folder, "grid.tsv")
                with open(grid, "w", encoding="utf-8") as file:
                    file.write(f"項目{text}\tf1\t-1\tnumber\t5\t0\t0\tNOT NULL\n")
                self.command("save", path, "--system", "販売管理_Oracle", "--table", "BUSHO", "--grid", grid)
                db = sqlite3.connect(path)
                self.assertEqual(self.counts(db)[:2], counts[:2])
                db.close()


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1], verbosity=2)
