"""convert: the rows of every layout, in both formats."""
import json
import os
import pty
import subprocess
import unittest

from tool import (SAMPLES, TOOL, ToolTest, cell_text, encoding_of, environment, expected_rows,
                  minutes_text)


def batches(lines):
    return (lines + 999) // 1000


class EveryLayout(ToolTest):
    def test_gives_the_values_that_the_file_was_made_from(self):
        for sample in SAMPLES.values():
            with self.subTest(sample.name):
                result = self.succeed("convert", sample.write(self.folder), *encoding_of(sample))
                self.assertEqual(result.rows(), expected_rows(sample))
                lines = len(sample.rows) + len(sample.junk)
                self.assertEqual(result.summary(),
                                 f"batches={batches(lines)} delivered={len(sample.rows)} "
                                 f"skipped={len(sample.junk)} result=commit")


class Formats(ToolTest):
    def test_json_lines_hold_an_object_a_row(self):
        sample = SAMPLES["symbols.csv"]
        out = self.succeed("convert", self.sample(sample.name), "--format", "jsonl").out
        objects = [json.loads(line) for line in out.splitlines()]
        self.assertEqual([list(o) for o in objects], [sample.columns] * len(sample.rows))
        for have, row in zip(objects, sample.rows):
            want = {c: v if isinstance(v, (int, float)) else cell_text(v) for c, v in row.items()}
            self.assertEqual(have, {c: want[c] for c in sample.columns})

    def test_text_is_quoted_where_it_needs_it(self):
        out = self.succeed("convert", self.sample("symbols-quoting.csv")).out
        self.assertTrue(out.splitlines()[1].startswith('"A,B",2003-01-13,'), out[:200])

    def test_text_leaves_as_utf8(self):
        path = self.sample("gbk-symbol.csv")
        out = self.succeed("convert", path, "--encoding", "gbk").out
        self.assertTrue(out.splitlines()[1].startswith("股票,2003-01-13"))

    def test_the_ending_of_the_output_decides(self):
        path = self.sample("tick.csv")
        cases = [("a.csv", "Date,"), ("a.txt", "Date,"), ("a.jsonl", '{"Date"'),
                 ("a.NDJSON", '{"Date"')]
        for name, start in cases:
            with self.subTest(name):
                self.succeed("convert", path, "-o", self.path(name))
                self.assertTrue(self.read(name).startswith(start))
        self.succeed("convert", path, "-o", self.path("b.jsonl"), "--format", "csv")
        self.assertTrue(self.read("b.jsonl").startswith("Date,"))

    def test_headers_name_types_with_their_blanks(self):
        header = ("Date,Time,Open,High,Low,Close,Up Volume,Down Volume\n")
        rows = "".join(f"2003/01/13,9:{m},10.5,11.5,9.5,10.25,500000,400000\n"
                       for m in range(30, 50))
        out = self.succeed("convert", self.file("a.csv", header + rows)).out
        self.assertEqual(out.splitlines()[0], header.strip())


class Directions(ToolTest):
    def test_descending_files_come_out_ascending(self):
        sample = SAMPLES["descending.csv"]
        rows = self.succeed("convert", self.sample(sample.name)).rows()
        self.assertEqual([r[0] for r in rows[1:]], [f"{r['Date']:%Y-%m-%d}" for r in sample.rows])


class Batches(ToolTest):
    def test_hold_a_thousand_lines(self):
        for name, count in (("one-thousand.csv", 1), ("long.csv", 3)):
            with self.subTest(name):
                result = self.succeed("convert", self.sample(name))
                self.assertTrue(result.summary().startswith(f"batches={count} "))


