"""The fate of every line of a file, and what is warned of."""
import csv
import datetime as dt
import json
import os
import random
import re
import subprocess
import threading
import time
import unittest

from tool import TOOL, ToolTest, environment, minutes_text

HEAD = "Date,Time,Open,High,Low,Close,Volume"
TUESDAY = dt.datetime(2020, 1, 7, 9, 30)


def bars(count, start=dt.datetime(2020, 1, 6, 9, 30), step=1, front=""):
    """Lines of minute bars that nothing is wrong with."""
    for i in range(count):
        at = start + dt.timedelta(minutes=i * step)
        price = 100 + i % 17
        yield (f"{front}{at:%Y/%m/%d,%H:%M:%S},{price}.25,{price + 1}.5,{price - 1}.75,"
               f"{price}.5,{1000 + i * 37 % 991}")


class AccountTest(ToolTest):
    def lines_file(self, lines, name="a.csv", end="\n"):
        return self.file(name, end.join(lines) + end)

    def account(self, result):
        line = next(x for x in result.err.splitlines() if x.startswith("lines="))
        return {k: int(v) for k, v in (part.split("=") for part in line.split())}

    def warnings(self, result):
        return [x for x in result.err.splitlines() if x.startswith("warning: ")]

    def assert_balanced(self, account):
        fates = sum(v for k, v in account.items() if k != "lines")
        self.assertEqual(account["lines"], fates, account)

    def convert(self, status, path, *options):
        result = self.fail_with(status, "convert", path, *options)
        self.assert_balanced(self.account(result))
        return result


