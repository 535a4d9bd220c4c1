"""convert into SQLite: what the table holds, and what is left after a failure."""
import datetime as dt
import os
import signal
import sqlite3
import subprocess
import unittest

from interrupt_test import wait_until
from tool import SAMPLES, TOOL, ToolTest, encoding_of, environment, minutes_text

NOTES = "CREATE TABLE notes (text); INSERT INTO notes VALUES ('kept')"


def stored(value):
    """A value in the form that the table must hold."""
    if isinstance(value, dt.time):
        return value.isoformat("milliseconds" if value.microsecond else "seconds")
    return value if isinstance(value, (int, float)) else str(value)


class SqliteTest(ToolTest):
    def query(self, sql, name="out.db"):
        connection = sqlite3.connect(f"file:{self.path(name)}?mode=ro", uri=True)
        try:
            return connection.execute(sql).fetchall()
        finally:
            connection.close()

    def execute(self, sql, name="out.db"):
        connection = sqlite3.connect(self.path(name))
        connection.executescript(sql)
        connection.close()

    def content(self, name="out.db"):
        with open(self.path(name), "rb") as f:
            return f.read()

    def load(self, name, *options):
        return self.succeed("convert", self.sample(name), "-o", self.path("out.db"), *options)


class Tables(SqliteTest):
    def test_hold_the_values_that_the_file_was_made_from(self):
        for sample in SAMPLES.values():
            with self.subTest(sample.name):
                out = self.path(sample.name + ".db")
                self.succeed("convert", sample.write(self.folder), "-o", out,
                             *encoding_of(sample))
                columns = [c for c in sample.columns if c]
                self.assertEqual([r[0] for r in self.query(
                    "SELECT name FROM pragma_table_info('quotes')", out)], columns)
                have = self.query("SELECT * FROM quotes ORDER BY rowid", out)
                want = [tuple(stored(row[c]) for c in columns) for row in sample.rows]
                self.assertEqual(have, want)
                self.assertEqual([[type(v) for v in row] for row in have],
                                 [[type(v) for v in row] for row in want])

    def test_are_made_by_the_ending_of_the_output_or_by_the_format(self):
        path = self.sample("tick.csv")
        for name, options in (("a.db", []), ("a.SQLITE", []), ("a.sqlite3", []),
                              ("a.dat", ["--format", "sqlite"])):
            with self.subTest(name):
                self.succeed("convert", path, "-o", self.path(name), *options)
                self.assertEqual(self.query("SELECT count(*) FROM quotes", name),
                                 [(len(SAMPLES["tick.csv"].rows),)])

    def test_have_the_name_that_is_asked_for(self):
        self.load("tick.csv", "--table", "My \"Quotes\"")
        self.assertEqual(self.query("SELECT name FROM sqlite_master"), [('My "Quotes"',)])

    def test_give_columns_of_one_name_two_names(self):
        self.load("week.csv", "--column", "3=Open", "--no-check")
        self.assertEqual([r[0] for r in self.query("SELECT name FROM pragma_table_info('quotes')")],
                         ["Date", "Open", "Open 2", "Low", "Close", "Volume"])

    def test_are_added_to_a_database(self):
        self.execute(NOTES)
        self.load("week.csv")
        self.assertEqual(self.query("SELECT text FROM notes"), [("kept",)])
        self.assertEqual(self.query("SELECT count(*) FROM quotes"), [(20,)])


class OldTables(SqliteTest):
    def refuse(self, status, text, *options, name="week.csv"):
        before = self.content()
        for dry in ([], ["--dry-run"]):
            result = self.fail_with(status, "convert", self.sample(name), "-o",
                                    self.path("out.db"), *options, *dry)
            self.assertIn(text, result.err)
            self.assertEqual(result.summary(), "batches=0 delivered=0 skipped=0 result=refused")
            self.assertEqual(self.content(), before)
        self.assert_entries(name, "out.db")

    def test_are_not_touched_unasked(self):
        self.load("week.csv")
        self.refuse(1, "has a table 'quotes' already; give --append or --replace")

    def test_are_appended_to_or_replaced_on_request(self):
        self.load("week.csv", "--append")
        self.load("week.csv", "--append")
        self.assertEqual(self.query("SELECT count(*) FROM quotes"), [(40,)])
        self.load("tick.csv", "--replace")
        self.assertEqual(self.query("SELECT count(*) FROM quotes"),
                         [(len(SAMPLES["tick.csv"].rows),)])

    def test_of_other_columns_get_those_of_the_rows(self):
        self.load("week.csv")
        result = self.load("tick.csv", "--append")
        self.assertIn("the table 'quotes' had no Time, Price, which is added", result.err)
        self.assertIn("has Open, High, Low, Close, which the rows lack", result.err)
        self.assertEqual(self.query("SELECT count(*) FROM quotes WHERE Price IS NULL AND Open > 0"),
                         [(20,)])
        self.assertEqual(self.query("SELECT count(*) FROM quotes WHERE Open IS NULL AND Price > 0"),
                         [(40,)])

    def test_keep_their_columns_when_nothing_is_committed(self):
        self.load("week.csv")
        self.fail_with(1, "convert", self.sample("tick.csv"), "-o", self.path("out.db"), "--append",
                       "--strict")
        self.assertEqual(self.query("SELECT count(*) FROM pragma_table_info('quotes')"), [(6,)])

    def test_take_no_values_of_another_kind(self):
        for declared in ("Open TEXT", "Volume REAL", "Date INTEGER"):
            with self.subTest(declared):
                self.execute(f"CREATE TABLE quotes ({declared})")
                name, kind = declared.split()
                self.refuse(1, f"the column '{name}' of the table 'quotes' of "
                            f"'{self.path('out.db')}' is {kind}", "--append")
                self.execute("DROP TABLE quotes")

    def test_may_refuse_rows(self):
        self.execute("CREATE TABLE quotes (Date UNIQUE, Open, High, Low, Close, Volume)")
        self.load("week.csv", "--append")
        result = self.fail_with(1, "convert", self.path("week.csv"), "-o", self.path("out.db"),
                                "--append")
        self.assertIn("UNIQUE constraint failed: quotes.Date", result.err)
        self.assertTrue(result.summary().endswith("result=rollback"))
        self.assertEqual(self.query("SELECT count(*) FROM quotes"), [(20,)])

    def test_are_none_in_a_file_that_is_no_database(self):
        self.file("out.db", "something of the user's\n" * 100)
        for options in ([], ["--append"], ["--replace"]):
            self.refuse(3, "out.db' can't be written: file is not a database", *options)

    def test_are_not_written_where_that_is_not_allowed(self):
        if os.geteuid() == 0:
            self.skipTest("root may write everything")
        self.load("week.csv")
        os.chmod(self.path("out.db"), 0o400)
        self.refuse(3, "attempt to write a readonly database", "--append")


