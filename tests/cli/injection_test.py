#!/usr/bin/env python3
"""Gives texts that look like statements to every entry of every command, and compares the whole Repository with what an
honest name in their place has done to it.

usage: injection_test.py CLI SAMPLE-MAKER [--all]

Every entry gets four of the texts, other ones each; with --all every text.
Each entry runs on a Repository in which things bear the text (a System, its tables, lists, users, files), and on one in which
nothing does. Either the run ends and writes as the honest name's does, or it ends with a message and has written nothing.
"""

import collections
import os
import re
import shutil
import sqlite3
import subprocess
import sys
import unittest

sys.path.insert(0, os.path.join(os.path.dirname(__file__), os.pardir, "support"))
from repositories import CLI, RepositoryCase, new_repository  # noqa: E402

ALL = "--all" in sys.argv
PAYLOADS = [
    "it's", "'", "''", "x' OR '1'='1", "x' OR 'a'='a' OR '", "x'' OR ''1''=''1", "x') OR ('1'='1", "x')) OR (('1'='1",
    "x' OR True OR '", "x' OR 1=1 --", "x'; DELETE * FROM MAS_TABLEINFO; --", "x' UNION SELECT * FROM MAS_USER WHERE '1'='1",
    "x' & '", "x' OR a.ID = 1 OR '1'='", "x' OR システム名 Like '*", "x\\' OR '1'='1", '"x" OR "1"="1"', "[x] OR 1=1", "paraSystem",
    "1 OR 1=1",
]
HONEST = "正直"
# A quote in these goes into the statement as typed, and breaks it.
MAY_REFUSE = {("login", "--user"), ("tables", "--where")}
# Commands whose standard output is what they have read, not the path of a file.
SHOWING = {"login", "systems", "system", "tables", "show", "value-list", "memo", "mail", "report", "capacity"}
NEW_THINGS = {
    "system": [["--system", "{}2", "--new", "--set", "概要={}", "--set", "databasetype=PostgreSQL"]],
    "value-list": [["--system", "{}", "--list", "{}2", "--class", "フラグ", "--type", "文字", "--memo", "{}"]],
}


def contents(path):
    """All rows of all tables, each as (table, values), with how often there is such a row."""
    db = sqlite3.connect(path)
    rows = collections.Counter()
    for table, in db.execute("select name from sqlite_schema where type = 'table'").fetchall():
        rows.update((table, *row) for row in db.execute(f'select * from "{table}"'))
    db.close()
    return rows


def changes(before, after):
    """(rows that came, rows that went)"""
    return list((after - before).elements()), list((before - after).elements())


def without(name, value):
    """A text, or rows as texts in order, with the name taken out, whatever its case: what differs in the name alone is equal."""
    if not isinstance(value, str):
        return [sorted(without(name, "\t".join(map(str, row))) for row in rows) for rows in value]
    for part in (HONEST, name):
        value = re.sub(re.escape(part), "‹name›", value, flags=re.IGNORECASE)
    return value