class Fates(AccountTest):
    def test_only_what_is_there_is_told(self):
        path = self.lines_file([HEAD, *bars(30)])
        err = self.convert(0, path).err
        self.assertEqual(err.splitlines()[0], "lines=31 header=1 delivered=30")
        err = self.convert(0, path, "-v").err
        self.assertIn("\nlines=31 blank=0 header=1 skipped=0 delivered=30 bad=0 outside=0 "
                      "other-symbol=0 unread=0\n", err)
        self.assertNotIn("lines=", self.succeed("convert", "-q", path).err)

    def test_blank_skipped_and_bad_lines(self):
        lines = ["made by hand", "", HEAD, "", *bars(150), " \t", "junk line", *bars(9, TUESDAY), ""]
        result = self.convert(0, self.lines_file(lines), "--lines-to-skip", "1")
        self.assertEqual(self.account(result), {"lines": 166, "blank": 4, "header": 1, "skipped": 1,
                                                "delivered": 159, "bad": 1})

    # Spreadsheets write such lines. Behind the last row of a long file the component takes them for
    # a row more, of which nobody is told.
    def test_lines_of_dividers_behind_the_rows_are_blank(self):
        for rows in (30, 1100, 2000, 2047):
            for tail in ([",,,,,,"], [",,,,,,", " , ,;", ",,,,,,"]):
                result = self.convert(0, self.lines_file([HEAD, *bars(rows), *tail]))
                self.assertEqual(self.account(result), {"lines": rows + 1 + len(tail), "header": 1,
                                                        "blank": len(tail), "delivered": rows})
                self.assertNotIn("parsed", result.err)

    def test_rows_behind_the_range_are_named(self):
        blocks = [HEAD + ",Symbol"]
        for symbol, days in (("AAA", 2), ("BBB", 3), ("CCC", 1)):
            for day in range(days):
                start = dt.datetime(2020, 1, 6 + day, 9, 30)
                blocks += [f"{x},{symbol}" for x in bars(20, start)]
        path = self.lines_file(blocks)
        options = ["--column", "8=Symbol"]
        result = self.convert(1, path, *options)
        account = self.account(result)
        self.assertEqual(account["delivered"], 20)
        self.assertEqual(account["unread"], 100)
        self.assertIn("100 rows from line 22 on not read", self.warnings(result)[0])
        self.assertIn("--whole-file", self.warnings(result)[0])
        self.assertIn("result=commit", result.summary())
        result = self.convert(0, path, *options, "--whole-file")
        self.assertEqual(self.account(result), {"lines": 121, "header": 1, "delivered": 120})
        self.assertEqual(self.warnings(result), [])
        self.assertEqual(len(result.rows()), 121)

    def test_rows_ahead_of_the_range_are_told(self):
        lines = [HEAD + ",Symbol", *(f"{x},AAA" for x in bars(20, dt.datetime(2020, 1, 7, 9))),
                 *(f"{x},BBB" for x in bars(30, dt.datetime(2020, 1, 6, 9))),
                 *(f"{x},CCC" for x in bars(20, dt.datetime(2020, 1, 8, 9)))]
        result = self.convert(1, self.lines_file(lines), "--column", "8=Symbol")
        self.assertEqual(self.account(result)["unread"], 30)
        self.assertIn("30 rows left out: earlier than 2020-01-07 09:00:00", self.warnings(result)[0])

    def test_rows_of_a_range_that_was_asked_for(self):
        path = self.lines_file([HEAD, *bars(2500)])
        result = self.convert(0, path, "--from", "2020-01-06T10:00", "--to", "2020-01-06T10:59")
        self.assertEqual(self.account(result), {"lines": 2501, "header": 1, "delivered": 60,
                                                "outside": 2440})
        result = self.convert(0, path, "--portion", "100:50")
        self.assertEqual(self.account(result)["outside"], 2450)

    def blocks(self):
        start = dt.datetime(2020, 1, 6, 9, 30)
        return self.lines_file(["Symbol," + HEAD, *(line for symbol in ("AA", "BB", "CC")
                                                    for line in bars(500, start, front=symbol + ","))])

    def test_rows_of_a_range_in_blocks_are_missed_and_told(self):
        path, asked = self.blocks(), ["--from", "2020-01-06T10:00", "--to", "2020-01-06T10:09"]
        result = self.convert(1, path, *asked)
        self.assertEqual(self.account(result), {"lines": 1501, "header": 1, "delivered": 10,
                                                "outside": 1470, "unread": 20})
        self.assertIn("20 rows of the range that was asked for not read, the first in line 532: the "
                      "run ended at line 42", self.warnings(result)[0])
        result = self.convert(0, path, *asked, "--whole-file")
        self.assertEqual(self.account(result), {"lines": 1501, "header": 1, "delivered": 30,
                                                "outside": 1470})
        self.assertEqual([row[0] for row in result.rows()[1::10]], ["AA", "BB", "CC"])
        result = self.convert(0, path, *asked, "--symbol", "AA")
        self.assertEqual(self.account(result)["delivered"], 10)

    def test_a_range_behind_the_last_block_is_no_reason_to_say_that_nothing_is_new(self):
        lines = ["Symbol," + HEAD, *bars(50, dt.datetime(2020, 1, 8, 9), front="AA,"),
                 *bars(50, dt.datetime(2020, 1, 7, 9), front="BB,")]
        path = self.lines_file(lines)
        result = self.convert(0, path, "--from", "2020-01-08", "--whole-file")
        self.assertEqual(len(result.rows()), 51)
        self.assertIn("not read", self.convert(1, path, "--from", "2020-01-08").err)

    def test_rows_of_other_symbols(self):
        lines = [HEAD + ",Symbol"]
        for i, line in enumerate(bars(600)):
            lines += [f"{line},AAA", f"{line},BBB"] if i % 3 else [f"{line},AAA"]
        path = self.lines_file(lines)
        result = self.convert(0, path, "--column", "8=Symbol", "--symbol", "BBB")
        self.assertEqual(self.account(result), {"lines": 1001, "header": 1, "delivered": 400,
                                                "other-symbol": 600})

    def test_bad_lines_of_a_portion_are_counted(self):
        lines = list(bars(100))
        lines[50] = "no date at all"
        result = self.convert(0, self.lines_file([HEAD, *lines]), "--portion", "40:20")
        self.assertEqual(self.account(result)["bad"], 1)
        self.assertIn("1 line left out as bad", self.warnings(result)[0])

    def test_a_line_of_dividers_takes_the_next_away(self):
        lines = [HEAD, *bars(50)]
        lines.insert(20, ",,,,,,")
        result = self.convert(1, self.lines_file(lines))
        self.assertEqual(self.account(result), {"lines": 52, "blank": 1, "header": 1,
                                                "delivered": 49, "unread": 1})
        self.assertIn("the first is line 22", self.warnings(result)[0])

    def test_a_line_of_one_character_spoils_the_next(self):
        lines = [HEAD, *bars(50)]
        lines.insert(20, "x")
        result = self.convert(0, self.lines_file(lines))
        self.assertEqual(self.account(result)["bad"], 2)
        self.assertIn("line 21 has a single character", self.warnings(result)[0])

    def test_a_line_longer_than_is_read(self):
        lines = [HEAD, *bars(50)]
        lines[30] += "," + "x" * 600
        self.assertIn("1 line is longer than 512 bytes",
                      self.warnings(self.convert(0, self.lines_file(lines)))[0])

    def test_a_refused_file_has_an_account_too(self):
        result = self.fail_with(1, "convert", self.file("a.txt", "one\n\ntwo\nthree\n"))
        self.assertIn("lines=4 blank=1", result.err)
        self.assertIn("result=refused", result.summary())

    def test_numbers_balance_whatever_the_file(self):
        draw = random.Random(int(os.environ.get("TABULEX_SEED", "0")) or time.time_ns())
        for _ in range(60):
            lines = [HEAD] if draw.random() < .7 else []
            for line in bars(draw.randrange(1, 60)):
                lines.append(line)
                if draw.random() < .15:
                    lines.append(draw.choice(["", "x", ",,,", "junk line", line, " ", "||", line[:9],
                                              '"' + line + '"', line + ",1,2", "-" * 70]))
            path = self.lines_file(lines, end=draw.choice(["\n", "\r\n", "\r", "\n\r"]))
            options = draw.choice([[], ["--from", "2020-01-06T09:40"], ["--to", "2020-01-06T09:45"],
                                   ["--portion", "5:20"], ["--whole-file"]])
            result = self.run_tool("convert", path, "--no-check", *options)
            self.assert_balanced(self.account(result))


