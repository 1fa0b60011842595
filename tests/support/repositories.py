"""Repositories for tests that run the built programs: the sample, definitions written with plain SQL, a folder for both."""

import os
import shutil
import sqlite3
import subprocess
import sys
import tempfile
import unittest

CLI, SAMPLE_MAKER = sys.argv[1:3]


class RepositoryCase(unittest.TestCase):
    """A test class with a folder of its own and the sample in it."""

    maxDiff = None

    @classmethod
    def setUpClass(cls):
        cls.folder = tempfile.mkdtemp(prefix="qm_" + cls.__name__.lower() + "_")
        cls.addClassCleanup(shutil.rmtree, cls.folder, True)
        cls.sample = os.path.join(cls.folder, "sample.mdb")
        subprocess.run([SAMPLE_MAKER, cls.sample], check=True, stdout=subprocess.DEVNULL)

    def run_command(self, name, repository, *options):
        return subprocess.run([CLI, name, "--repository", repository, "--data-folder", self.folder, "--temp-folder", self.folder,
                               *options], stdin=subprocess.DEVNULL, capture_output=True)

    def script_file(self, repository, system, *options):
        """The bytes of the runnable script of a System."""
        target = os.path.join(self.folder, "script.sql")
        done = self.run_command("sql", repository, "--runnable", "--system", system, "--output", target, *options)
        self.assertEqual(done.returncode, 0, done.stderr.decode())
        with open(target, "rb") as file:
            return file.read()

    def script(self, repository, system, *options):
        """The same as a text, its line ends as they are."""
        return self.script_file(repository, system, *options).decode("utf-8-sig")


def new_repository(path):
    subprocess.run([CLI, "init", path], check=True, capture_output=True)
    return Repository(path)


class Repository:
    """Writes definitions with plain SQL, as other tools do."""

    def __init__(self, path):
        self.db = sqlite3.connect(path)

    def insert(self, table, **values):
        marks = ", ".join("?" * len(values))
        self.db.execute(f"insert into {table} ({', '.join(values)}) values ({marks})", list(values.values()))

    def system(self, name, kind):
        self.name, self.kind = name, kind
        self.insert("MAS_SYSTEM", システム名=name, 略名="nst", 概要="", databasetype=kind, 修正許可=0)

    def values(self, name, kind, *values):
        self.insert("MAS_DIVISION", システム名=self.name, 値名称=name, 型=kind, 種別="区分", 全システム共通=0, 削除フラグ=0)
        for number, value in enumerate(values, 1):
            self.insert("MAS_DIVISIONDETAILES", システム名=self.name, 値名称=name, 行番号=number, 値=value, 内容=value, 初期値=0)

    def table(self, name, *fields, memo="", **more):
        """fields: (name, type, whole digits or None, further columns as a dict)."""
        identity = self.db.execute("select ifnull(max(ID), 0) + 1 from MAS_TABLEINFO").fetchone()[0]
        # all tables share one short name, so that names made from it must be told apart
        self.insert("MAS_TABLEINFO", **{**dict(
            ID=identity, システム名=self.name, テーブル名=name, 略名="x", 日本語名=name, 分類="マスタ", 概要=memo, 削除フラグ=0,
            ファイル種別=self.kind, 修正許可=0, 全システム共通=0, 格納先=""), **more})
        for number, (field, kind, whole, further) in enumerate(fields, 1):
            self.field(identity, number, field, kind, whole, further)
        return identity

    def field(self, identity, number, field, kind, whole, further):
        self.insert("MAS_TABLEDETAILES", **{**dict(
            ID=identity, ROWNO=number, 表示順=number, 項目名=field, 日本語名=field, 型=kind, 整数桁数=whole, 少数桁数=0, 長さ=0,
            KEY=0, Null値="NULL", 備考="", 初期値="", 範囲分類=" ", 項目参照先=""), **further})

    def refer(self, table, row, target, target_row):
        self.db.execute("update MAS_TABLEDETAILES set 外部参照 = 'x:y', 外部参照TABLEID = ?, 外部参照ROWNO = ?, 外部参照登録方法 = '手入力'"
                        " where ID = ? and ROWNO = ?", (target, target_row, table, row))

    def index(self, name, table, *rows, unique=0, brin=0):
        for order, row in enumerate(rows, 1):
            self.insert("MAS_INDEX", INDEX_NAME=name, ID=table, ROWNO=row, 備考="it's", 順序=order, bolUNIQUE=unique, brinindex=brin)


KEY = dict(KEY=-1, Null値="NOT NULL")


def default(text):
    return dict(初期値=text)
