#!/usr/bin/env python3
"""Loads scripts of definitions drawn at random: each runs to its end without an error, and each thing that is not there
afterwards has a remark in the script.

usage: random_test.py CLI SAMPLE-MAKER REAL-REPOSITORY [COUNT [SEED]]

COUNT tables a kind, 200 unless told. What a draw found is found again with its seed.
"""

import collections
import os
import re
import sys
import unittest

from catalogues import Definitions, MariaDBCatalogue, PostgreSQLCatalogue, type_of
from servers import MariaDB, PostgreSQL

sys.path.insert(0, os.path.join(os.path.dirname(__file__), os.pardir, "support"))
from drawing import Drawing, real_types  # noqa: E402
from repositories import RepositoryCase, new_repository  # noqa: E402

REAL = sys.argv[3]
COUNT = int(sys.argv[4]) if len(sys.argv) > 4 else 200
SEED = sys.argv[5] if len(sys.argv) > 5 else "1"
TABLES_AT_ONCE = 25


def one_line(text):
    return re.sub(r"[\r\n]", " ", text)


class Remarks:
    """What a script says about things that it cannot have, and about names that it had to change."""

    def __init__(self, script):
        self.lines = [line[3:] for line in script.split("\r\n") if line.startswith("-- ")]
        self.names = collections.defaultdict(list)
        for line in self.lines:
            if changed := re.fullmatch("名称を変更しました: (.*) -> (.*)", line):
                self.names[changed[1]].append(changed[2])

    def about(self, words, what):
        """Whether one of the words stands in a remark about the thing."""
        return any(f": {one_line(what)}" in line and re.match(words, line) for line in self.lines)

    def names_of(self, name):
        """What a thing of this name may be called in the server."""
        return [name, *self.names[one_line(name)]]


class Account:
    """Holds the definitions of a System against what the server has of them. `lost` says what is gone without a remark."""

    def __init__(self, definitions, arrived, remarks, expected_types):
        self.definitions, self.arrived, self.remarks, self.expected_types = definitions, arrived, remarks, expected_types
        self.lost, self.kept, self.remarked = [], collections.Counter(), collections.Counter()

    def there(self, part, is_there, words, what):
        """A thing is there, or a remark says so."""
        if is_there:
            self.kept[part] += 1
        elif self.remarks.about(words, what):
            self.remarked[part] += 1
        else:
            self.lost.append(f"{part}: {what}")

    def found(self, name, things):
        return next((things[known] for known in self.remarks.names_of(name) if known in things), None)

    def tables(self):
        taken = {}
        for identity, name in self.definitions.ids.items():
            candidates = [known for known in self.remarks.names_of(name.strip()) if known in self.arrived and known not in taken.values()]
            taken[identity] = candidates[0] if candidates else None
        for identity, name in self.definitions.ids.items():
            self.there("table", taken[identity], "項目がないため", name.strip())
            if taken[identity]:
                self.table(identity, name.strip(), self.arrived[taken[identity]])
        return self.lost

    def table(self, identity, name, table):
        columns = {column.name: column for column in table.columns}
        here = {}
        for row in self.definitions.fields[identity]:
            field = row[0].strip()
            column = here[field] = self.found(field, columns)
            self.there("column", column, "計算式の項目を作成できません|同じ名称の項目", f"{name}.{field}")
            if column and row[1] != "計算式":
                self.column(f"{name}.{field}", row, column, column.name in table.checked)
        called = {field: column.name for field, column in here.items() if column}
        key = tuple(called.get(row[0].strip()) for row in self.definitions.fields[identity] if row[4] and row[1] != "計算式")
        self.there("key", not key or table.key == key, "主キーを作成できません", name)
        for index, fields, unique, brin in self.indexes(identity):
            wanted = (tuple(called.get(field) for field in fields), unique, "brin" if brin else "btree")
            self.there("index", wanted in table.indexes, "インデックスを作成できません", f"{name}.{index}")
        memo = self.definitions.one("select 概要 from MAS_TABLEINFO where ID = ?", identity) or ""
        self.there("memo", table.comment == memo.strip(), "コメント", name)
        partition = self.definitions.partition(identity)
        self.there("partition", [called.get(field) for field in dict.fromkeys(partition)] == list(table.partition), "パーティション", name)
        self.foreign(identity, name, table)

    def column(self, what, row, column, is_checked):
        _, kind, whole, fraction, key, null, default, remark, _, span, values = row
        self.there("type", column.type == self.type(kind or "", whole, fraction), ".* で作成します", what)
        default = (default or "").strip()
        self.there("default", default.upper() in ("", "NULL") or column.default is not None, "初期値|自動採番の項目のため", what)
        self.there("not null", column.not_null or not (key or null == "NOT NULL"), "never", what)
        self.there("comment", column.comment == (remark or "") or not (remark or "").strip(), "コメント", what)
        self.there("check", is_checked or not (span or values or "").strip(), "値の制約を設定できません", what)

    def type(self, kind, whole, fraction):
        if kind in self.expected_types:
            return self.expected_types[kind] and type_of(self.definitions.kind, self.expected_types[kind], whole, fraction)
        return type_of(self.definitions.kind, kind, whole, fraction)

    def indexes(self, identity):
        rows = collections.OrderedDict()
        for index, field, unique, brin in self.definitions.db.execute(
                "select i.INDEX_NAME, d.項目名, i.bolUNIQUE, i.brinindex from MAS_INDEX i join MAS_TABLEDETAILES d on i.ID = d.ID and i.ROWNO = d.ROWNO"
                " where i.ID = ? order by i.INDEX_NAME, i.順序", (identity,)):
            brin = bool(brin) and self.definitions.kind == "PostgreSQL"
            rows.setdefault(index, (index, [], bool(unique) and not brin, brin))[1].append(field.strip())
        return rows.values()

    def foreign(self, identity, name, table):
        """Each field that refers to another is part of a key, or a remark says that there is none to that table."""
        pairs = {pair for fields, _ in table.foreign for pair in fields}
        for own, target, referred in self.definitions.db.execute(
                "select m.項目名, i.テーブル名, s.項目名 from MAS_TABLEDETAILES m join MAS_TABLEDETAILES s on m.外部参照TABLEID = s.ID"
                " and m.外部参照ROWNO = s.ROWNO join MAS_TABLEINFO i on i.ID = s.ID where m.ID = ?", (identity,)):
            there = any((left, right) in pairs for left in self.remarks.names_of(own.strip()) for right in self.remarks.names_of(referred.strip()))
            self.there("foreign key", there, "外部キーを作成できません", f"{name} -> {target.strip()}")


