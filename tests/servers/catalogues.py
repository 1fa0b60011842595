"""Definitions as the Repository holds them and catalogues as servers hold them, in one form for both."""

import collections
import decimal
import json
import re
import sqlite3

from servers import MariaDB, PostgreSQL

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
