"""convert of several files in one call: outputs, summaries, statuses, rejects."""
import csv
import os
import signal
import sqlite3
import subprocess
import unittest

from interrupt_test import wait_until
from tool import SAMPLES, TOOL, ToolTest, environment, expected_rows, minutes_text


def csv_text(name):
    return [",".join(row) for row in expected_rows(SAMPLES[name])]


class SeveralTest(ToolTest):
    def summaries(self, result):
        return [line.split("result=")[1] for line in result.err.splitlines()
                if line.startswith("batches=")]

    def bad(self, name="bad.txt"):
        return self.file(name, "nothing of the kind\n")

    def count(self, name="out.db"):
        connection = sqlite3.connect(self.path(name))
        try:
            return connection.execute("SELECT count(*) FROM quotes").fetchone()[0]
        finally:
            connection.close()


class Folders(SeveralTest):
    def test_get_a_file_for_each(self):
        paths = self.sample("tick.csv"), self.sample("week.csv")
        os.mkdir(self.path("old"))
        for folder in ("old", "old/", "new/"):
            for options, ending in (([], ".csv"), (["--format", "jsonl"], ".jsonl")):
                with self.subTest((folder, ending)):
                    result = self.succeed("convert", *paths, "-o", self.path(folder), *options)
                    self.assertEqual(self.summaries(result), ["commit", "commit"])
                    for name in ("tick", "week"):
                        self.assertTrue(os.path.exists(self.path(f"{folder}/{name}{ending}")))
        self.assertEqual(self.read("new/tick.csv").splitlines(), csv_text("tick.csv"))
        self.assertEqual(self.read("new/week.csv").splitlines(), csv_text("week.csv"))

    def test_serve_a_single_file_too(self):
        self.succeed("convert", self.sample("week.csv"), "-o", self.path("new/"))
        self.assertEqual(os.listdir(self.path("new")), ["week.csv"])

    def test_keep_what_stands_in_a_name_but_its_ending(self):
        self.file("a.b.txt", SAMPLES["week.csv"].content())
        self.file("plain", SAMPLES["week.csv"].content())
        self.succeed("convert", self.path("a.b.txt"), self.path("plain"), "-o", self.path("new/"))
        self.assertEqual(sorted(os.listdir(self.path("new"))), ["a.b.csv", "plain.csv"])

    def test_hold_the_good_files_only(self):
        result = self.fail_with(1, "convert", self.bad(), self.sample("week.csv"), "-o",
                                self.path("new/"))
        self.assertEqual(self.summaries(result), ["refused", "commit"])
        self.assertEqual(os.listdir(self.path("new")), ["week.csv"])

    def test_are_not_made_for_nothing(self):
        self.fail_with(1, "convert", self.bad(), "-o", self.path("new/"))
        self.succeed("convert", "-n", self.sample("week.csv"), "-o", self.path("new/"))
        self.assert_entries("bad.txt", "week.csv")

    def test_take_no_two_files_of_one_name(self):
        os.mkdir(self.path("a"))
        one, two = self.sample("week.csv"), self.file("a/week.txt", SAMPLES["week.csv"].content())
        result = self.fail_with(2, "convert", one, two, "-o", self.path("new/"))
        self.assertIn(f"the rows of '{one}' and '{two}' would both go to", result.err)
        self.assert_entries("a", "week.csv")


class OneOutput(SeveralTest):
    def test_takes_the_text_of_one_file_only(self):
        err = self.fail_with(2, "convert", "a", "b", "-o", "out.csv").err
        self.assertIn("several are given; name a folder, as out.csv/", err)


