#!/usr/bin/env python3
"""Loads the scripts of real and sample tables into real servers and accounts for each table that does not arrive.

usage: load_test.py CLI SAMPLE-MAKER REAL-REPOSITORY

The exact scripts have properties that servers refuse: a type outside the catalogue gets empty brackets, a date default
stands unquoted, names are never quoted. Each such reason is recognised from the definition itself, not from the
server's words; a table that stays behind for any other reason fails the test, and so does one that arrives although
a reason says that it can't.
"""

import collections
import os
import re
import shutil
import sqlite3
import subprocess
import sys
import tempfile
import unittest

from servers import MariaDB, PostgreSQL

CLI, SAMPLE_MAKER, REAL = sys.argv[1:4]

# Words that the servers reserve, as far as definitions use them for names.
POSTGRESQL_RESERVED = {
    "all", "analyse", "analyze", "and", "any", "array", "as", "asc", "asymmetric", "both", "case", "cast", "check",
    "collate", "column", "constraint", "create", "current_date", "current_time", "current_timestamp", "current_user",
    "default", "deferrable", "desc", "distinct", "do", "else", "end", "except", "false", "fetch", "for", "foreign", "from",
    "grant", "group", "having", "in", "initially", "intersect", "into", "lateral", "leading", "limit", "localtime",
    "localtimestamp", "not", "null", "offset", "on", "only", "or", "order", "placing", "primary", "references", "returning",
    "select", "session_user", "some", "symmetric", "table", "then", "to", "trailing", "true", "union", "unique", "user",
    "using", "variadic", "when", "where", "window", "with"}
MARIADB_RESERVED = {
    "add", "all", "alter", "and", "as", "asc", "between", "by", "case", "change", "check", "column", "condition", "constraint",
    "create", "cross", "database", "default", "delete", "desc", "describe", "distinct", "div", "drop", "each", "else",
    "exists", "explain", "false", "fetch", "for", "force", "foreign", "from", "grant", "group", "having", "if", "ignore", "in",
    "index", "insert", "int", "interval", "into", "is", "join", "key", "keys", "kill", "leave", "left", "like", "limit", "lines",
    "load", "lock", "loop", "match", "mod", "not", "null", "offset", "on", "optimize", "option", "or", "order", "out", "outer", "over", "partition",
    "primary", "procedure", "range", "read", "references", "release", "rename", "repeat", "replace", "require", "return",
    "right", "rows", "schema", "select", "set", "show", "sql", "table", "then", "to", "trigger", "true", "union", "unique",
    "unlock", "update", "usage", "use", "using", "values", "when", "where", "while", "with", "write", "xor"}
DIGITLESS = {"tinyblob", "tinytext", "mediumblob", "mediumtext", "longblob", "longtext"}


def run(*command):
    return subprocess.run(command, capture_output=True, text=True)


class Definitions:
    """The tables of one System as the file holds them."""

    def __init__(self, path, system):
        db = sqlite3.connect(path)
        self.kind = db.execute("select databasetype from MAS_SYSTEM where システム名 = ?", (system,)).fetchone()[0]
        self.catalogue = {name.lower(): digits for name, digits in db.execute(
            "select 型, 桁数チェック from MAS_FILETYPE where ファイル種別 = ?", (self.kind,))}
        self.numeric = {name.lower() for name, in db.execute(
            "select 型 from MAS_FILETYPE where ファイル種別 = ? and 数値項目 <> 0", (self.kind,))}
        self.tables = collections.OrderedDict()
        for identity, name in db.execute("select ID, テーブル名 from MAS_TABLEINFO where システム名 = ? and 削除フラグ = 0"
                                         " and 分類 <> 'VIEW' order by テーブル名", (system,)):
            self.tables[name] = db.execute(
                "select 項目名, 型, 整数桁数, 少数桁数, 初期値 from MAS_TABLEDETAILES where ID = ? order by 表示順",
                (identity,)).fetchall()

    def reasons(self, name):
        """Why the server can't take the CREATE statement of this table as the exact script writes it."""
        reserved = POSTGRESQL_RESERVED if self.kind == "PostgreSQL" else MARIADB_RESERVED
        found = set()
        if name.lower() in reserved:
            found.add("a reserved word as a table's name")
        for field, kind, whole, fraction, default in self.tables[name]:
            kind = (kind or "").strip().lower()
            takes_digits = self.catalogue.get(kind, -1) != 0
            if field.lower() in reserved:
                found.add("a reserved word as a field's name")
            if re.search(r"[^A-Za-z0-9_]", field):
                found.add("a field's name that needs quotes")
            if kind not in self.catalogue and ("(" in kind or not whole):
                found.add("a type outside the catalogue gets brackets of its own")
            elif takes_digits and (not whole or kind in DIGITLESS):
                found.add("a type that takes no digits gets brackets")
            if takes_digits and fraction and fraction > (whole or 0) + fraction:
                found.add("more fraction digits than digits")
            if self.kind == "PostgreSQL" and default and kind in self.numeric and re.match(r"\d+-\d+-\d+ ", default):
                found.add("a date default stands unquoted")
        return found


    def explained(self, name, complaint):
        """Whether a complaint about a statement behind CREATE is one that the exact script brings with it."""
        if re.search(r"constraint \S+ of relation \S+ does not exist|Can't DROP CONSTRAINT", complaint):
            return True  # checks are dropped before they are added, on a first load too
        invalid = re.search(r"(?:Invalid default value|Data truncated) for (?:column )?'([^']*)'", complaint)
        return invalid is not None and any(  # a function without "()" is quoted as a text
            field == invalid.group(1) and default.lower() == "current_timestamp"
            for field, _, _, _, default in self.tables[name])


