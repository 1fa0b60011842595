#!/usr/bin/env python3
"""Loads runnable scripts whole into real servers and compares what the catalogues then hold with the definitions.

usage: runnable_test.py CLI SAMPLE-MAKER REAL-REPOSITORY
"""

import collections
import decimal
import itertools
import json
import os
import re
import shutil
import sqlite3
import subprocess
import sys
import unittest

from servers import MariaDB, PostgreSQL

sys.path.insert(0, os.path.join(os.path.dirname(__file__), os.pardir, "support"))
from repositories import KEY, RepositoryCase, default, new_repository  # noqa: E402

REAL = sys.argv[3]

CUT = "外部キーを作成できません"

# Of a person's client; those with Japanese only where the machine has them.
LOCALES = ["C", "C.UTF-8"] + [name for name in ("ja_JP.UTF-8", "ja_JP.SJIS") if subprocess.run(
    ["locale", "charmap"], env={"LC_ALL": name}, capture_output=True).stderr == b""]

# What a table is, by definition and by catalogue alike. foreign: (frozenset of (own, referred) pairs, referred table).
Table = collections.namedtuple("Table", "columns comment key indexes foreign partition checked")
Column = collections.namedtuple("Column", "name type not_null default comment")


# --- types and defaults in one form for both sides

POSTGRESQL_ALIASES = {
    "int": "integer", "int4": "integer", "int8": "bigint", "int2": "smallint", "serial": "integer", "bigserial": "bigint",
    "float4": "real", "float8": "double precision", "varchar": "character varying", "char": "character",
    "decimal": "numeric", "timestamp": "timestamp without time zone", "time": "time without time zone",
    "timetz": "time with time zone", "bool": "boolean", "varbit": "bit varying"}
MYSQL_ALIASES = {"integer": "int", "numeric": "decimal", "double precision": "double", "real": "double"}
SIZED = {"character", "character varying", "char", "varchar", "binary", "varbinary"}
EXACT = {"numeric", "decimal"}


def type_of(kind, text, whole, fraction):
    """The catalogue's words for a type and its digits."""
    head, bracket, rest = text.strip().partition("(")
    base = head.strip().lower()
    base = (POSTGRESQL_ALIASES if kind == "PostgreSQL" else MYSQL_ALIASES).get(base, base)
    if bracket and base.startswith("time"):  # the words about the zone stand behind the digits
        return head.lower() + bracket + rest + (" without time zone" if kind == "PostgreSQL" and rest.endswith(")") else "")
    if bracket:
        return without_width(base + bracket + rest)
    if base in SIZED:
        return f"{base}({int(whole or 1)})"
    if base in EXACT and whole:
        return f"{base}({int(whole) + int(fraction or 0)},{int(fraction or 0)})"
    return base


def without_width(mysql_type):
    """Without the display widths that MariaDB adds to whole numbers."""
    return re.sub(r"^((?:tiny|small|medium|big)?int|year)\(\d+\)", r"\1", mysql_type)


def is_number(type_name):
    return re.match(r"(tiny|small|medium|big)?int|integer|numeric|decimal|real|float|double", type_name) is not None


def value_of(text, type_name):
    """A default in comparable form: functions by name, numbers by value, texts by content; a literal may stand in quotes."""
    if text is None or text.upper() == "NULL" or text == "":
        return None
    if text.lower().removesuffix("()") in ("now", "current_timestamp"):
        return "function now"
    literal = re.fullmatch(r"'((?:[^']|'')*)'", text, re.S)
    content = literal.group(1).replace("''", "'") if literal else text
    if is_number(type_name):
        return decimal.Decimal(content)
    return content.lower() if type_name == "boolean" else content


def postgresql_default(text, type_name):
    if text is None:
        return None
    if text.startswith("nextval("):
        return "nextval"
    return value_of(re.sub(r"::[a-z_ ]+(\(\d+\))?( with(out)? time zone)?(\[\])?$", "", text), type_name)


def unescaped(text):
    """What backslashes stand for where MariaDB or its client wrote the text."""
    meaning = {"n": "\n", "r": "\r", "t": "\t", "0": "\0"}
    return re.sub(r"\\(.)", lambda found: meaning.get(found[1], found[1]), text, flags=re.S)