class Numbers(AccountTest):
    def numbers(self, result):
        return [int(m[1]) for m in re.finditer(r"^\S+?:(\d+): ", result.err, re.M)]

    def test_are_those_of_an_editor(self):
        lines = ["", HEAD, "", *bars(150), "", "junk line", *bars(3, TUESDAY), "", "more junk",
                 *bars(3, TUESDAY + dt.timedelta(1))]
        path = self.lines_file(lines)
        result = self.convert(0, path, "--rejects", self.path("r.csv"))
        self.assertEqual(self.numbers(result), [155, 160])
        with open(self.path("r.csv"), newline="") as f:
            rows = list(csv.reader(f))[1:]
        self.assertEqual([(row[1], row[4]) for row in rows], [("155", "junk line"), ("160", "more junk")])
        result = self.run_tool("convert", path, "--line-numbers", "component")
        self.assertEqual(self.numbers(result), [152, 156])

    def test_of_a_file_that_runs_backwards(self):
        lines = list(bars(1500))
        lines[1300] = "junk line"
        lines[700] = "more junk"
        path = self.lines_file([HEAD, *reversed(lines)])
        result = self.convert(0, path)
        self.assertEqual(self.numbers(result), [801, 201])

    def test_rejects_hold_the_bytes_of_the_line(self):
        lines = [x.encode() for x in (HEAD, *bars(300))]
        lines[150] = b"\xb1\xe4\xbb\xaf  caf\xe9\t" + b"y" * 700
        path = self.file("a.csv", b"\r\n".join(lines) + b"\r\n")
        self.run_tool("convert", path, "--rejects", self.path("r.csv"))
        with open(self.path("r.csv"), "rb") as f:
            self.assertIn(lines[150], f.read())


