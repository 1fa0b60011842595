#!/usr/bin/env python3
"""Who may change what, and two people at one table, over the commands.

usage: rights_test.py CLI SAMPLE-MAKER
"""

import contextlib
import os
import shutil
import sqlite3
import subprocess
import sys
import time
import unittest

sys.path.insert(0, os.path.join(os.path.dirname(__file__), os.pardir, "support"))
from repositories import CLI, RepositoryCase  # noqa: E402

SYSTEM = "販売管理_MySQL"
TABLE = "SOKO"
NOBODY = 65534


def contents(path):
    """All that the file holds, but for the moments of logins."""
    db = sqlite3.connect(f"file:{path}?mode=ro", uri=True)
    db.execute("pragma query_only = 1")
    rows = [line for line in db.iterdump() if not line.startswith('INSERT INTO "MAS_USER"')]
    db.close()
    return rows


class RightsCase(RepositoryCase):
    def setUp(self):
        self.repository = os.path.join(self.folder, "own.mdb")
        shutil.copy(self.sample, self.repository)
        shutil.rmtree(os.path.join(self.folder, "quillmarden"), ignore_errors=True)

    def sql(self, statement):
        with contextlib.closing(sqlite3.connect(self.repository)) as db:
            db.execute(statement)
            db.commit()

    def path(self, name):
        return os.path.join(self.folder, name)

    def write(self, name, text):
        with open(self.path(name), "w", encoding="utf-8") as file:
            file.write(text)
        return self.path(name)

    def qm(self, command, *options, user="admin"):
        return self.run_command(command, self.repository, "--user", user, *options)

    def show(self, user="admin", system=SYSTEM, table=TABLE):
        done = self.qm("show", "--grid", "--system", system, "--table", table, user=user)
        self.assertEqual(done.returncode, 0, done.stderr.decode())
        return done.stdout.decode()


