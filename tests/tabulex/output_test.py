"""Where the rows go: files, devices and pipes, and what is left after a failure."""
import contextlib
import os
import sqlite3
import subprocess
import unittest

from tool import SAMPLES, TOOL, ToolTest, environment, expected_rows, minutes_text


class Files(ToolTest):
    def test_appear_when_the_conversion_is_committed(self):
        result = self.succeed("convert", self.sample("week.csv"), "-o", self.path("out.csv"))
        self.assertEqual(result.out, "")
        self.assert_entries("week.csv", "out.csv")
        self.assertEqual(self.read("out.csv").splitlines(),
                         [",".join(row) for row in expected_rows(SAMPLES["week.csv"])])

    def test_keep_their_old_content_otherwise(self):
        self.file("out.csv", "old")
        self.fail_with(1, "convert", self.sample("junk.csv"), "-o", self.path("out.csv"),
                       "--on-error", "stop")
        self.assert_entries("junk.csv", "out.csv")
        self.assertEqual(self.read("out.csv"), "old")

    def test_are_not_made_by_a_dry_run_nor_by_a_refusal(self):
        result = self.succeed("convert", self.sample("week.csv"), "--dry-run", "-o",
                              self.path("out.csv"))
        self.assertEqual(result.summary(), "batches=1 delivered=20 skipped=0 result=commit")
        self.fail_with(1, "convert", self.sample("week.csv"), "-o", self.path("out.csv"),
                       "--size", "9")
        self.assert_entries("week.csv")

    def test_are_never_the_file_that_is_read(self):
        path = self.sample("week.csv")
        os.symlink(path, self.path("link.csv"))
        for name in ("week.csv", "link.csv"):
            for option in ("-o", "--rejects"):
                with self.subTest((name, option)):
                    err = self.fail_with(2, "convert", path, option, self.path(name)).err
                    self.assertIn("would replace a file that is read", err)
        self.assertEqual(self.read("week.csv").encode(), SAMPLES["week.csv"].content())

    def test_are_never_another_file_that_is_read(self):
        one, two = self.sample("week.csv"), self.sample("tick.csv")
        for options in (["--rejects", two], ["-o", self.folder]):
            with self.subTest(options):
                err = self.fail_with(2, "convert", one, two, *options).err
                self.assertEqual(err.count("would replace a file that is read"), 2)
        self.assert_entries("week.csv", "tick.csv")
        self.assertEqual(self.read("tick.csv").encode(), SAMPLES["tick.csv"].content())

    def test_a_dry_run_writes_nothing_to_standard_output(self):
        self.assertEqual(self.succeed("convert", "-n", self.sample("week.csv")).out, "")


class Permissions(ToolTest):
    def test_are_those_of_what_is_replaced(self):
        os.chmod(self.file("out.csv", "old"), 0o600)
        self.succeed("convert", self.sample("week.csv"), "-o", self.path("out.csv"))
        self.assertEqual(os.stat(self.path("out.csv")).st_mode & 0o777, 0o600)


class Faults(ToolTest):
    def test_a_place_that_cannot_be_written_is_reported_before_the_run(self):
        cases = [("missing/out.csv", "No such file or directory"), ("missing/out.db", "No such"),
                 ("missing/new/", "No such file or directory"), ("week.csv/", "Not a directory")]
        for name, reason in cases:
            with self.subTest(name):
                result = self.fail_with(3, "convert", self.sample("week.csv"), "-o",
                                        self.path(name))
                self.assertIn(reason, result.err)
                self.assertTrue(result.summary().endswith("result=refused"))
        self.assert_entries("week.csv")

    @unittest.skipUnless(os.path.exists("/dev/full"), "no device that is always full")
    def test_a_full_device_rolls_back(self):
        for name in ("week.csv", "long.csv"):
            with self.subTest(name):
                result = self.fail_with(3, "convert", self.sample(name), "-o", "/dev/full")
                self.assertIn("No space left on device", result.err)
                self.assertTrue(result.summary().endswith("result=rollback"))

    @unittest.skipUnless(os.path.exists("/dev/full"), "no device that is always full")
    def test_full_standard_output_is_a_fault_of_every_command(self):
        path = self.sample("long.csv")
        for command in (["convert", path], ["inspect", path], ["inspect", "--json", path],
                        ["raw", path], ["preview", path], ["raw", "--last", path],
                        ["template", "Date", "*y/*m/*d", "2003/1/1"]):
            with self.subTest(command), open("/dev/full", "wb") as full:
                done = subprocess.run([*TOOL, *command], stdout=full, stderr=subprocess.PIPE,
                                      env=environment(), timeout=60)
                self.assertEqual(done.returncode, 3, done.stderr)
                self.assertIn(b"No space left on device", done.stderr)

    @unittest.skipUnless(os.path.exists("/dev/full"), "no device that is always full")
    def test_rejects_that_cannot_be_written_are_a_fault(self):
        result = self.fail_with(3, "convert", self.sample("junk.csv"), "--rejects", "/dev/full",
                                "-o", self.path("out.csv"))
        self.assertIn("'/dev/full' can't be written", result.err)
        self.assertTrue(result.summary().endswith("result=rollback"))
        self.assert_entries("junk.csv")