class SeveralFiles(ToolTest):
    def test_share_a_header_and_name_the_file_of_each_row(self):
        week, more = self.sample("week.csv"), self.file("b.csv", SAMPLES["week.csv"].content())
        rows = expected_rows(SAMPLES["week.csv"])
        self.assertEqual(self.succeed("convert", week, more).rows(),
                         [["File", *rows[0]]] + [[week, *row] for row in rows[1:]] +
                         [[more, *row] for row in rows[1:]])

    def test_of_other_columns_do_not_fit_under_the_header(self):
        week, tick = self.sample("week.csv"), self.sample("tick.csv")
        for options in ([], ["--dry-run"]):
            with self.subTest(options):
                result = self.fail_with(1, "convert", week, tick, week, *options)
                self.assertIn(f"{tick}: its columns are File, Date, Time, Price", result.err)
                self.assertIn("-o FOLDER/", result.err)
                self.assertEqual(len(result.rows()), 0 if options else 41)

    def test_of_other_columns_are_fine_as_json_lines(self):
        week, tick = self.sample("week.csv"), self.sample("tick.csv")
        out = self.succeed("convert", week, tick, "--format", "jsonl").out
        keys = [list(json.loads(line)) for line in out.splitlines()]
        self.assertEqual(len(keys), 60)
        self.assertEqual((keys[0][:2], keys[-1][:3]), (["File", "Date"], ["File", "Date", "Time"]))

    def test_end_with_the_highest_status(self):
        good = self.sample("tick.csv")
        bad = self.file("bad.txt", "nothing of the kind\n")
        self.fail_with(1, "convert", bad, good)
        self.fail_with(3, "convert", self.path("missing"), bad, good)


class Verbosity(ToolTest):
    def test_quiet_says_nothing_of_a_good_run(self):
        self.assertEqual(self.succeed("convert", "-q", self.sample("tick.csv")).err, "")

    def test_verbose_reports_the_settings_before_the_summary(self):
        err = self.succeed("convert", "-v", self.sample("minute-5.csv")).err.splitlines()
        self.assertIn("resolution Minutes, size 5; columns Date, Time, Open", err[0])
        self.assertTrue(err[-1].startswith("batches=1 "))


class Progress(ToolTest):
    def test_is_drawn_on_request_and_ends_before_the_summary(self):
        result = self.succeed("convert", "--progress", "always", self.sample("long.csv"))
        self.assertTrue(result.summary().startswith("batches=3 "), result.err)

    def test_is_not_drawn_into_a_file(self):
        result = self.succeed("convert", self.sample("long.csv"))
        self.assertEqual(len(result.err.splitlines()), 2)


class ProgressOnATerminal(ToolTest):
    def test_is_wiped(self):
        main, terminal = pty.openpty()
        tool = subprocess.Popen([*TOOL, "convert", "--progress=always", "--on-error=skip", "-n",
                                 self.file("big.csv", minutes_text(20_000))],
                                stderr=terminal, env=environment())
        os.close(terminal)
        said = b""
        try:
            while piece := os.read(main, 4096):
                said += piece
        except OSError:  # the other end is closed
            pass
        os.close(main)
        self.assertEqual(tool.wait(60), 0)
        self.assertRegex(said, rb"\[#*\.*\] +\d+%  [\d,]+ records  [\d,]+/s  0 min \d+ sec")
        self.assertIn(b"\r\x1b[Klines=", said)
        self.assertIn(b"batches=20 delivered=20000 skipped=0 result=commit", said)


class Languages(ToolTest):
    def test_the_components_texts_follow_the_option(self):
        path = self.file("a.txt", "nothing of the kind\n")
        for option, text in (("en", "The date range of the data is invalid."),
                             ("zh", "数据周期无效。")):
            with self.subTest(option):
                self.assertIn(text, self.fail_with(1, "convert", path, "--lang", option).err)

    def test_the_components_texts_follow_the_locale(self):
        path = self.file("a.txt", "nothing of the kind\n")
        cases = [({"LC_ALL": "zh_CN.UTF-8"}, True), ({"LC_ALL": "", "LANG": "zh_TW"}, True),
                 ({"LC_ALL": "en_US.UTF-8", "LANG": "zh_CN"}, False),
                 ({"LC_ALL": "", "LC_MESSAGES": "zh_CN", "LANG": "en_US"}, True)]
        for variables, chinese in cases:
            with self.subTest(variables):
                env = {k: v for k, v in os.environ.items() if not k.startswith(("LC_", "LANG"))}
                err = self.fail_with(1, "convert", path, env={**env, **variables}).err
                self.assertEqual("数据周期无效。" in err, chinese)


if __name__ == "__main__":
    unittest.main()