class RandomTest(RepositoryCase):
    def check(self, server, catalogue, kind, real):
        path = os.path.join(self.folder, kind + ".mdb")
        repository = new_repository(path)
        drawing = Drawing(repository, kind, SEED, real_types(REAL, real))
        systems = [f"乱数{number}" for number in range((COUNT + TABLES_AT_ONCE - 1) // TABLES_AT_ONCE)]
        for system in systems:
            drawing.system(system, min(COUNT, TABLES_AT_ONCE))
        repository.db.commit()
        kept, remarked = collections.Counter(), collections.Counter()
        for system in systems:
            with self.subTest(system=system, seed=SEED):
                database = server.new_database()
                server.query(database, "create table survivor (a int)")
                script = self.script(path, system)
                self.assertEqual([], server.load(database, script))
                arrived = catalogue(server, database).tables()
                self.assertIn("survivor", arrived)
                del arrived["survivor"]
                account = Account(Definitions(path, system), arrived, Remarks(script), drawing.expected)
                self.assertEqual([], account.tables())
                kept.update(account.kept)
                remarked.update(account.remarked)
        self.assertFalse(os.path.exists("escaped"), "a line of a definition ran as a shell command")
        print(kind, ", ".join(f"{part}: {kept[part]} there, {remarked[part]} with a remark" for part in kept))
        # Remarks are for what servers lack: most of what is drawn is there.
        self.assertGreater(sum(kept.values()), 8 * sum(remarked.values()))

    def test_postgresql(self):
        with PostgreSQL() as server:
            self.check(server, PostgreSQLCatalogue, "PostgreSQL", "PG")

    def test_mariadb(self):
        with MariaDB() as server:
            self.check(server, MariaDBCatalogue, "MySQL", "MY")


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1], verbosity=2)
