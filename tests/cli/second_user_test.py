"""Every output command, run by two users of one machine who share its temporary folder and a Repository.

Run: second_user_test.py QUILLMARDEN_CLI QUILLMARDEN_SAMPLE ASSETS. Ends with 77 where it isn't run by root, who alone
can start programs as other users.
"""
import os
import pathlib
import shutil
import stat
import subprocess
import sys
import tempfile

FIRST, SECOND = 54321, 54322
SKIPPED = 77
SYSTEM = ["--system", "販売管理_PostgreSQL"]
MEMBERS = ["--system", "販売管理_メンバー"]
QUERY = ["--query", "出力_テーブル一覧", "--parameter", "販売管理_PostgreSQL"]
# Commands that make a file in a place of the program's own. All take --output or --output-folder as well.
COMMANDS = [
    ["sql", *SYSTEM], ["sql", *SYSTEM, "--runnable"], ["sql", *SYSTEM, "--table", "JUCHU"], ["view", *SYSTEM],
    ["layout", *SYSTEM], ["layout", "--system", "販売管理_PG管理"], ["er", *SYSTEM], ["list", *SYSTEM],
    ["list", *SYSTEM, "--fields"], ["members", *MEMBERS],
]

faults = []


def check(right, text):
    if not right:
        faults.append(text)


class User:
    """A person with a home, and a way to run the command line as that person."""

    def __init__(self, world, number):
        self.world, self.number = world, number
        self.home = world.folder / f"home{number}"
        self.home.mkdir()
        os.chown(self.home, number, number)

    def run(self, *arguments):
        def become():
            if self.number:
                os.setgroups([])
                os.setresgid(self.number, self.number, self.number)
                os.setresuid(self.number, self.number, self.number)
        environment = {"PATH": "/usr/bin:/bin", "HOME": str(self.home), "TMPDIR": str(self.world.temp), "LC_ALL": "C.UTF-8"}
        return subprocess.run([str(self.world.cli), *arguments, "--repository", str(self.world.repository)],
                              cwd=self.home, env=environment, preexec_fn=become, capture_output=True, text=True,
                              timeout=300, check=False)

    def output(self, *arguments):
        """The files that the command says it made; they are this person's."""
        result = self.run(*arguments)
        check(result.returncode == 0, f"{self.number}: {arguments}: {result.returncode} {result.stderr}")
        files = [self.home / line for line in result.stdout.splitlines()]
        check(bool(files), f"{self.number}: {arguments}: no file")
        for file in files:
            made = file.is_file() and not file.is_symlink()
            check(made and file.stat().st_uid == self.number, f"{self.number}: {arguments}: {file} is not there or not theirs")
        return files


class World:
    """A Repository in a shared folder, and a temporary folder like a machine's own."""

    def __init__(self, folder, cli, sample, assets):
        self.folder = folder
        folder.chmod(0o755)
        self.temp = folder / "tmp"
        self.temp.mkdir()
        self.temp.chmod(0o1777)
        # The build's folder need not be open to others.
        self.cli = folder / "quillmarden-cli"
        shutil.copy(cli, self.cli)
        shutil.copytree(assets, folder / "assets")
        shared = folder / "shared"
        shared.mkdir()
        shared.chmod(0o777)
        self.repository = shared / "sample.mdb"
        subprocess.run([sample, self.repository], check=True, stdout=subprocess.DEVNULL)
        self.repository.chmod(0o666)


def outputs(user):
    made = []
    for number, command in enumerate(COMMANDS):
        made += user.output(*command)
        place = f"out{number}"
        option = "--output-folder" if command[0] == "layout" else "--output"
        user.output(*command, option, place)
    user.output("report", *SYSTEM, *QUERY, "--output", "report.xlsx")
    return made


def plant_links(world, target):
    """What the first user can put where the second one's files would come: links to a file that is neither's."""
    for name in ["販売管理_PostgreSQL_-_-", "販売管理_メンバー_-_-", f"quillmarden-{SECOND}", "tempQuillmarden_-_-"]:
        place = world.temp / name
        if place.exists():
            continue
        place.mkdir()
        for script in ["Sql_販売管理_PostgreSQL.txt", "Sql_受注.txt", "SqlView_販売管理_PostgreSQL.txt",
                       "Sql_販売管理_PostgreSQL.途中.txt"]:
            (place / script).symlink_to(target)
            os.lchown(place / script, FIRST, FIRST)
        place.chmod(0o777)
        os.chown(place, FIRST, FIRST)


def main():
    if os.geteuid() != 0:
        print("skipped: only root can run programs as other users")
        return SKIPPED
    with tempfile.TemporaryDirectory() as name:
        world = World(pathlib.Path(name), *sys.argv[1:4])
        target = world.folder / "third"
        target.write_text("third")
        target.chmod(0o666)
        first, second, root = User(world, FIRST), User(world, SECOND), User(world, 0)
        theirs = outputs(first)
        plant_links(world, target)
        outputs(second)
        check(target.read_text() == "third", "a planted link was followed")
        for user in (first, second):
            for folder in world.temp.glob("quillmarden-*"):
                if folder.stat().st_uid == user.number and folder.name != f"quillmarden-{SECOND}":
                    check(stat.S_IMODE(folder.stat().st_mode) == 0o700, f"{folder} is open to others")
        for user in (root, second, first):
            login = user.run("login")
            check(login.returncode == 0, f"{user.number}: login: {login.stderr}")
        for file in theirs:
            check(file.is_file(), f"{file} was swept")
    print("\n".join(faults) if faults else f"{len(COMMANDS)} commands as two users, nothing of either touched")
    return 1 if faults else 0


if __name__ == "__main__":
    sys.exit(main())
