"""Reads that fail, files that change, and memory that runs out while a file is read: a short
result is never given as a whole one. faults/FaultPreload_posix.cpp makes them fail."""
import contextlib
import errno
import os
import re
import sqlite3
import subprocess
import unittest

from tool import TOOL, ToolTest, environment

LIBRARY = os.environ["TABULEX_FAULTS"]
PAGE = 256 * 1024
EVER = 10 ** 9
WHY = r": (reading failed at byte [\d,]+ of [\d,]+|the file was cut to [\d,]+ of [\d,]+ bytes)"
SUMMARY = r"^batches=(\d+) delivered=(\d+) skipped=(\d+) result=(\w+)$"


def quotes(count, descending=False):
    """Bars of three symbols in one ascending or descending sequence of minutes."""
    lines = []
    for i in range(count):
        day, minute = divmod(i, 1440)
        price = 1000 + i % 500
        lines.append(f"{'ABC DEF GHI'.split()[i * 3 // count]},2003/{day // 28 + 1:02}/{day % 28 + 1:02},"
                     f"{minute // 60:02}:{minute % 60:02}:00,{price}.5,{price + 1}.5,{price}.25,"
                     f"{price + 1},{1000 + i}")
    return "\n".join(["Symbol,Date,Time,Open,High,Low,Close,Volume",
                      *(reversed(lines) if descending else lines)]) + "\n"


class Reads(ToolTest):
    """Each test makes its file, and has each read of each command fail."""

    def faulty(self, path, *command, **faults):
        """Runs a command with faults, which are given as read=3 for FAULT_READ=3."""
        changes = {f"FAULT_{name.upper()}": str(value) for name, value in faults.items()}
        return self.run_tool(*command, env=environment(LD_PRELOAD=LIBRARY, FAULT_FILE=path,
                                                       **changes))

    def count(self, path, *command, **faults):
        """The result of a command without a fault; how many reads and allocations it made."""
        result = self.faulty(path, *command, log=self.path("log"), **faults)
        self.assertEqual(result.status, 0, result.err)
        return result, *map(int, self.read("log").split())

    def published(self):
        """What stands in the output files: their text, or the number of rows of a database."""
        found = {}
        for name in sorted(os.listdir(self.folder)):
            if name.startswith("out.csv"):
                found[name] = self.read(name)
            elif name.startswith("out.db"):
                with contextlib.closing(sqlite3.connect(self.path(name))) as db:
                    found[name] = db.execute("SELECT count(*) FROM quotes").fetchone()[0]
        return found

    def clear(self):
        for name in os.listdir(self.folder):
            if name.startswith("out."):
                os.remove(self.path(name))

    def try_each_read(self, path, *command, before=lambda: None, kinds):
        """Each read in turn: either the whole result and 0, or 3, a reason and no output."""
        self.clear()
        before()
        old = self.published()
        whole, reads, _ = self.count(path, *command)
        self.assertGreater(reads, 0)
        expected = self.published()
        failed = 0
        for read in range(reads):
            for kind, count in kinds:
                with self.subTest(command=command, read=read, kind=kind, count=count):
                    self.clear()
                    before()
                    result = self.faulty(path, *command, read=read, kind=kind, count=count)
                    if result.status == 0:
                        self.assertEqual(result.out, whole.out)
                        self.assertEqual(self.published(), expected)
                        continue
                    failed += 1
                    self.assertEqual(result.status, 3, result.err)
                    self.assertRegex(result.err, path + WHY)
                    self.assertEqual(self.published(), old)
                    if command[0] in ("raw", "symbols"):
                        self.assertTrue(whole.out.startswith(result.out), result.out[-200:])
                    elif command[0] != "convert" and command[1] != self.quotes:
                        self.assertEqual(result.out, "")
                    if command[0] == "convert":
                        self.assertRegex(result.summary(), "result=(rollback|refused)$")
        self.assertGreater(failed, 0)


FAIL_ONCE, FAIL_EVER = (errno.EIO, 1), (errno.EIO, EVER)
END_EARLY = ("short", EVER)