def mysql_default(text, type_name):
    return value_of(unescaped(text) if text and text.startswith("'") else text, type_name)


# --- the definitions

class Definitions:
    """The live tables of one System as the Repository holds them."""

    def __init__(self, path, system):
        self.db = sqlite3.connect(path)
        self.kind = self.one("select databasetype from MAS_SYSTEM where システム名 = ?", system)
        self.limit = 63 if self.kind == "PostgreSQL" else 64
        self.ids, self.fields = {}, {}
        for identity, name in self.db.execute(
                "select ID, テーブル名 from MAS_TABLEINFO where システム名 = ? and ifnull(削除フラグ, 0) = 0"
                " and ifnull(分類, '') <> 'VIEW' order by ID", (system,)):
            rows = []
            for row in self.db.execute(
                    "select 項目名, 型, 整数桁数, 少数桁数, ifnull(KEY, 0), ifnull(Null値, ''), 初期値, ifnull(備考, ''), ROWNO,"
                    " 範囲分類, 項目参照先 from MAS_TABLEDETAILES where ID = ? order by 表示順, ROWNO", (identity,)):
                if not (row[0] or "").strip():
                    break
                rows.append(row)
            if rows:
                self.ids[identity] = name
                self.fields[identity] = rows

    def one(self, sql, *values):
        row = self.db.execute(sql, values).fetchone()
        return row and row[0]

    def fits(self, name):
        return len(name.encode() if self.kind == "PostgreSQL" else name) <= self.limit

    def table_fits(self, name):
        """MariaDB keeps a table in a file of its name, in which what is no plain letter takes five bytes."""
        in_file = sum(1 if re.match(r"\w", c, re.A) else 5 for c in name)
        return self.fits(name) and (self.kind == "PostgreSQL" or in_file + len(".frm") <= 255)

    def comment(self, text, limit):
        """MariaDB has room for so many characters of a comment."""
        return text if self.kind == "PostgreSQL" else text[:limit]

    def long_names(self, arrived):
        """The names that had to be cut: what they became. A table is known again by its columns, a column by its place."""
        names = {}
        unknown = [name for name in arrived if name not in self.ids.values()]
        for identity, table in self.ids.items():
            here = table
            if not self.table_fits(table):
                short = [column[0] for column in self.fields[identity] if self.fits(column[0])]
                here = names[table] = next(
                    (name for name in unknown if set(short) <= {column.name for column in arrived[name].columns}), None)
            for place, field in enumerate(self.fields[identity]):
                if not self.fits(field[0]) and here in arrived and place < len(arrived[here].columns):
                    names[table, field[0]] = arrived[here].columns[place].name
        return names

    def tables(self, arrived):
        names = self.long_names(arrived)
        return {names.get(table, table): Table(
            self.columns(identity, names),
            self.comment((self.one("select 概要 from MAS_TABLEINFO where ID = ?", identity) or "").strip(), 2048),
            tuple(names.get((table, field[0]), field[0]) for field in self.fields[identity] if field[4]),
            self.indexes(identity, names),
            set(self.foreign(identity, names)),
            self.partition(identity),
            self.checked(identity, names)) for identity, table in self.ids.items()}

    def columns(self, identity, names):
        table = self.ids[identity]
        result = []
        for name, kind, whole, fraction, key, null, default, remark, *_ in self.fields[identity]:
            arrived = type_of(self.kind, kind, whole, fraction)
            value = "nextval" if "serial" in kind.lower() else value_of((default or "").strip(), arrived)
            # a serial column takes no NULL, whatever the definition says
            not_null = bool(key) or null == "NOT NULL" or value == "nextval"
            result.append(Column(names.get((table, name), name), arrived, not_null, value, self.comment(remark, 1024)))
        return result

    def indexes(self, identity, names):
        table = self.ids[identity]
        rows = collections.OrderedDict()
        for index, column, unique, brin in self.db.execute(
                "select i.INDEX_NAME, d.項目名, i.bolUNIQUE, i.brinindex from MAS_INDEX i join MAS_TABLEDETAILES d"
                " on i.ID = d.ID and i.ROWNO = d.ROWNO where i.ID = ? order by i.INDEX_NAME, i.順序", (identity,)):
            columns = rows.setdefault(index, ([], bool(unique), "brin" if brin and self.kind == "PostgreSQL" else "btree"))[0]
            columns.append(names.get((table, column), column))
        found = {(tuple(columns), unique, method) for columns, unique, method in rows.values()}
        key = tuple(field[0] for field in self.fields[identity] if field[4])
        if self.kind == "PostgreSQL" and key and self.one("select brinindex from MAS_TABLEINFO where ID = ?", identity):
            found.add((key, False, "brin"))
        return found

    def foreign(self, identity, names):
        """The fields that refer to one table are one key; fields that refer to the same field belong to different keys."""
        keys = {}
        for own, referred_id, referred in self.db.execute(
                "select m.項目名, s.ID, s.項目名 from MAS_TABLEDETAILES m join MAS_TABLEDETAILES s"
                " on m.外部参照TABLEID = s.ID and m.外部参照ROWNO = s.ROWNO where m.ID = ? order by m.表示順", (identity,)):
            target = self.ids.get(referred_id)
            number = 0
            while referred in (pair[1] for pair in keys.get((referred_id, number), ())):
                number += 1
            keys.setdefault((referred_id, number), []).append(
                (names.get((self.ids[identity], own), own), names.get((target, referred), referred)))
        for (referred_id, _), pairs in keys.items():
            target = self.ids.get(referred_id)
            yield frozenset(pairs), names.get(target, target)

    def partition(self, identity):
        text = self.one("select partition_field from MAS_TABLEINFO where ID = ?", identity) or ""
        return tuple(part.strip() for part in text.split(",") if part.strip()) if self.kind == "PostgreSQL" else ()

    def checked(self, identity, names):
        """The columns that a range or a list limits."""
        table = self.ids[identity]
        return {names.get((table, field[0]), field[0]) for field in self.fields[identity]
                if (field[9] or "").strip() or (field[10] or "").strip()}


