"""Cells and lines that the component reads as other than they say: each is told."""
import datetime as dt
import json
import unittest

from tool import ToolTest

HEAD = "Date,Open,High,Low,Close,Volume"


def days(count):
    return [dt.date(2020, 1, 1) + dt.timedelta(days=i) for i in range(count)]


def bars(count):
    return [f"{day},25.10,26.20,24.30,25.40,{1500 + i}" for i, day in enumerate(days(count))]


class CellsTest(ToolTest):
    def report_of(self, content, *args, status=0):
        path = self.file("quotes.csv", content)
        out = self.path("report.json")
        result = self.run_tool("convert", path, *args, "--report", out)
        self.assertEqual(result.status, status, result.err)
        with open(out, encoding="utf-8") as f:
            return json.load(f)

    def codes_of(self, content, *args, status=0):
        return [w["code"] for w in self.report_of(content, *args, status=status)["warnings"]]

    def with_cell(self, column, text, count=40, at=20):
        lines = bars(count)
        cells = lines[at].split(",")
        cells[column] = text
        lines[at] = ",".join(cells)
        return "\n".join([HEAD, *lines]) + "\n"


class Numbers(CellsTest):
    CLOSE, VOLUME = 4, 5

    def assert_told(self, column, text, code):
        report = self.report_of(self.with_cell(column, text, count=9, at=5))
        told = [w for w in report["warnings"] if w["code"] == code]
        self.assertEqual([w["line"] for w in told], [7], (text, report["warnings"]))
        self.assertIn(f"1 line: ", told[0]["text"])

    def test_one_that_is_read_in_part_is_told(self):
        for text in ("118-16", "118'16", "118'165", "25.40-", "25-", "(25.40)", "[25.40]",
                     "2+5", "2015-07-06"):
            self.assert_told(self.CLOSE, text, "number-odd")
        for text in ("1-50", "150-", "(150)", "0-0"):
            self.assert_told(self.VOLUME, text, "number-odd")

    def test_one_with_two_marks_is_told(self):
        for text in ("25.40.5", "25.40.50", "25.4.1", "1.234.567"):
            self.assert_told(self.CLOSE, text, "number-cut")

    def test_what_is_read_as_0_is_told(self):
        for text in ("+", ".", "+-5", "-+5", "-.", "--97"):
            self.assert_told(self.CLOSE, text, "no-number")
            self.assert_told(self.VOLUME, text.replace("-.", "-"), "no-number")

    def test_numbers_as_people_write_them_are_not(self):
        lines = [f"{day};+25.10;26.;-.5;1'234.5;1'150" for day in days(9)]
        codes = self.codes_of("\n".join([HEAD.replace(",", ";"), *lines]) + "\n")
        self.assertFalse({"number-odd", "number-cut", "no-number"} & set(codes), codes)

    def test_those_in_single_quotes_are_not(self):
        lines = [f"'{day}','25.10','26.20','24.30','25.40','1500'" for day in days(9)]
        self.assertEqual(self.codes_of("\n".join([HEAD, *lines]) + "\n"), [])

    def test_a_line_counts_once(self):
        lines = [f"{day},118-16,118-31,118-00,118-20,8200" for day in days(12)]
        [told] = [w for w in self.report_of("\n".join([HEAD, *lines]) + "\n")["warnings"]
                  if w["code"] == "number-odd"]
        self.assertTrue(told["text"].startswith("12 lines: "), told)

    def test_one_far_behind_is_found_beside_dates_of_any_form(self):
        for form in ("%Y-%m-%d", "%d.%m.%Y", "%Y/%m/%d", "%d-%b-%Y"):
            lines = [f"{dt.date(1960, 1, 1) + dt.timedelta(days=i):{form}},25.10,26.20,24.30,25.40,"
                     "1500" for i in range(20000)]
            lines[15000] = lines[15000].replace("25.40", "25.40.50")
            lines[16000] = lines[16000].replace("25.40", "25-16")
            found = {w["code"]: w["line"]
                     for w in self.report_of("\n".join([HEAD, *lines]) + "\n")["warnings"]}
            self.assertEqual((found.get("number-cut"), found.get("number-odd")), (15002, 16002))


