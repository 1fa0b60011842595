#!/usr/bin/env python3
"""Loads runnable scripts whole into real servers and compares what the catalogues then hold with the definitions.

usage: runnable_test.py CLI SAMPLE-MAKER REAL-REPOSITORY
"""

import itertools
import os
import re
import shutil
import subprocess
import sys
import unittest

from catalogues import Definitions, MariaDBCatalogue, PostgreSQLCatalogue, Table, possible
from servers import MariaDB, PostgreSQL

sys.path.insert(0, os.path.join(os.path.dirname(__file__), os.pardir, "support"))
from repositories import KEY, RepositoryCase, default, new_repository  # noqa: E402

REAL = sys.argv[3]

CUT = "外部キーを作成できません"

# Of a person's client; those with Japanese only where the machine has them.
LOCALES = ["C", "C.UTF-8"] + [name for name in ("ja_JP.UTF-8", "ja_JP.SJIS") if subprocess.run(
    ["locale", "charmap"], env={"LC_ALL": name}, capture_output=True).stderr == b""]

# --- nasty definitions

# Columns with checks, one a table: name, type, further columns, a value that must pass, one that must not.
def limited(kind):
    integer, text = ("integer", "varchar") if kind == "PostgreSQL" else ("INT", "VARCHAR")
    span = lambda sort, start, end="": dict(範囲分類=sort, 範囲開始=start, 範囲終了=end)
    return [
        ("以上", integer, span("≧", "5"), "5", "4"), ("超", integer, span("＞", "5"), "6", "5"),
        ("以下", integer, span("≦", "5"), "5", "6"), ("未満", integer, span("＜", "5"), "4", "5"),
        ("範囲", integer, span("範囲", "-1", "5"), "-1", "-2"),
        ("key", "date" if kind == "PostgreSQL" else "DATE", span("範囲", "2020-01-01", "2020-12-31"), "2020-12-31", "2021-01-01"),
        ("文字 範囲", text, span("範囲", "B", "D"), "C", "A"), ("desc", text, span("≧", "it's"), "jam", "apple"),
        ("文字の値", text, dict(項目参照先="文字の値"), "it's", "B"), ("数値の値", integer, dict(項目参照先="数値の値"), "-1", "3"),
        ("文字で数値の値", text, dict(項目参照先="数値の値"), "2", "3")]


def make_nasty(path):
    repository = new_repository(path)
    for kind in ("PostgreSQL", "MySQL"):
        repository.system("難_" + kind, kind)
        nasty_tables(repository, kind == "PostgreSQL")
        repository.db.commit()