class InjectionTest(RepositoryCase):
    def make(self, file, name):
        """A Repository where everything of one System bears the name, beside Systems that have the same things under others."""
        path = os.path.join(self.folder, file)
        made = new_repository(path)
        for system in (name, "x", "他社"):
            own = system == name
            made.system(system, "PostgreSQL")
            made.db.execute("update MAS_SYSTEM set 出力しない = 0, 修正許可 = -1, 作成者 = ?, 概要 = '概要' where システム名 = ?", (name, system))
            for number, (listed, shared) in enumerate(((name if own else "x", 0), ("共用" + system, -1))):
                made.values(listed, "文字", "a", name if own else "b")
                made.db.execute("update MAS_DIVISION set 全システム共通 = ? where 値名称 = ?", (shared, listed))
            plain = "own" if own else system
            for table, kind in ((name if own else "T_x", "PostgreSQL"), ("U_" + plain, "PostgreSQL"), ("M_" + plain, "メンバー"),
                                ("R_" + plain + "@", "PostgreSQL")):
                listed = name if own else "x"
                identity = made.table(table, ("id", "integer", 4, dict(KEY=-1, Null値="NOT NULL", 項目参照先=listed, DomainID=1)),
                                      ("name", "varchar", 20, dict(備考=name, 初期値="0", 作成者=name)), memo="概要",
                                      ファイル種別=kind, 修正許可=-1, 格納先=name, データ分類=name, データ分類2=name, 担当者名=name, reffile=name,
                                      ORA_TABLESPASE=name, partition_field="id", 想定数=5, 想定保持=1,
                                      REVERSE_DB=-1 if table[0] == "R" else 0)
                made.index("I_" + table, identity, 1)
                if kind == "メンバー":
                    made.field(identity, 3, "", "Mail", 0, dict(備考=name, 日本語名="m"))
                made.insert("MAS_TABLEBIKO", ID=identity, NUM=1, システム名=system, 備考=name, 日本語名=" ", ファイル名="2026/01/01")
                made.insert("DAT_TABLEREF", システム名="x", ID=identity, 全て=-1)
            made.insert("MAS_KENSU", システム名=system, 定義名=name, 件数=1, 全システム共通=0, 削除フラグ=0)
        made.insert("MAS_USER", ユーザー名=name)
        made.insert("MAS_HOST", 格納先=name)
        made.insert("MAS_DOMAIN", ID=1, システム名=name, 日本語名=name, 項目名="id", 型="integer", 整数桁数=4, 少数桁数=0, 項目分類=name, 削除フラグ=0)
        made.db.commit()
        made.db.close()
        self.run_entry(path, "login", ())
        return path

    def run_entry(self, path, command, options):
        return self.run_command(command, path, "--now", "2026/11/24 09:05:00", "--computer", "PC", *options)

    # --- what there is to run

    @staticmethod
    def help(*words):
        done = subprocess.run([CLI, *words, "--help"], capture_output=True, check=True)
        return done.stdout.decode().split("共通オプション:\n")[0 if words else 1]

    def file(self, text):
        path = os.path.join(self.folder, "input.tsv")
        with open(path, "w", encoding="utf-8", newline="") as out:
            out.write(text)
        return path

    def value(self, command, option, name):
        """The text that an option gets: the name, a file with the name in its cells, or what has to stand there."""
        if option in ("--grid", "--save"):
            cells = {"save": f"{name}\tf\t0\tvarchar\t20\t0\t20\tNULL\t0\tその他\t{name}\t{name}\t{name}\n名\tid\t-1\tinteger\t4\t0\t4\tNOT NULL\n",
                     "memo": f"{name}\t{name}\n*\tb\n"}
            return self.file(cells.get(command, f"0\t1\t{name}\n-1\t{name}\tb\n"))
        return {"--query": "出力_件数", "--rows": "1", "--mode": "add", "--index": "0"}.get(option, name)

    def entries(self, command, columns):
        """(label, function from a name to options) of the command as it stands and with each of its options."""
        options = re.findall(r"^  (-[\w,-]+|[A-Z]+)(?: ([A-Z][A-Z=]*\b))?(.*)$", self.help(command), re.MULTILINE)
        required = [option for option, _, text in options if "(必須)" in text or not option.startswith("-")]
        required += ["--parameter"] if command == "report" else []

        def given(*chosen):
            def build(name):
                words = []
                for option in (*required, *(option for option in chosen if option not in required)):
                    words += [option] if option.startswith("--") else []
                    words += [] if option in flags else [self.value(command, option, name)]
                return words
            return build

        flags = {option for option, kind, text in options if not kind and "|" not in text.split("  ")[0]}
        yield "", given()
        for option, kind, text in options:
            needs = re.findall(r"要: (--[\w-]+)", text)
            if kind == "NAME=VALUE":
                for chosen in columns:
                    yield f"{option} {' '.join(chosen)}", lambda name, option=option, chosen=chosen: given()(name) + [
                        word for column in chosen for word in (option, f"{column}={name}3")]
            elif option not in ("--output", "--output-folder", "-h,--help") and (kind or option in flags):
                yield option, given(*needs, option)
        if command == "login":
            yield "--user", lambda name: ["--user", name]
        for number, words in enumerate(NEW_THINGS.get(command, ())):
            yield f"new {number}", lambda name, words=words: [word.replace("{}", name) for word in words]

    def run_all(self, base, name, commands, columns, turn=None):
        """What each entry does to a copy of the Repository: exit status, words, standard output, changes. `turn` leaves entries
        out, others for each name."""
        done = {}
        number = 0
        before = contents(base)
        for command in commands:
            for label, build in self.entries(command, columns):
                number += 1
                if turn is not None and not ALL and number % 5 != turn % 5:
                    continue
                path = os.path.join(self.folder, "run.mdb")
                shutil.copy(base, path)
                # What was shown of the former file says nothing of this one.
                shutil.rmtree(os.path.join(self.folder, "quillmarden", "ShownRows"), ignore_errors=True)
                run = self.run_entry(path, command, build(name))
                output = run.stdout.decode() if command in SHOWING else ""
                done[command, label] = run.returncode, run.stderr.decode(), output, changes(before, contents(path))
        return done

    def compare(self, name, done, honest):
        refused = set()
        for entry, (status, words, output, changed) in done.items():
            with self.subTest(name=name, entry=entry):
                expected = honest[entry]
                if status != 0 and (status != expected[0] or without(name, changed) != without(name, expected[3])):
                    self.assertIn(status, (1, 2), words)
                    self.assertTrue(words.strip())
                    self.assertEqual(changed, ([], []))
                    refused.add(entry)
                    continue
                self.assertEqual(status, expected[0], words)
                if "[" in name:  # a mark of the table list: its table may be left out, and is a pattern in a search
                    for rows, more in zip(without(name, changed), without(name, expected[3])):
                        self.assertLessEqual(collections.Counter(rows), collections.Counter(more))
                    continue
                self.assertEqual(without(name, changed), without(name, expected[3]))
                if entry in MAY_REFUSE:  # two quotes side by side are one there, and find another name
                    continue
                lines = [sorted(re.sub(r"\s+", " ", line) for line in without(name, text).splitlines()) for text in (output, expected[2])]
                self.assertEqual(*lines)
        return refused

    def test_names(self):
        commands = [name for name in re.findall(r"^  ([a-z]\S+)", self.help(), re.MULTILINE) if name != "init"]
        base = self.make("honest.mdb", HONEST)
        # All columns of a System that take any text are set at once, its name by itself.
        columns = [line.split("\t")[0] for line in self.run_entry(base, "system", ["--system", "x"]).stdout.decode().splitlines()]
        single = self.run_all(base, HONEST, ["system"], [[column] for column in columns])
        free = [column for column in columns if column != "システム名" and single["system", "--set " + column][0] == 0]
        self.assertGreater(len(free), 6)
        columns = [["システム名"], free]
        honest = self.run_all(base, HONEST, commands, columns)
        other = self.make("other.mdb", "別の名")
        nothing = self.run_all(other, HONEST, commands, columns)
        for turn, name in enumerate(PAYLOADS):
            named = self.make("named.mdb", name)
            refused = self.compare(name, self.run_all(named, name, commands, columns, turn), honest)
            if name != name.strip("'"):  # no name of a sheet
                refused = {entry for entry in refused if entry[0] != "layout"}
            # Marks of the table list are refused in names of value lists.
            if "[" not in name:
                self.assertLessEqual(refused, MAY_REFUSE, name)
            self.compare(name, self.run_all(other, name, commands, columns, turn + 1), nothing)
            os.remove(named)


if __name__ == "__main__":
    del sys.argv[1:]
    unittest.main()