class Fractions(CellsTest):
    def test_digits_behind_another_mark_are_told(self):
        for mark in ",:-":
            lines = [f"2021-03-01;09:30:{10 + i}{mark}5;25.1;1000" for i in range(12)]
            codes = self.codes_of("Date;Time;Price;Volume\n" + "\n".join(lines) + "\n")
            self.assertIn("fraction-cut", codes, mark)

    def test_milliseconds_and_zeros_are_not(self):
        for fraction in ("905", "00"):
            lines = [f"2021-03-01;09:30:{10 + i}.{fraction};25.1;1000" for i in range(12)]
            codes = self.codes_of("Date;Time;Price;Volume\n" + "\n".join(lines) + "\n")
            self.assertNotIn("fraction-cut", codes)


class ExtraCells(CellsTest):
    def lines(self):
        lines = bars(8000)
        lines[7000] += ",3"
        lines[7001] = lines[7001].rsplit(",", 1)[0]
        return [HEAD, *lines]

    def test_one_too_many_shows_beside_one_too_few(self):
        report = self.report_of("\n".join(self.lines()) + "\n")
        self.assertEqual([w["line"] for w in report["warnings"] if w["code"] == "more-cells"],
                         [7002])

    def test_one_too_many_shows_where_lines_end_with_cr(self):
        self.assertIn("more-cells", self.codes_of("\r".join(self.lines()) + "\r"))

    def test_a_cell_of_quotes_is_empty(self):
        for text in ('""', " ", "()"):
            lines = bars(8000)
            lines[7333] = f"{days(8000)[7333]},{text},26.20,24.30,25.40,25,1500"
            report = self.report_of("\n".join([HEAD, *lines]) + "\n")
            self.assertEqual([w["line"] for w in report["warnings"] if w["code"] == "cells-empty"],
                             [7335], text)


class ZeroBytes(CellsTest):
    def test_a_hole_that_joins_two_lines_is_told(self):
        lines = [HEAD, *bars(400)]
        text = ("\n".join(lines) + "\n").encode()
        begin = text.index(lines[200].encode()) + len(lines[200]) - 4
        end = text.index(lines[210].encode()) + len(lines[210]) - 4
        report = self.report_of(text[:begin] + bytes(end - begin) + text[end:], status=1)
        self.assertEqual([(w["code"], w["line"]) for w in report["warnings"]],
                         [("zero-bytes", 201)])
        self.assertEqual((report["result"], report["account"]["delivered"]), ("commit", 390))

    def test_one_within_a_number_is_told(self):
        self.assertIn("zero-bytes",
                      self.codes_of(self.with_cell(5, "1\0008.00").encode(), status=1))

    def test_many_at_the_end_are_told(self):
        report = self.report_of(("\n".join([HEAD, *bars(9)]) + "\n").encode() + bytes(5000))
        self.assertEqual([(w["code"], w["line"]) for w in report["warnings"]],
                         [("zero-bytes", 11)])

    def test_those_of_two_byte_text_are_letters(self):
        text = "\n".join([HEAD, *bars(9)]) + "\n"
        self.assertNotIn("zero-bytes", self.codes_of(text.encode("utf-16")))