def chunks(script):
    """The file's text a table: each begins with its ruler."""
    head = re.compile(r"^(?=(?:-{56}|/\*-{52}\*/)\r?\n(?:-- \tSchema|/\* \t(?!作成|初回|最新|TableID|DataBase)))", re.M)
    return head.split(script)[1:]


class LoadTest(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.folder = tempfile.mkdtemp(prefix="qmload_")
        cls.addClassCleanup(shutil.rmtree, cls.folder, True)
        cls.postgresql = cls.enterClassContext(PostgreSQL())
        cls.mariadb = cls.enterClassContext(MariaDB("--lower-case-table-names=1"))
        cls.real = os.path.join(cls.folder, "real.mdb")
        shutil.copy(REAL, cls.real)
        os.chmod(cls.real, 0o644)
        cls.sample = os.path.join(cls.folder, "sample.mdb")
        subprocess.run([SAMPLE_MAKER, cls.sample], check=True, stdout=subprocess.DEVNULL)

    def script(self, repository, system, command="sql"):
        target = os.path.join(self.folder, system + "." + command + ".sql")
        done = run(CLI, command, "--repository", repository, "--data-folder", self.folder, "--temp-folder", self.folder,
                   "--system", system, "--encoding", "utf-8", "--output", target)
        self.assertEqual(done.returncode, 0, done.stderr)
        self.assertEqual(done.stdout, target + "\n")
        with open(target, newline="", encoding="utf-8") as file:
            return file.read().replace("\r\n", "\n")

    def load(self, repository, system, server):
        definitions = Definitions(repository, system)
        database = server.new_database()
        complaints = {}
        for piece in chunks(self.script(repository, system)):
            created = re.search(r"^CREATE (TABLE|VIEW) (?:public\.)?(\S+)", piece, re.M)
            # The DROP of a first load finds nothing to drop.
            piece = re.sub(r"^DROP TABLE [^;]*;", "", piece, flags=re.M)
            complaints[created.group(2).lower()] = server.load(database, piece)
        self.assertLessEqual({name.lower() for name in definitions.tables}, set(complaints), "one piece of script a table")
        return definitions, {table.lower() for table in server.tables(database)}, complaints

    def account(self, system, definitions, arrived, complaints):
        by_reason = collections.Counter()
        for name in definitions.tables:
            reasons = definitions.reasons(name)
            if name.lower() in arrived:
                self.assertFalse(reasons, f"{system}.{name} arrived although: {reasons}")
                for complaint in complaints[name.lower()]:
                    self.assertTrue(definitions.explained(name, complaint), f"{system}.{name}: {complaint}")
            else:
                self.assertTrue(reasons, f"{system}.{name} stays behind: {complaints[name.lower()][:2]}")
                by_reason[", ".join(sorted(reasons))] += 1
        print(f"{system}: {len(arrived)} of {len(definitions.tables)} tables arrived")
        for reason, count in by_reason.most_common():
            print(f"    {count} stay behind: {reason}")
        self.assertEqual(len(arrived) + sum(by_reason.values()), len(definitions.tables))
        return len(arrived)

    def test_real_tables(self):
        total = collections.Counter()
        for system in ("PG_webmail", "PG_backup", "PG_alerts", "PG_sip", "MY_webmail", "MY_backup", "MY_graphs", "MY_sip"):
            server = self.postgresql if system.startswith("PG") else self.mariadb
            with self.subTest(system=system):
                total[server] += self.account(system, *self.load(self.real, system, server))
        print(f"arrived: PostgreSQL {total[self.postgresql]}, MariaDB {total[self.mariadb]}")

    def test_sample_loads_as_a_whole(self):
        for system, server in (("販売管理_PostgreSQL", self.postgresql), ("販売管理_MySQL", self.mariadb)):
            with self.subTest(system=system):
                definitions, arrived, complaints = self.load(self.sample, system, server)
                self.assertEqual([], [f"{table}: {line}" for table, lines in complaints.items() for line in lines
                                      if not definitions.explained(table, line)])
                self.assertEqual(arrived, {name.lower() for name in definitions.tables})


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1], verbosity=2)