def nasty_tables(repository, postgresql):
    integer, text, moment = ("integer", "varchar", "timestamp") if postgresql else ("INT", "VARCHAR", "DATETIME")
    quote = '"' if postgresql else "`"
    long = lambda last: ("n" * 60 + "abcdef" + last * 4)

    order = repository.table(
        "order", ("user", integer, None, KEY), ("a b", text, 20, dict(備考="it's a \\ \"quote\" `and`\r\nsecond; -- line\r\n/* third")),
        ("CamelCase", integer, None, dict(備考="'")), ("項目", text, 10, dict(備考="末尾の円記号\\")), ("desc", integer, None, {}),
        (f"q{quote}t", text, 3, {}), memo="memo's \\\nsecond line; --\r\n'; DROP TABLE x; /*")
    mine = repository.table("My Table", ("key", integer, None, KEY), ("Select", text, 5, KEY), ("user", integer, None, {}),
                            memo="表のメモ")
    table = repository.table("表", ("項目", integer, None, KEY), ("key", integer, None, dict(Null値="NOT NULL")))
    own = repository.table("select", ("desc", integer, None, KEY), ("上位", integer, None, {}), ("次", integer, None, {}))
    child = repository.table("Child", ("Select2", text, 5, {}), ("user", integer, None, {}), ("key1", integer, None, {}),
                             ("no match", text, 10, {}), ("番号", integer, None, KEY), ("other type", text, 10, {}))
    repository.refer(order, 5, table, 1)  # a circle
    repository.refer(table, 2, order, 1)
    repository.refer(own, 2, own, 1)  # to itself, twice
    repository.refer(own, 3, own, 1)
    repository.refer(child, 1, mine, 2)  # another order than the key's
    repository.refer(child, 3, mine, 1)
    repository.refer(child, 4, order, 4)  # to nothing unique
    repository.refer(child, 2, order, 5)  # to a unique index
    repository.refer(child, 6, table, 1)
    unique_child = repository.table("refers to unique", ("番号", integer, None, KEY), ("参照", integer, None, {}))
    repository.refer(unique_child, 2, order, 5)  # to a unique index alone
    wrong_type = repository.table("refers to another type", ("番号", "numeric" if postgresql else "BIGINT", None, KEY))
    repository.refer(wrong_type, 1, table, 1)
    repository.index("IDX 1", order, 4, 2)
    repository.index("desc", order, 5, unique=-1)
    repository.index("IDX 1", mine, 3, unique=1)  # the same name on another table
    repository.index("表", child, 5, 2, unique=-1)  # the name of a table
    repository.index(long("x"), child, 2)
    repository.index(long("y"), child, 3)

    repository.table(long("x"), ("first", integer, None, KEY), (long("p"), integer, None, {}), (long("q"), text, 4, dict(備考="二")))
    repository.table(long("y"), ("second", integer, None, KEY), ("値", integer, None, dict(範囲分類="≧", 範囲開始="0")))
    most = "あ" * (21 if postgresql else 50)
    if not postgresql:  # as a file's name, what is not ASCII takes more: cut to fit, and told apart
        repository.table("あ" * 64, ("ひとつ", integer, None, KEY))
        repository.table("あ" * 51, ("ふたつ", integer, None, KEY))
    longest = repository.table(most, ("い" * (21 if postgresql else 64), integer, None, KEY), ("次", integer, None, {}))
    repository.refer(longest, 2, longest, 1)

    repository.table(
        "defaults", ("番号", integer, None, KEY), ("n", integer, None, default("-1")), ("d", "numeric" if postgresql else "DECIMAL", 5,
                                                                             dict(少数桁数=2, 初期値="0.50")),
        ("t1", text, 20, default("0")), ("t2", text, 20, default("quo'te")), ("t3", text, 20, default("back\\slash")),
        ("t4", text, 20, default("NULL")), ("t5", text, 20, default("-1.5")), ("t6", text, 20, default("a;b -- c")),
        ("m1", moment, None, default("now()")), ("m2", moment, None, default("CURRENT_TIMESTAMP")),
        ("m3", moment, None, default("2020-02-29 12:34:56")), ("day", "date" if postgresql else "DATE", None, default("2020-02-29")),
        ("z", integer, None, default("NULL")), ("t7", text, 20, dict(初期値="表", Null値="NOT NULL")))

    repository.table("texts that look like expressions", ("番号", integer, None, KEY), ("t1", text, 20, default("none (yet)")),
                     ("t2", text, 20, default("::1")), ("t3", text, 20, default("'quo''te'")), ("t4", text, 20, default("user")))

    repository.table("long comments", ("番号", integer, None, dict(**KEY, 備考="長い備考" * 300)), memo="長いメモ" * 600)
    wide = repository.table("wide", ("番号", integer, None, KEY), ("w", text, 1000, {}), ("t", "text", 2000, {}))
    repository.index("IDX_WIDE", wide, 2)
    repository.index("IDX_TEXT", wide, 3, 1)

    if postgresql:
        repository.table("types", ("番号", "bigserial", None, KEY), ("j", "jsonb", None, {}), ("a", "text[]", None, {}),
                         ("c", "character varying", 30, {}), ("c1", "char", 7, {}), ("u", "uuid", None, {}),
                         ("i", "interval", None, {}),
                         ("t", "timestamp(3) with time zone", None, {}), ("b", "boolean", None, default("true")),
                         ("n", "numeric", None, {}), ("n8", "numeric", 8, {}),
                         ("n82", "decimal", 6, dict(少数桁数=2)), ("f", "float8", None, {}),
                         ("s", "serial", None, {}), ("x", "integer", 4, {}))
        repository.table("Partitioned", ("番号", "integer", None, KEY), ("日付", "date", None, KEY), ("値", "text", None, {}),
                         partition_field="日付", memo="分割")
        brin = repository.table("brin", ("日付", "date", None, KEY), ("番号", "integer", None, KEY), ("値", "integer", None, {}), brinindex=1)
        repository.index("IDX_BRIN", brin, 3, brin=1)
    else:
        repository.table("types", ("番号", "int unsigned", None, KEY), ("e", "enum('a','b''c','表')", None, {}),
                         ("s", "set('x','y')", None, {}),
                         ("b", "BIGINT", 20, {}), ("d", "DECIMAL", 6, dict(少数桁数=2)),
                         ("t", "TINYTEXT", None, {}), ("m", "MEDIUMTEXT", 100, {}),
                         ("f", "DOUBLE", None, {}), ("vb", "varbinary", 16, {}), ("i", "int(10) unsigned", None, default("7")),
                         ("y", "YEAR", None, {}), ("b1", "BLOB", 1000, {}), ("t1", "TEXT", 100, {}))
    kind = "PostgreSQL" if postgresql else "MySQL"
    repository.values("文字の値", "文字", "A", "it's", "表")
    repository.values("数値の値", "数値", "-1", "2")
    for name, type_name, more, _, _ in limited(kind):
        repository.table("check " + name, (name, type_name, 10 if type_name == text else None, more))