def possible(foreign, tables, own):
    """Whether a server can take this foreign key: what it refers to is unique and of the same types."""
    pairs, target = foreign
    if target not in tables:
        return False
    referred = {pair[1] for pair in pairs}
    types = {column.name: re.sub(r"\(.*", "", column.type) for column in tables[target].columns}
    mine = {column.name: re.sub(r"\(.*", "", column.type) for column in own.columns}
    unique = [set(tables[target].key)] + [set(columns) for columns, flag, _ in tables[target].indexes if flag]
    return referred in unique and all(mine[left] == types[right] for left, right in pairs)


# --- the catalogues

class Catalogue:
    """Rows of a server's catalogue; values travel as JSON, for line ends and tabs."""

    def __init__(self, server, database):
        self.server, self.database = server, database

    def rows(self, expressions, rest):
        function = "json_build_array" if isinstance(self.server, PostgreSQL) else "json_array"
        for cells in self.server.query(self.database, f"select {function}({', '.join(expressions)}) {rest}"):
            text = cells[0]
            yield json.loads(unescaped(text) if isinstance(self.server, MariaDB) else text)

    def grouped(self, expressions, rest):
        groups = collections.defaultdict(list)
        for key, *values in self.rows(expressions, rest):
            groups[key].append(values)
        return groups