class RefusedCommands(RightsCase):
    """Every command that writes, in every situation in which it may not."""

    def setUp(self):
        super().setUp()
        of_table = ("--system", SYSTEM, "--table", TABLE)
        grid = self.write("grid.tsv", self.show())
        memo = self.write("memo.tsv", "注\tmemo\n")
        values = self.write("list.tsv", "-1\t1\tone\n0\t2\ttwo\n")
        db = sqlite3.connect(self.repository)
        name, = db.execute("select 値名称 from MAS_DIVISION where システム名 = ? and 型 = '数値'", (SYSTEM,)).fetchone()
        db.close()
        of_list = ("--system", SYSTEM, "--list", name)
        # A command, what it writes to, and whether it goes on without writing.
        self.commands = [
            (("save", *of_table, "--grid", grid), "table", False),
            (("memo", *of_table, "--save", memo), "table", False),
            (("sql", *of_table, "--output", self.path("a.sql")), "table", True),
            (("sql", *of_table, "--runnable", "--output", self.path("a.sql")), "table", True),
            (("value-list", *of_list, "--save", values), "system", False),
            (("value-list", *of_list, "--memo", "m"), "system", False),
            (("capacity", "--system", SYSTEM), "system", False),
            (("system", "--system", SYSTEM, "--set", "システム名=別"), "system", False),
            (("system", "--system", SYSTEM, "--set", "概要=x"), "record", False),
            (("system", "--system", "新", "--new", "--set", "概要=x", "--set", "databasetype=Oracle"), "repository", False),
        ]

    def check(self, concerned, reason, user="admin"):
        before = contents(self.repository)
        for command, target, goes_on in self.commands:
            if target not in concerned:
                continue
            with self.subTest(command=command):
                done = self.qm(*command, user=user)
                self.assertEqual(contents(self.repository), before)
                self.assertEqual(done.returncode, 0 if goes_on else 1, done.stderr.decode())
                if not goes_on:
                    self.assertIn(reason, done.stderr.decode())

    def test_each_command_writes_for_one_who_may(self):
        for command, _, _ in self.commands:
            with self.subTest(command=command):
                shutil.copy(self.sample, self.repository)
                self.sql("UPDATE MAS_TABLEINFO SET レコード長 = 0")
                before = contents(self.repository)
                done = self.qm(*command)
                self.assertEqual(done.returncode, 0, done.stderr.decode())
                self.assertNotEqual(contents(self.repository), before)

    def test_guest(self):
        self.check({"table", "system", "record", "repository"}, "guestでは、変更できません.", user="guest")

    def test_shut_out_user(self):
        self.sql("INSERT INTO MAS_USER (ユーザー名) VALUES ('ito')")
        self.sql("UPDATE MAS_SYSTEM SET ユーザー制限 = 2, 作成者 = 'sato'")
        self.check({"table", "system", "record"}, "ユーザー制限のため、変更できません.", user="ito")

    def test_locked_system(self):
        self.sql("UPDATE MAS_SYSTEM SET 修正許可 = 0")
        self.check({"table", "system"}, "システム全体が編集できないように設定されています.")

    def test_locked_table(self):
        self.sql("UPDATE MAS_TABLEINFO SET 修正許可 = 0")
        self.check({"table"}, "このテーブルは編集不可に設定されています.")

    def test_table_of_another_system(self):
        self.sql("UPDATE MAS_TABLEINFO SET 全システム共通 = -1")
        self.commands = [(tuple("<全システム共通>" if word == SYSTEM else word for word in command), target, goes_on)
                         for command, target, goes_on in self.commands if command[0] in ("save", "memo")]
        self.sql(f"UPDATE MAS_TABLEINFO SET 全システム共通 = 0 WHERE システム名 <> '{SYSTEM}'")
        self.check({"table"}, "のシステムで定義されたものです.")

    def test_deleted_table(self):
        self.sql("UPDATE MAS_TABLEINFO SET 削除フラグ = 1")
        before = contents(self.repository)
        for command, target, _ in self.commands:
            if target == "table":
                self.assertEqual(self.qm(*command).returncode, 1)
        self.assertEqual(contents(self.repository), before)

    def as_reader(self, *command, folder_too=False):
        """Runs a command as one who may read the Repository and no more."""
        data = self.path("reader")
        os.makedirs(data, exist_ok=True)
        os.chmod(data, 0o777)
        os.chmod(self.folder, 0o555 if folder_too else 0o777)
        os.chmod(self.repository, 0o444)
        drop = ["setpriv", f"--reuid={NOBODY}", f"--regid={NOBODY}", "--clear-groups"] if os.geteuid() == 0 else []
        name, *options = [word.replace(self.path("a.sql"), os.path.join(data, "a.sql")) for word in command]
        try:
            return subprocess.run([*drop, CLI, name, "--repository", self.repository, "--data-folder", data, "--temp-folder",
                                   data, *options], stdin=subprocess.DEVNULL, capture_output=True)
        finally:
            os.chmod(self.folder, 0o755)
            os.chmod(self.repository, 0o644)

    def test_reader(self):
        for folder_too in (False, True):
            with open(self.repository, "rb") as file:
                before = file.read()
            for command, _, goes_on in self.commands:
                with self.subTest(command=command, folder_too=folder_too):
                    done = self.as_reader(*command, folder_too=folder_too)
                    self.assertEqual(done.returncode, 0 if goes_on else 1, done.stderr.decode())
                    if not goes_on:
                        self.assertIn("データベースファイルは読み取り専用です.", done.stderr.decode())
            for command in (("login",), ("systems",), ("tables", "--system", SYSTEM),
                            ("show", "--system", SYSTEM, "--table", TABLE),
                            ("layout", "--system", SYSTEM, "--table", TABLE, "--output-folder", self.path("reader"))):
                done = self.as_reader(*command, folder_too=folder_too)
                self.assertEqual((done.returncode, done.stderr), (0, b""), command)
            with open(self.repository, "rb") as file:
                self.assertEqual(file.read(), before)

    def test_older_file_for_looking(self):
        """What an upgrade would add is not there for a guest, and nothing is added for him."""
        for column in ("pmark", "reffile", "partition_field"):
            self.sql(f"ALTER TABLE MAS_TABLEINFO DROP COLUMN {column}")
        before = contents(self.repository)
        self.assertTrue(self.show(user="guest"))
        done = self.qm("sql", "--system", SYSTEM, "--output", self.path("a.sql"), user="guest")
        self.assertEqual(done.returncode, 0, done.stderr.decode())
        self.assertEqual(contents(self.repository), before)

    def test_guest_with_a_row_leaves_no_stamp(self):
        self.sql("INSERT OR REPLACE INTO MAS_USER (ユーザー名) VALUES ('Guest')")
        self.qm("login", user="Guest")
        db = sqlite3.connect(self.repository)
        self.assertEqual(db.execute("SELECT ログオン日付 FROM MAS_USER WHERE ユーザー名 = 'Guest'").fetchall(), [(None,)])


