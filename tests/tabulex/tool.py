"""Runs the built program on files in a folder of the test's own."""
import csv
import dataclasses
import datetime as dt
import io
import json
import os
import resource
import subprocess
import tempfile
import unittest

import make_samples

# The command line of a call: the program, after a runner if the system can't run it by
# itself.
RUNNER = os.environ.get("TABULEX_RUNNER", "").split()
TOOL = [*RUNNER, os.environ["TABULEX"]]
# A runner of Windows programs can't pass on a name with characters outside of the locale.
LOCALE = "C.UTF-8" if RUNNER else "C"
SAMPLES = {sample.name: sample for sample in make_samples.all_samples()}


@dataclasses.dataclass
class Result:
    status: int
    out: str
    err: str

    def rows(self):
        return list(csv.reader(io.StringIO(self.out)))

    def summary(self):
        return self.err.splitlines()[-1] if self.err else ""

    def json(self):
        return json.loads(self.out)


def environment(**changes):
    env = dict(os.environ, LC_ALL=LOCALE, TERM="xterm")
    env.pop("NO_COLOR", None)
    env.update(changes)
    return env


def encoding_of(sample):
    return ["--encoding", "gbk"] if sample.encoding == "gbk" else []


def cell_text(value):
    """A value in the form that the tool must print."""
    if isinstance(value, dt.time):
        return value.isoformat("milliseconds" if value.microsecond else "seconds")
    if isinstance(value, float):
        return repr(value)[:-2] if value.is_integer() else repr(value)
    return str(value)


def expected_rows(sample, rows=None):
    columns = [c for c in sample.columns if c]
    rows = sample.rows if rows is None else rows
    return [columns] + [[cell_text(row[c]) for c in columns] for row in rows]


def minutes_text(count):
    """A file of minute bars of any length, made quickly and without a bad line."""
    start, day = dt.datetime(1990, 1, 1), ""
    lines = ["Date,Time,Open,High,Low,Close,Volume"]
    for i in range(count):
        if i % 1440 == 0:
            day = f"{start + dt.timedelta(minutes=i):%Y/%m/%d}"
        hour, minute = divmod(i % 1440, 60)
        price = 10000 + i * 7919 % 5000
        lines.append(f"{day},{hour:02}:{minute:02}:00,{price / 100},{price / 100 + 0.5},"
                     f"{price / 100 - 0.5},{price / 100 + 0.25},{100000 + i % 1000}")
    return "\n".join(lines) + "\n"


class ToolTest(unittest.TestCase):
    maxDiff = 2000

    def setUp(self):
        folder = tempfile.TemporaryDirectory(prefix="tabulex-test-")
        self.addCleanup(folder.cleanup)
        self.folder = folder.name

    def path(self, name):
        return os.path.join(self.folder, name)

    def sample(self, name):
        return SAMPLES[name].write(self.folder)

    def file(self, name, content):
        with open(self.path(name), "wb") as f:
            f.write(content.encode() if isinstance(content, str) else content)
        return self.path(name)

    def read(self, name):
        with open(self.path(name), encoding="utf-8") as f:
            return f.read()

    def run_tool(self, *args, most_bytes=None, **options):
        """most_bytes: the size beyond which no file may grow."""
        options.setdefault("env", environment())
        options.setdefault("stdin", subprocess.DEVNULL)
        if most_bytes:
            options["preexec_fn"] = lambda: resource.setrlimit(resource.RLIMIT_FSIZE,
                                                               (most_bytes, most_bytes))
        done = subprocess.run([*TOOL, *args], stdout=subprocess.PIPE, stderr=subprocess.PIPE,
                              timeout=120, **options)
        return Result(done.returncode, done.stdout.decode(), done.stderr.decode())

    def succeed(self, *args, **options):
        result = self.run_tool(*args, **options)
        self.assertEqual(result.status, 0, result.err)
        return result

    def fail_with(self, status, *args, **options):
        result = self.run_tool(*args, **options)
        self.assertEqual(result.status, status, result.out + result.err)
        return result

    def run_on_small_disk(self, name, *args):
        """Runs the tool in a file system of a megabyte that holds a copy of a file; gives its
        status, output and errors. The output ends with the names of the files that are there
        afterwards, and with "unchanged" if the copy is."""
        script = ('cp "$1" "$0/copy" && mkdir "$0/disk" && mount -t tmpfs -o size=1m none "$0/disk"'
                  ' || exit 99; cd "$0/disk"; cp ../copy "$1"; name=$1; shift; "$@"; status=$?;'
                  ' ls -A; cmp -s ../copy "$name" && echo unchanged; exit $status')
        with tempfile.TemporaryDirectory(prefix="tabulex-disk-", dir=self.folder) as place:
            try:
                done = subprocess.run(["unshare", "--mount", "--map-root-user", "sh", "-c", script,
                                       place, name, *TOOL, *args], cwd=self.folder, timeout=120,
                                      env=environment(), stdin=subprocess.DEVNULL,
                                      stdout=subprocess.PIPE, stderr=subprocess.PIPE)
            except FileNotFoundError:
                self.skipTest("no command unshare")
        err = done.stderr.decode()
        if done.returncode == 99 or err.startswith("unshare:"):
            self.skipTest(f"no file system can be mounted: {err.strip()}")
        return done.returncode, done.stdout.decode(), err

    def assert_entries(self, *names):
        self.assertEqual(sorted(os.listdir(self.folder)), sorted(names))