class Rollbacks(SqliteTest):
    def roll_back(self, *options, status=1):
        result = self.fail_with(status, "convert", self.sample("junk.csv"), "-o",
                                self.path("out.db"), *options)
        self.assertTrue(result.summary().endswith("result=rollback"), result.err)
        return result

    def test_leave_no_new_database(self):
        self.roll_back("--on-error", "stop")
        self.roll_back("--max-errors", "1")
        self.assert_entries("junk.csv")

    def test_leave_an_old_one_as_it_was(self):
        self.load("week.csv")
        os.unlink(self.path("week.csv"))
        before = self.content()
        for option in ("--append", "--replace"):
            with self.subTest(option):
                self.roll_back(option, "--max-errors", "1")
                self.assertEqual(self.content(), before)
                self.assert_entries("junk.csv", "out.db")

    def test_keep_the_rejects(self):
        self.roll_back("--max-errors", "1", "--rejects", self.path("bad.csv"))
        self.assertEqual(len(self.read("bad.csv").splitlines()), 3)

    def test_dry_runs_write_nothing(self):
        result = self.load("week.csv", "--dry-run")
        self.assertEqual(result.summary(), "batches=1 delivered=20 skipped=0 result=commit")
        self.assert_entries("week.csv")


class FullDisks(SqliteTest):
    def test_leave_no_new_database(self):
        path = self.file("big.csv", minutes_text(20_000))
        result = self.fail_with(3, "convert", path, "-o", self.path("out.db"), most_bytes=100_000)
        self.assertIn("out.db' can't be written: disk I/O error", result.err)
        self.assertTrue(result.summary().endswith("result=rollback"), result.err)
        self.assert_entries("big.csv")

    def test_leave_an_old_one_as_it_was(self):
        path = self.file("big.csv", minutes_text(200_000))
        self.succeed("convert", path, "-o", self.path("out.db"), "--portion", "0:5000")
        before = self.content()
        for option in ("--append", "--replace"):
            with self.subTest(option):
                result = self.fail_with(3, "convert", path, "-o", self.path("out.db"), option,
                                        most_bytes=1_000_000)
                self.assertIn("out.db' can't be written: ", result.err)
                self.assertEqual(self.content(), before)
                self.assert_entries("big.csv", "out.db")

    def test_of_a_small_file_system(self):
        path = self.file("big.csv", minutes_text(100_000))
        self.execute(NOTES)
        for name in ("new.csv", "new.db", "out.db"):
            with self.subTest(name):
                status, out, err = self.run_on_small_disk("out.db", "convert", path, "-o", name)
                self.assertEqual(status, 3, err)
                self.assertRegex(err, "No space left on device|database or disk is full")
                self.assertTrue(err.rstrip().endswith("result=rollback"), err)
                self.assertEqual(out.split(), ["out.db", "unchanged"])


class Interrupts(SqliteTest):
    def test_leave_an_old_database_as_it_was(self):
        path = self.file("big.csv", minutes_text(400_000))
        self.succeed("convert", path, "-o", self.path("out.db"), "--portion", "0:1000")
        before = self.content()
        tool = subprocess.Popen([*TOOL, "convert", path, "-q", "-o", self.path("out.db"), "--append"],
                                stderr=subprocess.DEVNULL, env=environment())
        wait_until(lambda: os.path.exists(self.path("out.db-journal")))
        tool.send_signal(signal.SIGINT)
        self.assertEqual(tool.wait(60), 130)
        self.assertEqual(self.content(), before)
        self.assert_entries("big.csv", "out.db")


class WrongUsage(SqliteTest):
    def test_is_reported(self):
        cases = [(["--format", "sqlite"], "--format sqlite can't be printed"),
                 (["--format", "sqlite", "-n"], "--format sqlite can't be printed"),
                 (["--append", "--replace", "-o", "x.db"], "exclude each other"),
                 (["--append", "-o", "x.csv"], "--append is for tables"),
                 (["--replace"], "--replace is for tables"),
                 (["--table", "t", "-o", "x.db", "--format", "csv"], "--table is for tables"),
                 (["--table", "", "-o", "x.db"], "--table: '' is not a name")]
        for options, message in cases:
            with self.subTest(options):
                self.assertIn(message, self.fail_with(2, "convert", "x.csv", *options).err)


if __name__ == "__main__":
    unittest.main()