class TwoPeople(RightsCase):
    def setUp(self):
        super().setUp()
        for user in ("ito", "sato"):
            self.sql(f"INSERT INTO MAS_USER (ユーザー名) VALUES ('{user}')")

    def save(self, text, *options, user="admin"):
        return self.qm("save", "--system", SYSTEM, "--table", TABLE, "--grid", self.write("grid.tsv", text), *options, user=user)

    def names(self):
        return [line.split("\t")[1] for line in self.show(user="admin").splitlines()]

    def test_a_save_by_somebody_else_is_told_and_needs_over(self):
        lines = self.show(user="ito").splitlines(True)
        last = lines[-1].split("\t")[1]
        theirs = self.show(user="sato").splitlines(True)
        self.assertEqual(self.save("".join(theirs[:-1]), user="sato").returncode, 0)
        before = contents(self.repository)
        mine = lines[0].replace("\t", "X\t", 1) + "".join(lines[1:])
        done = self.save(mine, user="ito")
        self.assertEqual(done.returncode, 1)
        self.assertIn("更新者 : sato", done.stderr.decode())
        self.assertIn(f"- {last}", done.stderr.decode())
        self.assertEqual(contents(self.repository), before)
        self.assertEqual(self.save(mine, "--answer", "no", user="ito").returncode, 1)
        self.assertEqual(contents(self.repository), before)

        done = self.save(mine, "--over", user="ito")
        self.assertEqual(done.returncode, 0, done.stderr.decode())
        self.assertIn(f"他で削除された次の項目は、新しい項目として登録しました. インデックスと外部参照は引き継がれません.\n {last}",
                      done.stderr.decode())
        self.assertEqual(len(self.names()), len(lines))
        self.assertEqual(self.save(self.show(user="ito"), user="ito").returncode, 0, "one's own save is no other's")

    def test_a_line_keeps_its_field_whatever_number_that_has_by_now(self):
        table = ("--system", "販売管理_PostgreSQL", "--table", "SHOHIN")
        db = sqlite3.connect(self.repository)
        table_id, = db.execute("select ID from MAS_TABLEINFO where システム名 = '販売管理_PostgreSQL' and テーブル名 = 'SHOHIN'").fetchone()
        pointed = ("select i.INDEX_NAME, d.項目名 from MAS_INDEX i join MAS_TABLEDETAILES d on d.ID = i.ID and d.ROWNO = i.ROWNO "
                   "where i.ID = ? union select r.項目名 || r.ID, d.項目名 from MAS_TABLEDETAILES r join MAS_TABLEDETAILES d "
                   "on d.ID = r.外部参照TABLEID and d.ROWNO = r.外部参照ROWNO where d.ID = ? order by 1, 2")
        before = db.execute(pointed, (table_id, table_id)).fetchall()
        self.assertTrue(before)
        shown = self.show("ito", "販売管理_PostgreSQL", "SHOHIN")
        first = "新\tFIRST\t\tchar\t3\t\t\tNOT NULL\n"
        theirs = self.write("theirs.tsv", first + self.show("sato", "販売管理_PostgreSQL", "SHOHIN"))
        self.assertEqual(self.qm("save", *table, "--grid", theirs, user="sato").returncode, 0)
        mine = self.write("mine.tsv", shown)
        self.assertEqual(self.qm("save", *table, "--grid", mine, user="ito").returncode, 1)
        self.assertEqual(self.qm("save", *table, "--grid", mine, "--over", user="ito").returncode, 0)
        self.assertEqual(db.execute(pointed, (table_id, table_id)).fetchall(), before)
        # A file of an older time, in hands that were never shown the table.
        self.assertEqual(self.qm("save", *table, "--grid", theirs, user="sato").returncode, 1)
        self.assertEqual(self.qm("save", *table, "--grid", theirs, "--over", user="sato").returncode, 0)
        self.sql("INSERT INTO MAS_USER (ユーザー名) VALUES ('new')")
        self.assertEqual(self.qm("save", *table, "--grid", mine, user="new").returncode, 0)
        self.assertEqual(db.execute(pointed, (table_id, table_id)).fetchall(), before)

    def test_a_save_that_takes_most_rows_away_wants_to_be_told_so(self):
        lines = self.show().splitlines(True)
        before = contents(self.repository)
        for text in ("\n" * 5, "".join(lines[: len(lines) // 2 - 1])):
            for answer in ("yes", "no"):
                done = self.save(text, "--answer", answer)
                self.assertEqual(done.returncode, 1)
                self.assertIn("件が削除されます.\n更新していません.", done.stderr.decode())
            self.assertEqual(contents(self.repository), before)
        self.assertEqual(self.save("".join(lines[:-1])).returncode, 0)
        self.assertEqual(self.save("\n" * 5, "--yes-remove").returncode, 0)
        self.assertEqual(self.names(), [])


class HeldLock(RightsCase):
    def test_looking_waits_for_nobody(self):
        self.qm("login")
        other = sqlite3.connect(self.repository, isolation_level=None)
        other.execute("begin immediate")
        other.execute("update MAS_USER set グループ = グループ")
        begun = time.monotonic()
        for command in (("login",), ("systems",), ("tables", "--system", SYSTEM),
                        ("show", "--system", SYSTEM, "--table", TABLE),
                        ("layout", "--system", SYSTEM, "--table", TABLE, "--output-folder", self.folder),
                        ("sql", "--system", SYSTEM, "--output", self.path("a.sql"), "--user", "guest")):
            done = self.run_command(command[0], self.repository, *command[1:])
            self.assertEqual((done.returncode, b"mdb" in done.stderr), (0, False), done.stderr.decode())
        self.assertLess(time.monotonic() - begun, 20)
        other.close()

    @unittest.skipUnless(os.environ.get("QM_LONG"), "waits for a lock as long as a save does")
    def test_the_message_names_the_repository(self):
        other = sqlite3.connect(self.repository, isolation_level=None)
        other.execute("begin immediate")
        done = self.qm("sql", "--system", SYSTEM, "--table", TABLE, "--output", self.path("a.sql"))
        self.assertIn("own.mdb」は他のユーザーが使用中です.", done.stderr.decode())
        self.assertNotIn("出力先ファイル", done.stderr.decode())
        other.close()


if __name__ == "__main__":
    unittest.main(argv=[sys.argv[0]])