class Commands(Reads):
    def setUp(self):
        super().setUp()
        self.quotes = self.file("quotes.csv", quotes(12_000))

    def test_each_read_of_each_command_may_fail(self):
        for command in (("inspect",), ("inspect", "--json"), ("inspect", "--no-count"), ("check",),
                        ("preview", "--from", "11000"), ("raw",), ("raw", "--last"),
                        ("raw", "--count-only"), ("raw", "--from", "11990"), ("symbols",)):
            self.try_each_read(self.quotes, *command, self.quotes,
                               kinds=(FAIL_ONCE, FAIL_EVER, END_EARLY))

    def test_so_may_each_read_of_a_conversion(self):
        out = self.path("out.csv")
        for command in (("-o", out), ("-o", out, "--portion", "100:20000"),
                        ("-o", out, "--portion", "100:9000"), ("-o", out, "--to", "2003-01-05"),
                        ("-n",), ("-o", out, "--symbol", "DEF")):
            self.try_each_read(self.quotes, "convert", self.quotes, *command,
                               kinds=(FAIL_ONCE, FAIL_EVER, END_EARLY))

    def test_templates_are_tried_on_the_beginning_of_a_long_last_line(self):
        path = self.file("long.csv", quotes(30) + "x," * (8 << 20) + "\n")
        result = self.faulty(path, "check", "--column", "2=Date", path, least=8 << 20,
                             log=self.path("log"))
        self.assertIn("no Date template reads it", result.err)
        self.assertEqual(self.read("log").split()[1], "0") # allocations of 8 MiB and more

    def test_a_good_output_is_not_replaced_by_a_short_one(self):
        few = self.file("few.csv", quotes(30))
        for name, *replace in (("out.csv",), ("out.db", "--replace")):
            out = self.path(name)
            self.try_each_read(self.quotes, "convert", self.quotes, "-o", out, *replace,
                               before=lambda out=out: self.succeed("convert", few, "-o", out),
                               kinds=(FAIL_ONCE,))

    def test_reads_that_give_less_at_a_time_change_nothing(self):
        whole, reads, _ = self.count(self.quotes, "convert", self.quotes)
        for read in range(reads):
            result = self.faulty(self.quotes, "convert", self.quotes, read=read, kind="short")
            self.assertEqual((result.status, result.out), (0, whole.out))


class Backwards(Reads):
    """A file that runs backwards is counted before its run begins, which then reads its pages
    again."""

    def test_each_read_may_fail(self):
        path = self.file("quotes.csv", quotes(90_000, descending=True))
        self.assertGreater(os.path.getsize(path), 17 * PAGE)
        self.try_each_read(path, "convert", path, "-o", self.path("out.csv"), kinds=(FAIL_ONCE,))


class Counts(Reads):
    def test_skipped_lines_have_been_read(self):
        lines = quotes(20_000).splitlines()
        for i in range(50, 20_000, 50):
            lines[i] = lines[i].replace(",2003/", ",1o03/")
        path = self.file("quotes.csv", "\n".join(lines) + "\n")
        result = self.faulty(path, "convert", path, "-n", read=8, count=EVER)
        self.assertEqual(result.status, 3)
        batches, delivered, skipped, end = re.fullmatch(SUMMARY, result.summary()).groups()
        bad = sum(": field 2: " in line for line in result.err.splitlines())
        self.assertGreater(int(batches), 3)
        self.assertEqual((int(skipped), end), (bad, "rollback"))
        # The place of the fault is that of the last line read: the header comes on top.
        place = int(re.search(r"after line ([\d,]+),", result.err).group(1).replace(",", ""))
        self.assertEqual(int(delivered) + bad, place - 1)


class Outputs(Reads):
    """What is written while the system interrupts every other call, takes little at a time, or
    doesn't get it to the disk."""

    def outputs(self, path):
        out, bad = self.path("out.csv"), self.path("bad.csv")
        yield ("convert", path, "-o", out), [out]
        yield ("convert", path, "-o", "/dev/stdout", "--rejects", bad), [bad]
        yield ("convert", path, "-o", self.path("out.jsonl")), [self.path("out.jsonl")]
        yield ("raw", path), []
        yield ("convert", "--help"), []

    def test_are_whole_though_calls_are_interrupted_or_do_little(self):
        path = self.file("a.csv", quotes(3000).replace("1010.25", "x"))
        for command, files in self.outputs(path):
            whole = self.succeed(*command)
            expected = [self.read(name) for name in files]
            for kind in ("interrupted", "short"):
                with self.subTest(command=command, kind=kind):
                    for name in files:
                        os.remove(name)
                    result = self.faulty(path, *command, output=kind)
                    self.assertEqual(result, whole)
                    self.assertEqual([self.read(name) for name in files], expected)

    def test_that_do_not_get_to_the_disk_are_no_outputs(self):
        path = self.file("a.csv", quotes(3000))
        for name in ("out.csv", "out.db"):
            result = self.faulty(path, "convert", path, "-o", self.path(name), output=f"sync={errno.EIO}")
            self.assertEqual(result.status, 3, result.err)
            self.assertRegex(result.err, f"{name}' can't be written: .*(Input/output|disk I/O) error")
            self.assertTrue(result.summary().endswith("result=rollback"))
            self.assertEqual(os.listdir(self.folder), ["a.csv"])

    def test_that_cannot_be_synchronised_by_their_file_system_are_outputs(self):
        path = self.file("a.csv", quotes(3000))
        result = self.faulty(path, "convert", path, "-o", self.path("out.csv"), output=f"sync={errno.EINVAL}")
        self.assertEqual(result.status, 0, result.err)