class Tables(SeveralTest):
    def test_get_a_database_for_each_in_a_folder(self):
        paths = self.sample("tick.csv"), self.sample("week.csv")
        for _ in range(2):
            result = self.succeed("convert", *paths, "-o", self.path("new/"), "--format", "sqlite",
                                  "--replace")
            self.assertEqual(self.summaries(result), ["commit", "commit"])
            self.assertEqual((self.count("new/tick.db"), self.count("new/week.db")), (40, 20))

    def test_take_all_rows(self):
        names = "week.csv", "descending.csv"
        paths = [self.sample(name) for name in names]
        rows = sum(len(SAMPLES[name].rows) for name in names)
        for options, want in (([], rows), (["--append"], 2 * rows), (["--replace"], rows),
                              (["--replace", "-n"], rows)):
            with self.subTest(options):
                result = self.succeed("convert", *paths, "-o", self.path("out.db"), *options)
                self.assertEqual(self.summaries(result), ["commit", "commit"])
                self.assertEqual(self.count(), want)

    def test_of_other_columns_may_be_replaced_by_all(self):
        self.succeed("convert", self.sample("tick.csv"), "-o", self.path("out.db"))
        paths = self.sample("week.csv"), self.sample("descending.csv")
        for option in ("--dry-run", "--quiet"):
            self.succeed("convert", *paths, "-o", self.path("out.db"), "--replace", option)
        self.assertEqual(self.count(), sum(len(SAMPLES[name].rows)
                                           for name in ("week.csv", "descending.csv")))

    def test_refuse_all_where_one_is_there(self):
        paths = self.sample("week.csv"), self.sample("descending.csv")
        self.succeed("convert", paths[0], "-o", self.path("out.db"))
        result = self.fail_with(1, "convert", *paths, "-o", self.path("out.db"))
        self.assertEqual(self.summaries(result), ["refused", "refused"])
        self.assertEqual(self.count(), 20)

    def test_go_on_after_a_file_that_fails(self):
        week, tick, junk = (self.sample(n) for n in ("week.csv", "tick.csv", "junk.csv"))
        cases = [([self.bad(), week, week], ["refused", "commit", "commit"], 1, 40),
                 ([week, tick, week], ["commit", "refused", "commit"], 1, 40),
                 ([junk, week], ["rollback", "commit"], 1, 20),
                 ([week, junk], ["commit", "rollback"], 1, 20),
                 ([week, self.path("missing")], ["commit", "refused"], 3, 20)]
        for paths, endings, status, rows in cases:
            with self.subTest(endings):
                result = self.fail_with(status, "convert", *paths, "-o", self.path("out.db"),
                                        "--on-error", "stop")
                self.assertEqual(self.summaries(result), endings)
                self.assertEqual(self.count(), rows)
                os.unlink(self.path("out.db"))

    def test_replace_an_old_one_with_the_first_good_file(self):
        week, junk = self.sample("week.csv"), self.sample("junk.csv")
        self.succeed("convert", week, week, "-o", self.path("out.db"))
        self.fail_with(1, "convert", junk, "-o", self.path("out.db"), "--replace", "--on-error",
                       "stop")
        self.assertEqual(self.count(), 40)
        self.fail_with(1, "convert", junk, week, "-o", self.path("out.db"), "--replace",
                       "--on-error", "stop")
        self.assertEqual(self.count(), 20)


class BadLines(SeveralTest):
    def rejects(self):
        with open(self.path("r.csv"), encoding="utf-8", newline="") as f:
            return list(csv.reader(f))

    def test_of_all_files_go_to_one_file(self):
        junk, week, more = (self.sample(n) for n in ("junk.csv", "week.csv", "junk-descending.csv"))
        self.succeed("convert", junk, week, more, "-o", self.path("new/"), "--rejects",
                     self.path("r.csv"))
        rows = self.rejects()
        self.assertEqual(rows[0][0], "file")
        self.assertEqual([row[0] for row in rows[1:]], [junk] * 3 + [more] * 2)

    def test_are_counted_for_each_file(self):
        junk, more = self.sample("junk.csv"), self.sample("junk-descending.csv")
        result = self.fail_with(1, "convert", junk, more, "--max-errors", "2", "--rejects",
                                self.path("r.csv"))
        self.assertEqual(self.summaries(result), ["rollback", "commit"])
        self.assertEqual([row[0] for row in self.rejects()[1:]], [junk] * 3 + [more] * 2)

    def test_have_no_file_where_no_run_began_or_nothing_is_written(self):
        self.fail_with(1, "convert", self.bad(), self.bad("b.txt"), "--rejects", self.path("r.csv"))
        self.succeed("convert", self.sample("junk.csv"), self.sample("week.csv"), "-n", "--rejects",
                     self.path("r.csv"))
        self.assert_entries("bad.txt", "b.txt", "junk.csv", "week.csv")

    def test_need_a_file_of_their_own(self):
        for rejects in ("new/week.csv", "./new/../new/week.csv"):
            err = self.fail_with(2, "convert", self.sample("week.csv"), "-o", "new/", "--rejects",
                                 rejects, cwd=self.folder).err
            self.assertIn("--rejects needs a file of its own", err)
        self.assert_entries("week.csv")


class Interrupts(SeveralTest):
    def interrupt_first(self, *options):
        self.file("a.csv", minutes_text(400_000))
        self.file("b.csv", minutes_text(1000))
        tool = subprocess.Popen([*TOOL, "convert", self.path("a.csv"), self.path("b.csv"), *options],
                                stderr=subprocess.PIPE, env=environment())
        wait_until(lambda: any(name.endswith(".part") for _, _, names in os.walk(self.folder)
                               for name in names))
        tool.send_signal(signal.SIGINT)
        err = tool.communicate(timeout=60)[1].decode()
        self.assertEqual(tool.returncode, 130, err)
        self.assertEqual([line.split("result=")[1] for line in err.splitlines()], ["rollback"])

    def test_end_the_whole_call_and_leave_nothing(self):
        self.interrupt_first("-o", self.path("new/"), "--rejects", self.path("r.csv"))
        self.assert_entries("a.csv", "b.csv")
        self.interrupt_first("-o", self.path("out.db"))
        self.assert_entries("a.csv", "b.csv")


if __name__ == "__main__":
    unittest.main()