class Results(AccountTest):
    def test_nothing_of_that_symbol(self):
        path = self.lines_file([HEAD + ",Symbol", *(f"{x},AAA" for x in bars(20))])
        result = self.convert(1, path, "--column", "8=Symbol", "--symbol", "NOPE")
        self.assertIn("no row has the symbol 'NOPE'", result.err)
        self.assertIn("no row has the symbol 'NOPE'",
                      self.fail_with(1, "convert", "-q", path, "--column", "8=Symbol", "--symbol",
                                     "NOPE").err)

    def test_a_portion_behind_the_end(self):
        path = self.lines_file([HEAD, *bars(20)])
        self.assertIn("begins behind the last record",
                      self.convert(1, path, "--portion", "500:10").err)

    def test_many_bad_lines(self):
        lines = list(bars(100))
        for i in range(10, 32):
            lines[i] = lines[i].replace(",1", ",x1")
        path = self.lines_file([HEAD, *lines])
        result = self.convert(1, path)
        self.assertIn("22 of 100 lines are bad", result.err)
        self.assertEqual(len(result.rows()), 79)
        self.convert(0, path, "--max-errors", "22")

    def test_strict_writes_nothing(self):
        lines = list(bars(50))
        lines[20] = lines[20].rsplit(",", 2)[0] + ",500.5,7"
        path = self.lines_file([HEAD, *lines])
        out = self.path("o.csv")
        self.convert(0, path, "-o", out)
        os.remove(out)
        result = self.convert(1, path, "-o", out, "--strict")
        self.assertIn("--strict", result.err)
        self.assertIn("result=rollback", result.summary())
        self.assertFalse(os.path.exists(out))

    def test_a_file_that_changes_while_it_is_read(self):
        path = self.file("a.csv", minutes_text(60000))
        fifo = self.path("out.csv")
        os.mkfifo(fifo)
        tool = subprocess.Popen([*TOOL, "convert", path, "-o", fifo], env=environment(),
                                stdin=subprocess.DEVNULL, stderr=subprocess.PIPE)
        with open(fifo, "rb") as f:
            f.read(1000)
            os.utime(path, ns=(10**18, 10**18))
            while f.read(1 << 16):
                pass
        err = tool.communicate(timeout=60)[1].decode()
        self.assertEqual(tool.returncode, 1, err)
        self.assertIn("changed, replaced or removed while it was read", err)


class Warned(AccountTest):
    def warn(self, change, *options, status=0, head=HEAD):
        lines = list(bars(150))
        change(lines)
        return "\n".join(self.warnings(self.convert(status, self.lines_file([head, *lines]),
                                                    *options)))

    def test_a_good_file_has_none(self):
        self.assertEqual(self.warn(lambda lines: None), "")

    def put(self, row, column, text):
        def change(lines):
            cells = lines[row].split(",")
            cells[column] = text
            lines[row] = ",".join(cells)
        return change

    def test_bars_that_cannot_be(self):
        self.assertIn("1 of 150 rows: the high is below the low", self.warn(self.put(99, 3, "1.5")))

    def test_a_price_of_zero(self):
        self.assertIn("a price is 0 where others aren't", self.warn(self.put(99, 4, "0.00")))

    def test_a_dash_for_a_number(self):
        for text in ("-", "--97"):
            self.assertIn(f"1 line: a cell holds no number and was read as 0; the first is line 101"
                          f" with '{text}'", self.warn(self.put(99, 4, text)))

    def test_a_number_with_two_marks(self):
        self.assertIn("line 101 with '1.098.050'", self.warn(self.put(99, 2, "1.098.050")))

    def test_numbers_that_no_type_holds(self):
        warned = self.warn(self.put(99, 6, "9" * 23))
        self.assertIn("more than 64 bits", warned)
        path = self.path("a.csv")
        lines = list(bars(150))
        self.put(99, 3, "9" * 400)(lines)
        self.lines_file([HEAD, *lines])
        for form in ("csv", "jsonl"):
            result = self.convert(0, path, "--format", form)
            self.assertNotIn("inf", result.out.lower())
            self.assertIn("too large for a number", result.err)

    def test_moments_that_come_twice_or_between(self):
        def shift(lines):
            lines[99] = lines[99].replace(":00,", ":17,", 1)
        self.assertIn("no multiple of the bars' size", self.warn(shift))

    def test_a_divider_between_quotation_marks(self):
        self.assertIn("divides all the same", self.warn(self.put(99, 6, '"1,098"')))

    def test_more_cells_than_the_layout(self):
        def add(lines):
            lines[99] += ",17"
        self.assertIn("1 line: more cells than the layout has; the first is line 101", self.warn(add))

    def test_an_empty_cell_far_from_the_rows_that_are_sampled(self):
        lines = [line + ",7" for line in bars(5000)]
        cells = lines[3137].split(",")
        cells[4], cells[-1] = "", "7,8"
        lines[3137] = ",".join(cells)
        for head, number in (([HEAD + ",Note"], 3139), ([], 3138)):
            with self.subTest(head=head):
                result = self.convert(0, self.lines_file([*head, *lines]), "--column", "8=none")
                self.assertIn("1 line: a cell is empty, and the cells behind it are read one column "
                              f"too early; the first is line {number}", result.err)

    def test_a_cell_that_is_empty_in_all_rows_or_behind_the_last_column(self):
        rows = [line.split(",") for line in bars(300)]
        everywhere = [",".join([*row[:4], "", *row[4:]]) for row in rows]
        behind = [",".join(row) + (",,9" if i == 200 else "") for i, row in enumerate(rows)]
        for lines in (everywhere, [HEAD, *behind]):
            self.assertNotIn("is empty", self.convert(0, self.lines_file(lines)).err)


