"""A run that is told to stop ends soon, says so, and leaves the former file and nothing half written.

Run: stop_test.py QUILLMARDEN_CLI QUILLMARDEN_SAMPLE
"""
import pathlib
import signal
import sqlite3
import subprocess
import sys
import tempfile
import time

TABLES = 1200
FIELDS = 12
# A second on a machine that has nothing else to do; the tests of a whole suite run side by side.
LIMIT = 1.0 if "--alone" in sys.argv else 30.0
SYSTEM = ["--system", "大"]
COMMANDS = [["er", *SYSTEM], ["list", *SYSTEM, "--fields"], ["sql", *SYSTEM], ["sql", *SYSTEM, "--runnable"]]
STOPS = [signal.SIGINT, signal.SIGTERM, signal.SIGHUP]

faults = []


def check(right, text):
    if not right:
        faults.append(text)


def fill(repository):
    """A System with many tables."""
    database = sqlite3.connect(repository)
    database.execute("INSERT INTO MAS_SYSTEM (システム名, Databasetype, 修正許可, 出力しない) VALUES ('大', 'PostgreSQL', -1, 0)")
    first = database.execute("SELECT max(ID) + 1 FROM MAS_TABLEINFO").fetchone()[0]
    for number in range(first, first + TABLES):
        database.execute("INSERT INTO MAS_TABLEINFO (ID, システム名, ファイル種別, テーブル名, 日本語名, 削除フラグ, 修正許可) "
                         "VALUES (?, '大', 'PostgreSQL', ?, ?, 0, -1)", (number, f"t{number}", f"表{number}"))
        database.executemany(
            "INSERT INTO MAS_TABLEDETAILES (ID, ROWNO, 表示順, 日本語名, 項目名, 型) VALUES (?, ?, ?, ?, ?, 'integer')",
            [(number, row, row, f"項目{row}", f"c{row}") for row in range(1, FIELDS + 1)])
    database.commit()


def start(cli, folder, command, output):
    return subprocess.Popen([cli, *command, "--repository", "sample.mdb", "--data-folder", "data", "--temp-folder",
                             "temp", "--output", output], cwd=folder, stdout=subprocess.PIPE, stderr=subprocess.PIPE, text=True)


def wait_for_handlers(run):
    """Before the program looks after its signals, they end it as they end any program."""
    while run.poll() is None:
        status = pathlib.Path(f"/proc/{run.pid}/status").read_text()
        caught = int(status.split("SigCgt:")[1].split()[0], 16)
        if all(caught >> (stop - 1) & 1 for stop in STOPS):
            return
        time.sleep(0.002)


def main():
    cli, sample = sys.argv[1:3]
    with tempfile.TemporaryDirectory() as name:
        folder = pathlib.Path(name)
        subprocess.run([sample, folder / "sample.mdb"], check=True, stdout=subprocess.DEVNULL)
        fill(folder / "sample.mdb")
        for command in COMMANDS:
            output = folder / "out"
            began = time.monotonic()
            whole = start(cli, folder, command, "whole")
            whole.communicate()
            length = time.monotonic() - began
            check(whole.returncode == 0, f"{command}: {whole.returncode}")
            for number, share in enumerate([0.1, 0.3, 0.5, 0.7, 0.8, 0.9, 0.95]):
                output.write_text("former")
                run = start(cli, folder, command, "out")
                began = time.monotonic()
                wait_for_handlers(run)
                time.sleep(max(0.0, began + share * length - time.monotonic()))
                run.send_signal(STOPS[number % len(STOPS)])
                began = time.monotonic()
                _, said = run.communicate()
                took = time.monotonic() - began
                if run.returncode == 0:
                    continue  # it was faster than before
                print(f"{' '.join(command)}: stopped at {share:.0%} of {length:.1f} s, took {took:.2f} s")
                check(run.returncode == 1, f"{command} at {share}: {run.returncode}")
                check("中断しました" in said or "中止しました" in said, f"{command} at {share}: {said}")
                check(took < LIMIT, f"{command} at {share}: {took} s")
                check(output.read_text() == "former", f"{command} at {share}: the former file is gone")
                left = {file.name for file in folder.iterdir()}
                check(left <= {"sample.mdb", "data", "temp", "out", "out.途中", "whole"}, f"{command} at {share}: {left}")
    print("\n".join(faults) if faults else "every run stopped soon, and said so")
    return 1 if faults else 0


if __name__ == "__main__":
    sys.exit(main())
