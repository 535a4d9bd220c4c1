"""convert of several files in one call: outputs, summaries, statuses, rejects."""
import csv
import json
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
        """Results of the files; that of the whole call must follow from them."""
        lines = [line for line in result.err.splitlines() if "batches=" in line]
        results = [line.split("result=")[1] for line in lines]
        if len(lines) == 1:
            return results
        self.assertTrue(lines[-1].startswith("batches="), lines[-1])
        for line in lines[:-1]:
            self.assertRegex(line, r"^\S.*: batches=")
        worst = ["commit", "rollback", "refused"]
        self.assertEqual(results[-1], max(results[:-1], key=worst.index))
        for name in ("batches", "delivered", "skipped"):
            numbers = [int(line.split(name + "=")[1].split()[0]) for line in lines]
            self.assertEqual(numbers[-1], sum(numbers[:-1]))
        return results[:-1]

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

    def query(self, sql):
        connection = sqlite3.connect(self.path("out.db"))
        try:
            return connection.execute(sql).fetchall()
        finally:
            connection.close()

    def test_name_the_file_of_each_row(self):
        week, more = self.sample("week.csv"), self.file("b.csv", SAMPLES["week.csv"].content())
        self.succeed("convert", week, more, "-o", self.path("out.db"))
        self.assertEqual(self.query("SELECT File, count(*), min(Open) > 0 FROM quotes GROUP BY 1 "
                                    "ORDER BY rowid"), [(week, 20, 1), (more, 20, 1)])

    def test_have_no_such_column_for_one_file_alone(self):
        week = self.sample("week.csv")
        self.succeed("convert", week, "-o", self.path("out.db"))
        self.assertEqual(self.query("SELECT count(*) FROM pragma_table_info('quotes')"), [(6,)])
        self.succeed("convert", week, "-o", self.path("out.db"), "--append")
        self.assertEqual(self.query("SELECT count(*) FROM pragma_table_info('quotes')"), [(6,)])

    def test_go_on_naming_the_file_once_they_do(self):
        week, more = self.sample("week.csv"), self.file("b.csv", SAMPLES["week.csv"].content())
        self.succeed("convert", week, week, "-o", self.path("out.db"))
        self.succeed("convert", more, "-o", self.path("out.db"), "--append")
        self.assertEqual(self.query("SELECT File, count(*) FROM quotes GROUP BY 1 ORDER BY rowid"),
                         [(week, 40), (more, 20)])

    def test_from_before_get_the_column_for_several_files(self):
        week, more = self.sample("week.csv"), self.file("b.csv", SAMPLES["week.csv"].content())
        self.succeed("convert", week, "-o", self.path("out.db"))
        result = self.succeed("convert", week, more, "-o", self.path("out.db"), "--append")
        self.assertIn("the table 'quotes' had no File, which is added", result.err)
        self.assertEqual(self.query("SELECT File, count(*) FROM quotes GROUP BY 1 ORDER BY rowid"),
                         [(None, 20), (week, 20), (more, 20)])

    def test_unite_the_columns_of_all_files(self):
        week, tick = self.sample("week.csv"), self.sample("tick.csv")
        result = self.succeed("convert", week, tick, week, "-o", self.path("out.db"))
        self.assertIn(f"warning: {tick}: the table 'quotes' had no Time, Price", result.err)
        self.assertEqual(self.query("SELECT count(*), count(Open), count(Price), count(File) FROM "
                                    "quotes"), [(80, 40, 40, 80)])

    def test_stay_as_they_are_where_nothing_is_new(self):
        week = self.sample("week.csv")
        late = SAMPLES["week.csv"].content().replace(b"2003", b"2023")
        path = self.file("late.csv", late)
        self.succeed("convert", week, "-o", self.path("out.db"))
        before = open(self.path("out.db"), "rb").read()
        result = self.succeed("convert", week, "-o", self.path("out.db"), "--append", "--from",
                              "2003-05-27")
        self.assertIn("nothing new", result.err)
        self.assertEqual(self.count(), 20)
        self.assertEqual(open(self.path("out.db"), "rb").read(), before)
        result = self.succeed("convert", week, path, "-o", self.path("out.db"), "--append",
                              "--from", "2003-05-27")
        self.assertEqual(self.summaries(result), ["commit", "commit"])
        self.assertEqual(self.query("SELECT count(*), count(File) FROM quotes"), [(40, 20)])

    def test_refuse_all_where_one_is_there(self):
        paths = self.sample("week.csv"), self.sample("descending.csv")
        self.succeed("convert", paths[0], "-o", self.path("out.db"))
        result = self.fail_with(1, "convert", *paths, "-o", self.path("out.db"))
        self.assertEqual(self.summaries(result), ["refused", "refused"])
        self.assertEqual(self.count(), 20)

    def test_go_on_after_a_file_that_fails(self):
        week, junk = self.sample("week.csv"), self.sample("junk.csv")
        cases = [([self.bad(), week, week], ["refused", "commit", "commit"], 1, 40),
                 ([week, self.bad(), week], ["commit", "refused", "commit"], 1, 40),
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


class Names(SeveralTest):
    def convert(self, name, pattern, *options):
        path = self.file(name, SAMPLES["week.csv"].content())
        return self.run_tool("convert", path, "--symbol-from-name", pattern, *options)

    def test_give_the_symbol(self):
        rows = expected_rows(SAMPLES["week.csv"])
        cases = [("ABC.csv", "{}.csv", "ABC"), ("ABC_daily.csv", "{}_daily.csv", "ABC"),
                 ("x_y_ABC.csv", "*_{}.csv", "ABC"), ("A_B_2020.csv", "{}_*.csv", "A"),
                 ("q1ABC.txt", "q?{}.*", "ABC"), ("ABC", "{}", "ABC"), ("\u4e2d.csv", "{}.csv",
                                                                      "\u4e2d")]
        for name, pattern, symbol in cases:
            with self.subTest((name, pattern)):
                result = self.convert(name, pattern)
                self.assertEqual(result.status, 0, result.err)
                self.assertEqual(result.rows(), [["Symbol", *rows[0]]] +
                                 [[symbol, *row] for row in rows[1:]])
        out = self.convert("ABC.csv", "{}.csv", "--format", "jsonl").out
        self.assertTrue(out.startswith('{"Symbol":"ABC","Date":'), out[:40])

    def test_tell_the_rows_of_a_table_apart(self):
        paths = [self.file(f"{name}.csv", SAMPLES["week.csv"].content()) for name in ("AB", "CD")]
        self.succeed("convert", *paths, "-o", self.path("out.db"), "--symbol-from-name", "{}.csv")
        connection = sqlite3.connect(self.path("out.db"))
        self.assertEqual(connection.execute("SELECT Symbol, count(*) FROM quotes GROUP BY 1")
                         .fetchall(), [("AB", 20), ("CD", 20)])
        connection.close()

    def test_that_do_not_match_are_refused(self):
        result = self.convert("ABC.txt", "{}.csv")
        self.assertEqual((result.status, result.out), (1, ""))
        self.assertIn("the name of the file doesn't match the pattern", result.err)

    def test_take_no_place_of_a_symbol_column(self):
        path = self.sample("symbols.csv")
        err = self.fail_with(1, "convert", path, "--symbol-from-name", "{}.csv").err
        self.assertIn("the file has a Symbol column of its own", err)


class Inspected(SeveralTest):
    def test_name_their_file_in_each_object(self):
        week, tick = self.sample("week.csv"), self.sample("tick.csv")
        out = self.succeed("inspect", "--json", week, tick).out
        decoder, objects = json.JSONDecoder(), []
        while out.strip():
            one, end = decoder.raw_decode(out)
            objects.append(one)
            out = out[end:].lstrip()
        self.assertEqual([one["file"] for one in objects], [week, tick])
        self.assertNotIn("file", self.succeed("inspect", "--json", week).json())


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

    def test_have_no_file_where_no_run_began(self):
        self.fail_with(1, "convert", self.bad(), self.bad("b.txt"), "--rejects", self.path("r.csv"))
        self.assert_entries("bad.txt", "b.txt")

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
        self.assertEqual([line.split("result=")[1] for line in err.splitlines()
                          if "result=" in line], ["rollback", "rollback"])

    def test_end_the_whole_call_and_leave_nothing(self):
        self.interrupt_first("-o", self.path("new/"), "--rejects", self.path("r.csv"))
        self.assert_entries("a.csv", "b.csv")
        self.interrupt_first("-o", self.path("out.db"))
        self.assert_entries("a.csv", "b.csv")


if __name__ == "__main__":
    unittest.main()