class Reports(AccountTest):
    def check_schema(self, report):
        self.assertEqual(list(report), ["file", "bad_lines", "warnings", "account", "result",
                                        "status", "error"])
        self.assertEqual(list(report["account"]),
                         ["lines", "blank", "header", "skipped", "delivered", "bad", "outside",
                          "other_symbol", "unread"])
        for bad in report["bad_lines"]:
            self.assertEqual(list(bad), ["line", "field", "column", "message", "text"])
        for warning in report["warnings"]:
            self.assertEqual(list(warning), ["code", "line", "text"])

    def bad_file(self):
        lines = list(bars(100))
        lines[30] = "junk \x01 line"
        lines[40] = lines[40].replace(".25", ".x25")
        lines[50] = lines[50].rsplit(",", 1)[0] + ",-"
        return self.lines_file([HEAD, *lines])

    def test_an_object_a_file(self):
        path = self.bad_file()
        out = self.path("r.json")
        self.convert(0, path, "--report", out)
        with open(out, encoding="utf-8") as f:
            report = json.loads(f.read())
        self.check_schema(report)
        self.assertEqual(report["file"], path)
        self.assertEqual([(b["line"], b["field"], b["column"]) for b in report["bad_lines"]],
                         [(32, 1, "Date"), (42, 3, "Open")])
        self.assertEqual(report["bad_lines"][0]["text"], "junk \x01 line")
        self.assertIn("no-number", [w["code"] for w in report["warnings"]])
        self.assertEqual(report["account"]["delivered"], 98)
        self.assertEqual((report["result"], report["status"], report["error"]), ("commit", 0, None))

    def test_on_standard_error(self):
        err = self.convert(0, self.bad_file(), "--json").err.splitlines()
        report = json.loads(next(x for x in err if x.startswith("{")))
        self.check_schema(report)
        self.assertTrue(err[-1].startswith("batches="))

    def test_of_files_that_fail(self):
        out = self.path("r.json")
        self.run_tool("convert", self.bad_file(), self.path("none.csv"), "-n", "--report", out)
        with open(out, encoding="utf-8") as f:
            reports = [json.loads(line) for line in f]
        self.assertEqual([r["result"] for r in reports], ["commit", "refused"])
        self.check_schema(reports[1])
        self.assertEqual(reports[1]["status"], 3)


if __name__ == "__main__":
    unittest.main()