class Changes(Reads):
    """What happens to a file while it is read."""

    def setUp(self):
        super().setUp()
        self.quotes = self.file("quotes.csv", quotes(60_000))

    def change(self, kind, *command, read=6):
        size = os.path.getsize(self.quotes)
        try:
            return self.faulty(self.quotes, *command, self.quotes, read=read, kind=kind)
        finally:
            self.quotes = self.file("quotes.csv", quotes(60_000))
            self.assertEqual(os.path.getsize(self.quotes), size)

    def test_a_file_that_is_cut_ends_with_status_3(self):
        for command in (("convert", "-o", self.path("out.csv")), ("convert", "-n"), ("raw",),
                        ("raw", "--count-only"), ("symbols",), ("inspect",), ("inspect", "--json")):
            with self.subTest(command):
                result = self.change("cut=300000", *command)
                self.assertEqual(result.status, 3)
                self.assertRegex(result.err, "was cut to 300,000 of [\\d,]+ bytes .*run the command again")
                self.assert_entries("quotes.csv")

    def test_a_file_that_grows_lacks_its_new_end(self):
        for command in (("convert", "-o", self.path("out.csv")), ("raw",), ("raw", "--count-only"),
                        ("symbols",), ("inspect", "--json")):
            with self.subTest(command):
                result = self.change("grow=40", *command)
                self.assertEqual(result.status, 1)
                self.assertRegex(result.err, "grew from [\\d,]+ to [\\d,]+ bytes")
                self.assert_entries("quotes.csv")

    def test_what_ends_before_the_new_end_is_whole(self):
        for command in (("convert", "--portion", "59000:1000"), ("convert", "--to", "2003-01-20"),
                        ("raw", "--count", "50000"), ("preview",), ("inspect", "--no-count"), ("check",)):
            with self.subTest(command):
                whole = self.succeed(*command, self.quotes)
                result = self.change("grow=40", *command, read=2)
                self.assertEqual((result.status, result.out), (0, whole.out), result.err)

    def test_a_reader_that_has_gone_asks_for_no_more(self):
        command = [*TOOL, "convert", self.quotes]
        env = environment(LD_PRELOAD=LIBRARY, FAULT_FILE=self.quotes, FAULT_READ="9", FAULT_COUNT=str(EVER))
        tool = subprocess.Popen(command, stdout=subprocess.PIPE, stderr=subprocess.PIPE, env=env)
        tool.stdout.readline()
        tool.stdout.close()
        err = tool.stderr.read().decode()
        tool.stderr.close()
        self.assertEqual(tool.wait(60), 0, err)


class Memory(Reads):
    """Allocations of some size, each in turn: lines are kept in such ones."""

    LEAST = 8192

    def test_what_comes_out_is_whole_or_a_failure(self):
        path = self.file("quotes.csv", quotes(12_000))
        for command in (("convert", path), ("raw", path), ("symbols", path)):
            whole, _, allocations = self.count(path, *command, least=self.LEAST)
            failed = 0
            for n in range(allocations):
                with self.subTest(command=command, allocation=n):
                    result = self.faulty(path, *command, memory=n, least=self.LEAST)
                    self.assertIn(result.status, (0, 1, 3), result.err)
                    if result.status == 0:
                        self.assertEqual(result.out, whole.out)
                    else:
                        self.assertNotEqual(result.err, "")
                        failed += 1
            self.assertGreater(failed, 0)


if __name__ == "__main__":
    unittest.main()