# --- the test

class RunnableTest(RepositoryCase):
    @classmethod
    def setUpClass(cls):
        super().setUpClass()
        cls.postgresql = cls.enterClassContext(PostgreSQL())
        cls.mariadb = cls.enterClassContext(MariaDB())
        cls.real = os.path.join(cls.folder, "real.mdb")
        shutil.copy(REAL, cls.real)
        os.chmod(cls.real, 0o644)
        cls.nasty = os.path.join(cls.folder, "nasty.mdb")
        make_nasty(cls.nasty)

    def server_of(self, definitions):
        return self.postgresql if definitions.kind == "PostgreSQL" else self.mariadb

    def arrived(self, server, database):
        return (PostgreSQLCatalogue if server is self.postgresql else MariaDBCatalogue)(server, database).tables()

    def differences(self, system, definitions, arrived, script):
        """What differs between the definitions and the catalogue, a line each."""
        wanted = definitions.tables(arrived)
        found = [f"{name}: a table too many" for name in arrived if name not in wanted]
        missing = []
        for name, table in wanted.items():
            if name not in arrived:
                found.append(f"{name}: no such table")
                continue
            lost = table.foreign - arrived[name].foreign
            found += [f"{name}: foreign key {key} stays away" for key in lost if possible(key, wanted, table)]
            missing += lost
            table = table._replace(foreign=table.foreign - lost)
            for part, want, got in zip(Table._fields, table, arrived[name]):
                if part == "columns" and len(want) == len(got):
                    found += [f"{name}: {a} <> {b}" for a, b in zip(want, got) if a != b]
                elif want != got:
                    found.append(f"{name}.{part}: {want} <> {got}")
        if len(missing) != script.count(CUT):
            found.append(f"{script.count(CUT)} remarks for {len(missing)} foreign keys that stay away")
        print(f"{system}: {len(wanted)} tables, {sum(len(table.columns) for table in wanted.values())} columns, "
              f"{sum(len(table.indexes) for table in wanted.values())} indexes, "
              f"{sum(len(table.foreign) for table in wanted.values())} foreign keys ({len(missing)} that can't be had)")
        return found

    def check(self, repository, system, *present):
        """present: tables of the server itself that the System's views read."""
        definitions = Definitions(repository, system)
        server = self.postgresql if definitions.kind == "PostgreSQL" else self.mariadb

        def arrived(database):
            tables = (PostgreSQLCatalogue if server is self.postgresql else MariaDBCatalogue)(server, database).tables()
            return {name: table for name, table in tables.items() if name not in present}

        def database():
            name = server.new_database()
            for table in present:
                server.query(name, f"create table {table} (SEQ int)")
            return name

        once = database()
        script = self.script(repository, system, "--full")
        found = server.load(once, script)
        found += self.differences(system, definitions, arrived(once), script)

        again = database()
        dropping = self.script(repository, system)
        self.assertIn("DROP TABLE", dropping)
        found += ["with nothing to drop yet: " + line for line in server.load(again, dropping)]
        found += ["the second load: " + line for line in server.load(again, dropping)]
        found += self.differences(system + " again", definitions, arrived(again), dropping)
        if found:
            self.fail("\n".join(found))
        return script

    def test_real_tables(self):
        for system in ("PG_webmail", "PG_backup", "PG_alerts", "PG_sip", "MY_webmail", "MY_backup", "MY_graphs", "MY_sip"):
            with self.subTest(system=system):
                self.check(self.real, system)

    def test_sample(self):
        for system in ("販売管理_PostgreSQL", "販売管理_MySQL"):
            with self.subTest(system=system):
                # MariaDB has this table itself, but under a name of small letters
                self.check(self.sample, system, *([] if "PostgreSQL" in system else ["SEQ_1_TO_31"]))

    def test_the_file_as_it_is_under_the_defaults_of_a_client(self):
        """In either encoding the file says itself what it is in, whatever the client's locale has it think."""
        for system, server in (("販売管理_PostgreSQL", self.postgresql), ("販売管理_MySQL", self.mariadb)):
            definitions = Definitions(self.sample, system)
            for encoding, locale in itertools.product((None, "cp932"), LOCALES):
                with self.subTest(system=system, encoding=encoding, locale=locale):
                    database = server.new_database()
                    file = self.script_file(self.sample, system, "--full", *(["--encoding", encoding] if encoding else []))
                    complaints = server.load(database, file, locale)
                    self.assertEqual([], [line for line in complaints if "SEQ_1_TO_31" not in line])
                    self.assertEqual([], self.differences(system, definitions, self.arrived(server, database), file.decode(encoding or "utf-8")))

    def test_nasty_definitions(self):
        for kind in ("PostgreSQL", "MySQL"):
            with self.subTest(kind=kind):
                script = self.check(self.nasty, "難_" + kind)
                # each cut name is named in full in a remark
                self.assertRegex(script, "(?m)^(-- |/\\*).*" + "n" * 60 + "abcdefxxxx")

    def test_a_schema_is_made_where_it_is_not_there(self):
        path = os.path.join(self.folder, "schema.mdb")
        repository = new_repository(path)
        repository.system("別スキーマ", "PostgreSQL")
        repository.db.execute("update MAS_SYSTEM set odbcsouce = 'My 倉庫'")
        table = repository.table("t", ("a", "integer", None, KEY), ("b", "integer", None, {}), memo="メモ")
        repository.refer(table, 2, table, 1)
        repository.index("i", table, 2)
        repository.db.commit()
        self.postgresql.create_database("in_schema")
        for _ in range(2):
            self.assertEqual([], self.postgresql.load("in_schema", self.script(path, "別スキーマ")))
        self.assertEqual([["t"]], self.postgresql.query(
            "in_schema", "select table_name from information_schema.tables where table_schema = 'My 倉庫'"))

    def test_checks_refuse_and_accept(self):
        for kind in ("PostgreSQL", "MySQL"):
            system = "難_" + kind
            server = self.postgresql if kind == "PostgreSQL" else self.mariadb
            database = server.new_database()
            server.load(database, self.script(self.nasty, system, "--full"))
            quote = '"' if kind == "PostgreSQL" else "`"
            for name, _, _, good, bad in limited(kind):
                for value, passes in ((good, True), (bad, False)):
                    with self.subTest(kind=kind, column=name, value=value):
                        literal = value.replace("'", "''")
                        errors = server.load(database, f"insert into {quote}check {name}{quote} values ('{literal}');", "C.UTF-8")
                        self.assertEqual(passes, not errors, errors)
                        self.assertFalse([line for line in errors if re.search("does ?n.t exist|does not exist", line)])


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1], verbosity=2)
