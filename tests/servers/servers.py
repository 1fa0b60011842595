"""Private database servers for the tests: own data directory, own port on the loopback, gone with the test."""

import contextlib
import glob
import os
import pwd
import re
import shutil
import socket
import subprocess
import tempfile
import time


def _free_port():
    with contextlib.closing(socket.socket()) as probe:
        probe.bind(("127.0.0.1", 0))
        return probe.getsockname()[1]


def _run_as(user, command):
    """The command as a user that servers accept: they refuse to run as root."""
    return (["setpriv", f"--reuid={user}", f"--regid={user}", "--clear-groups"] if os.getuid() == 0 else []) + command


class _Server:
    user = ""

    def __init__(self):
        self.folder = tempfile.mkdtemp(prefix="qmserver_")
        self.port = _free_port()
        self.process = None
        self.databases = 0
        if os.getuid() == 0:
            entry = pwd.getpwnam(self.user)
            os.chown(self.folder, entry.pw_uid, entry.pw_gid)

    def _start(self, command):
        self.log = open(os.path.join(self.folder, "log"), "wb")
        self.process = subprocess.Popen(_run_as(self.user, command), stdout=self.log, stderr=subprocess.STDOUT)
        for _ in range(300):
            if self._answers():
                return
            if self.process.poll() is not None:
                break
            time.sleep(0.1)
        raise RuntimeError(open(os.path.join(self.folder, "log"), errors="replace").read())

    def __enter__(self):
        self.start()
        return self

    def __exit__(self, *_):
        if self.process:
            self.process.terminate()
            try:
                self.process.wait(20)
            except subprocess.TimeoutExpired:
                self.process.kill()
                self.process.wait()
            self.log.close()
        shutil.rmtree(self.folder, ignore_errors=True)

    def new_database(self):
        """An empty database; its name is ASCII, for clients that know no more."""
        self.databases += 1
        name = f"d{self.databases}"
        self.create_database(name)
        return name

    def load(self, database, script, locale="C"):
        """Runs a script to its end as a person's client with its own defaults does, errors included; gives the complaints:
        errors, and warnings, which name what gets lost."""
        done = subprocess.run(self._own_defaults(database), input=script if isinstance(script, bytes) else script.encode(),
                              env={**os.environ, "LC_ALL": locale}, capture_output=True)
        lines = (done.stderr + done.stdout).decode(errors="replace").splitlines()
        return [line for line in lines if re.search(r"ERROR|FATAL|WARNING|^Warning|truncated", line)]

    def query(self, database, sql):
        """The rows of a query as lists of texts."""
        done = self._client(database, sql)
        if done.returncode != 0:
            raise RuntimeError(done.stderr)
        return [line.split("\t") for line in done.stdout.splitlines()]


class PostgreSQL(_Server):
    user = "postgres"

    def start(self):
        binaries = sorted(glob.glob("/usr/lib/postgresql/*/bin"))[-1]
        data = os.path.join(self.folder, "data")
        subprocess.run(_run_as(self.user, [f"{binaries}/initdb", "-D", data, "-U", "postgres", "-A", "trust",
                                           "-E", "UTF8", "--no-locale", "--no-sync"]),
                       check=True, stdout=subprocess.DEVNULL)
        self._start([f"{binaries}/postgres", "-D", data, "-p", str(self.port), "-c", "listen_addresses=127.0.0.1",
                     "-c", f"unix_socket_directories={self.folder}", "-c", "fsync=off"])

    def _own_defaults(self, database):
        return self._command(database)

    def _command(self, database):
        return ["psql", "-X", "-q", "-h", "127.0.0.1", "-p", str(self.port), "-U", "postgres", "-d", database]

    def _client(self, database, sql):
        return subprocess.run(self._command(database) + ["-At", "-F", "\t", "-c", sql], capture_output=True, text=True)

    def _answers(self):
        return self._client("postgres", "select 1").returncode == 0

    def create_database(self, name):
        self.query("postgres", f'create database "{name}"')

    def tables(self, database):
        return [row[0] for row in self.query(
            database, "select table_name from information_schema.tables where table_schema = 'public' "
            "and table_type = 'BASE TABLE' order by 1")]


class MariaDB(_Server):
    user = "mysql"

    def __init__(self, *options):
        super().__init__()
        self.options = list(options)

    def start(self):
        data = os.path.join(self.folder, "data")
        subprocess.run(_run_as(self.user, ["mariadb-install-db", "--no-defaults", f"--datadir={data}",
                                           "--auth-root-authentication-method=normal", "--skip-test-db"]),
                       check=True, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        binary = shutil.which("mariadbd") or "/usr/sbin/mariadbd"
        self._start([binary, "--no-defaults", f"--datadir={data}", f"--port={self.port}", "--bind-address=127.0.0.1",
                     f"--socket={self.folder}/socket", "--innodb-flush-log-at-trx-commit=0",
                     "--character-set-server=utf8mb4"] + self.options)

    def _command(self):
        return ["mariadb", "--no-defaults", "-h", "127.0.0.1", "-P", str(self.port), "-u", "root"]

    def _own_defaults(self, database):
        return self._command() + ["--force", "--show-warnings", database]

    def _client(self, database, sql):
        return subprocess.run(self._command() + ["-N", "-B", "--default-character-set=utf8mb4", "-e", sql]
                              + ([database] if database else []), capture_output=True, text=True)

    def _answers(self):
        return self._client("", "select 1").returncode == 0

    def create_database(self, name):
        self.query("", f"create database `{name}`")

    def tables(self, database):
        return [row[0] for row in self.query(
            database, f"select table_name from information_schema.tables where table_schema = '{database}' "
            "and table_type = 'BASE TABLE' order by 1")]