class PostgreSQLCatalogue(Catalogue):
    LIVE = "t.relnamespace = 'public'::regnamespace and t.relkind in ('r', 'p')"

    def names(self, numbers, table="t.oid"):
        return (f"(select json_agg(a.attname order by k.place) from unnest({numbers}) with ordinality k(number, place)"
                f" join pg_attribute a on a.attrelid = {table} and a.attnum = k.number)")

    def tables(self):
        comments = dict(self.rows(["t.relname", "coalesce(obj_description(t.oid), '')"], f"from pg_class t where {self.LIVE}"))
        columns = self.grouped(
            ["t.relname", "a.attname", "format_type(a.atttypid, a.atttypmod)", "a.attnotnull", "pg_get_expr(d.adbin, d.adrelid)",
             "coalesce(col_description(t.oid, a.attnum), '')"],
            "from pg_class t join pg_attribute a on a.attrelid = t.oid left join pg_attrdef d on d.adrelid = t.oid"
            f" and d.adnum = a.attnum where {self.LIVE} and a.attnum > 0 and not a.attisdropped order by t.oid, a.attnum")
        keys = dict(self.rows(["t.relname", self.names("c.conkey")],
                              f"from pg_class t join pg_constraint c on c.conrelid = t.oid where {self.LIVE} and c.contype = 'p'"))
        indexes = self.grouped(
            ["t.relname", self.names("i.indkey"), "i.indisunique", "m.amname"],
            "from pg_class t join pg_index i on i.indrelid = t.oid join pg_class c on c.oid = i.indexrelid"
            f" join pg_am m on m.oid = c.relam where {self.LIVE} and not i.indisprimary")
        foreign = self.grouped(
            ["t.relname", self.names("c.conkey"), "f.relname", self.names("c.confkey", "f.oid")],
            "from pg_class t join pg_constraint c on c.conrelid = t.oid join pg_class f on f.oid = c.confrelid"
            f" where {self.LIVE} and c.contype = 'f'")
        partitions = dict(self.rows(["t.relname", self.names("p.partattrs")],
                                    f"from pg_class t join pg_partitioned_table p on p.partrelid = t.oid where {self.LIVE}"))
        checks = self.grouped(["t.relname", self.names("c.conkey")],
                              f"from pg_class t join pg_constraint c on c.conrelid = t.oid where {self.LIVE} and c.contype = 'c'")
        return {table: Table(
            [Column(name, kind, null, postgresql_default(default, kind), remark)
             for name, kind, null, default, remark in columns[table]],
            comments[table], tuple(keys.get(table, ())),
            {(tuple(fields), unique, method) for fields, unique, method in indexes[table]},
            {(frozenset(zip(own, referred)), target) for own, target, referred in foreign[table]},
            tuple(partitions.get(table, ())),
            {name for names, in checks[table] for name in names}) for table in comments}


class MariaDBCatalogue(Catalogue):
    def tables(self):
        here = f"table_schema = '{self.database}'"
        comments = dict(self.rows(["table_name", "table_comment"],
                                  f"from information_schema.tables where {here} and table_type = 'BASE TABLE'"))
        columns = self.grouped(["table_name", "column_name", "column_type", "is_nullable", "column_default", "column_comment"],
                               f"from information_schema.columns where {here} order by table_name, ordinal_position")
        parts = collections.defaultdict(lambda: collections.defaultdict(list))
        for table, index, column, plain in self.rows(
                ["table_name", "index_name", "column_name", "non_unique"],
                f"from information_schema.statistics where {here} order by table_name, index_name, seq_in_index"):
            parts[table][index, plain].append(column)
        foreign = collections.defaultdict(lambda: collections.defaultdict(list))
        for table, key, own, target, referred in self.rows(
                ["table_name", "constraint_name", "column_name", "referenced_table_name", "referenced_column_name"],
                f"from information_schema.key_column_usage where {here} and referenced_table_name is not null"):
            foreign[table][key, target].append((own, referred))
        checks = self.grouped(["table_name", "check_clause"],
                              f"from information_schema.check_constraints where constraint_schema = '{self.database}'")
        result = {}
        for table, comment in comments.items():
            names = {key for key, _ in foreign[table]}
            result[table] = Table(
                [Column(name, without_width(kind), null == "NO", mysql_default(default, kind), remark)
                 for name, kind, null, default, remark in columns[table]],
                comment, tuple(parts[table].get(("PRIMARY", 0), ())),
                # the server adds an index for a foreign key, under its name
                {(tuple(fields), not plain, "btree") for (index, plain), fields in parts[table].items()
                 if index != "PRIMARY" and index not in names},
                {(frozenset(pairs), target) for (_, target), pairs in foreign[table].items()},
                (),
                {name for clause, in checks[table] for name, *_ in columns[table]
                 if "`" + name.replace("`", "``") + "`" in clause})
        return result


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