class Middles(ToolTest):
    """What ends a conversion while rows of it are still being written."""
    FORMATS = ("out.csv", "out.jsonl", "out.db")

    def test_a_limit_of_the_size_rolls_back(self):
        big = self.file("big.csv", minutes_text(40_000))
        for name in self.FORMATS:
            for most in (1_000_000, 1_900_000):
                with self.subTest(name=name, most=most):
                    result = self.fail_with(3, "convert", big, "-o", self.path(name), most_bytes=most)
                    self.assertRegex(result.err, "File too large|disk I/O error|disk is full")
                    self.assertTrue(result.summary().endswith("result=rollback"))
                    self.assert_entries("big.csv")

    def test_a_row_that_a_table_refuses_rolls_back(self):
        big = self.file("big.csv", minutes_text(10_000))
        for moment in (("1990-01-01", "00:30:00"), ("1990-01-04", "12:00:00"), ("1990-01-07", "22:39:00")):
            with self.subTest(moment):
                self.succeed("convert", self.file("one.csv", minutes_text(100)), "-o", self.path("out.db"))
                with contextlib.closing(sqlite3.connect(self.path("out.db"))) as base:
                    base.execute("DELETE FROM quotes")
                    base.execute("INSERT INTO quotes (Date, Time) VALUES (?, ?)", moment)
                    base.execute("CREATE UNIQUE INDEX one ON quotes (Date, Time)")
                    base.commit()
                result = self.fail_with(1, "convert", big, "-o", self.path("out.db"), "--append")
                self.assertIn("UNIQUE constraint failed", result.err)
                self.assertTrue(result.summary().endswith("result=rollback"))
                with contextlib.closing(sqlite3.connect(self.path("out.db"))) as base:
                    self.assertEqual(base.execute("SELECT count(*) FROM quotes").fetchone(), (1,))
                os.remove(self.path("out.db"))

    def test_too_many_bad_lines_leave_nothing(self):
        lines = minutes_text(20_000).splitlines()
        for at in (5_500, 15_500):
            lines[at] = lines[at].replace(",", ",x", 2)
        big = self.file("big.csv", "\n".join(lines) + "\n")
        for name in self.FORMATS:
            with self.subTest(name):
                self.fail_with(1, "convert", big, "-o", self.path(name), "--max-errors", "1")
                self.assert_entries("big.csv")
        self.assertEqual(self.fail_with(1, "convert", big, "--max-errors", "1").out, "")

    def test_lines_about_rows_keep_their_place_among_them(self):
        lines = minutes_text(30_000).splitlines()
        for at in range(500, len(lines), 999):
            lines[at] = lines[at].replace(",", ",x", 2)
        big = self.file("big.csv", "\n".join(lines) + "\n")
        seen = set()
        for _ in range(5):
            done = subprocess.run([*TOOL, "convert", big], stdout=subprocess.PIPE, stderr=subprocess.STDOUT,
                                  env=environment(), timeout=60)
            self.assertEqual(done.returncode, 0)
            seen.add(done.stdout)
        self.assertEqual(len(seen), 1)
        text = seen.pop().decode()
        self.assertLess(text.index("\n1990-01-02,"), text.index("big.csv:16485:"))
        self.assertLess(text.index("big.csv:16485:"), text.index("\n1990-01-20,"))


class Pipes(ToolTest):
    def test_a_reader_that_goes_ends_every_command_quietly(self):
        path = self.file("big.csv", minutes_text(30_000))
        for command in (["convert", "-q", path], ["raw", path],
                        ["preview", "--count", "20000", path]):
            with self.subTest(command[0]):
                tool = subprocess.Popen([*TOOL, *command], stdout=subprocess.PIPE,
                                        stderr=subprocess.PIPE, env=environment())
                tool.stdout.read(10)
                tool.stdout.close()
                err = tool.stderr.read().decode()
                tool.stderr.close()
                self.assertEqual(tool.wait(120), 0, err)
                self.assertEqual(err, "")


if __name__ == "__main__":
    unittest.main()