class Guesses(CellsTest):
    def test_times_and_weekdays_are_no_symbols(self):
        minutes = [f"09:{30 + i},2021-03-01,25,26,24,25,{82000 + i}" for i in range(9)]
        self.assertIn("symbol-is-other", self.codes_of("\n".join(minutes) + "\n"))
        weekdays = [f"{day:%a},{day},25,26,24,25,{91000 + i}" for i, day in enumerate(days(9))]
        self.assertIn("symbol-is-other", self.codes_of("\n".join(weekdays) + "\n"))

    def test_a_name_that_is_also_a_weekday_is_one(self):
        lines = [f"SUN,{day},25,26,24,25,{91000 + i}" for i, day in enumerate(days(9))]
        self.assertNotIn("symbol-is-other", self.codes_of("\n".join(lines) + "\n"))

    def test_of_two_whole_numbers_either_may_be_the_volume(self):
        lines = [f"{day},25,26,24,25,{7514 + i * 211 % 900},0" for i, day in enumerate(days(9))]
        text = "\n".join(lines) + "\n"
        [told] = self.report_of(text)["warnings"]
        self.assertEqual(told["code"], "column-guessed")
        self.assertIn('--column 6=Volume --column "7=Open Interest"', told["text"])
        report = self.report_of(text, "--column", "6=Volume", "--column", "7=Open Interest")
        self.assertEqual(report["warnings"], [])

    def test_a_code_read_as_the_date_is_told_where_dates_are_elsewhere(self):
        lines = [f"600519,09:{30 + i},14-Jul-2015,25,26,24,25,{297 + i}" for i in range(9)]
        text = "\n".join(lines) + "\n"
        report = self.report_of(text)
        [told] = [w for w in report["warnings"] if w["code"] == "date-elsewhere"]
        self.assertIn("--column 1=none --column 3=Date", told["text"])
        self.assertEqual(self.codes_of(text, "--column", "1=none", "--column", "3=Date"), [])

    def test_headings_of_prices_may_end_with_px(self):
        text = "\n".join(["Date,OpenPx,HighPx,LowPx,ClosePx,Volume", *bars(9)]) + "\n"
        self.assertEqual(self.codes_of(text), [])

    def test_names_that_are_one_short_are_told_where_blanks_divide(self):
        lines = [f"ABC {day:%Y/%m/%d} 25.1 26.2 24.3 25.4 {98000 + i}"
                 for i, day in enumerate(days(9))]
        self.assertIn("headings-shifted",
                      self.codes_of("\n".join(["Symbol Date Open High Low Close", *lines]) + "\n"))

    def test_times_as_numbers_are_not_questioned_in_blocks_of_symbols(self):
        lines = [f"{name},20210301,{93000 + i * 100},25,26,24,25,{82000 + i}"
                 for name in ("ABC", "DEF", "GHI") for i in range(6)]
        head = "Symbol,Date,hms,Open,High,Low,Close,Volume"
        text = "\n".join([head, *lines]) + "\n"
        self.assertNotIn("number-as-time", self.codes_of(text, "--whole-file"))
        lines.sort(key=lambda line: line.split(",")[2])
        self.assertNotIn("number-as-time",
                         self.codes_of("\n".join([head, *lines[::-1]]) + "\n", "--whole-file"))
        text = "\n".join([head, *lines]) + "\n"
        self.assertNotIn("number-as-time", self.codes_of(text, "--whole-file"))

    def test_a_volume_of_one_in_each_row_is_told(self):
        text = "".join(f"{day},25,26,24,25,1\n" for day in days(9))
        self.assertEqual(self.codes_of(text), ["column-guessed"])

    def test_a_close_that_the_next_row_does_not_open_with_may_be_the_open(self):
        walk = [25 + i * 37 % 11 / 10 for i in range(21)]
        rows = [(day, walk[i], max(walk[i:i + 2]) + 1, min(walk[i:i + 2]) - 1, walk[i + 1])
                for i, day in enumerate(days(20))]
        text = "".join(f"{day},{c},{h},{l},{o},98765\n" for day, o, h, l, c in rows)
        self.assertEqual(self.codes_of(text), ["values-disagree"])
        text = "".join(f"{day},{o},{h},{l},{c},98765\n" for day, o, h, l, c in rows)
        self.assertEqual(self.codes_of(text), [])


if __name__ == "__main__":
    unittest.main()
