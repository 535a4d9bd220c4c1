"""Refusals: the cause that is told for each kind of file, and that the proposed step works."""
import datetime as dt
import shlex
import unittest

from tool import ToolTest

HEADER = "Date,Open,High,Low,Close,Volume\n"
NO_DATES = "The date range of the data is invalid. "
NO_RESOLUTION = "No resolution is selected. "


def bars(count=60, form="%Y-%m-%d", divider=","):
    rows = []
    for i in range(count):
        day = dt.date(2003, 1, 13) + dt.timedelta(days=i)
        date = form(day) if callable(form) else day.strftime(form)
        price = 10 + i * 0.25
        rows.append(divider.join([date, f"{price:.2f}", f"{price + 1:.2f}", f"{price - 1:.2f}",
                                  f"{price + 0.5:.2f}", str(1000 + i)]))
    return rows


def text(rows, header=HEADER):
    return header + "\n".join(rows) + "\n"


def changed(line, change):
    """The bars with one line of the file changed; the header is line 1."""
    rows = bars()
    rows[line - 2] = change(rows[line - 2])
    return text(rows)


def dated(date):
    return lambda row: date + row[row.index(","):]


class RefusalTest(ToolTest):
    def refusal(self, content, *options):
        """What is said, without the tool's and the file's name; the same for each command."""
        path = self.file("a.csv", content)
        err = self.fail_with(1, "check", path, *options).err
        self.assertTrue(err.startswith(f"tabulex: {path}: "), err)
        said = err[len(f"tabulex: {path}: "):].rstrip("\n")
        convert = self.fail_with(1, "convert", path, *options)
        self.assertIn(said, convert.err)
        self.assertEqual(convert.out, "")
        found = self.fail_with(1, "inspect", "--json", path, *options)
        if found.out:  # what holds no text at all isn't even opened
            found = found.json()
            self.assertEqual((found["convertible"], found["reason"]), (False, said))
        else:
            self.assertIn(said, found.err)
        self.assertNotIn("\n", said)
        return said

    def assert_refused(self, content, *fragments):
        said = self.refusal(content)
        for fragment in fragments:
            self.assertIn(fragment, said)
        return said

    def assert_step_works(self, said, rows):
        """Runs convert with the proposed options."""
        self.assertRegex(said, "[;,] try ")
        options = shlex.split(said[said.index(" try ") + 5:].rstrip("."))
        self.after = result = self.succeed("convert", self.path("a.csv"), *options)
        self.assertEqual(len(result.rows()) - 1, rows, result.err)
        return result.rows()


class NoTable(RefusalTest):
    def test_an_empty_file(self):
        self.assert_refused(b"", NO_DATES, "The file is empty")

    def test_blank_lines_only(self):
        self.assert_refused("\n\n\n", "The file has no data lines: all its lines are blank")

    def test_dividers_only(self):
        self.assert_refused(",,,;;\n|||\n\t\t\n", "its lines hold dividers only")

    def test_a_header_only(self):
        self.assert_refused(HEADER, "there is only the heading in line 1, 'Date,Open,High,Low,Close,Volume'")

    def test_words_only(self):
        self.assert_refused("nothing\nof the kind\n", "none holds a number, a date or a time",
                            "line 2, 'of the kind'")

    def test_zero_bytes(self):
        self.assert_refused(b"\0" * 5000, "The file holds nothing but zero bytes")

    def test_binary_data(self):
        self.assert_refused(bytes(range(256)) * 40, "The file is no text")

    def test_files_of_another_kind_by_their_first_bytes(self):
        for content, what in ((b"\x7fELF" + bytes(range(200)), "a program"),
                              (b"%PDF-1.4\n1 0 obj\n", "a PDF document"),
                              (b"Rar!\x1a\x07\x00" + bytes(50), "a RAR archive"),
                              (b"SQLite format 3\0" + bytes(90), "an SQLite database"),
                              (b"<!DOCTYPE html><html><body>1,2,3</body></html>\n", "a web page"),
                              (b'[{"date":"2020-01-01","open":1}]\n', "JSON")):
            with self.subTest(what):
                self.assert_refused(content, f"This is {what} and no text table")

    def test_utf16_without_a_mark(self):
        for order in ("be", "le"):
            path = self.file("a.csv", text(bars()).encode(f"utf-16-{order}"))
            result = self.succeed("check", path)
            self.assertIn("two bytes a character and no mark that says so", result.err)

    def test_utf16_in_another_encoding(self):
        path = self.file("a.csv", text(bars()).encode("utf-16-be"))
        err = self.fail_with(1, "check", path, "--encoding", "windows-1252").err
        self.assertIn("The text is UTF-16 without a mark, and is read in another encoding: leave "
                      "--encoding out", err)
        self.succeed("check", path)

    def test_a_single_field(self):
        rows = bars(divider="~")
        self.assert_refused(text(rows, HEADER.replace(",", "~")), "Line 1 is one field",
                            "Replace '~' by one of these")

    def test_a_very_long_line(self):
        self.assert_refused("x12,34," * 15_000 + "\n", "Line 1 has 105,000 bytes", "fewer than 259")
        self.assert_refused(text(bars(), HEADER.strip() + ",A" * 150 + "\n"), "Line 1 has 331 bytes")


class Preambles(RefusalTest):
    def test_one_to_five_lines_in_front(self):
        for count in range(1, 6):
            with self.subTest(count):
                lines = "".join(f"Report part {i}: made by me\n" for i in range(count))
                said = self.assert_refused(lines + text(bars()), f"begin at line {count + 1} (")
                rows = self.assert_step_works(said, 60)
                self.assertEqual(rows[0], ["Date", "Open", "High", "Low", "Close", "Volume"])

    def test_comment_lines_in_front(self):
        said = self.assert_refused("# data of 2003, by me\n# more, text; here\n" + text(bars()),
                                   "begin at line 3", "behind 2 other lines")
        self.assert_step_works(said, 60)

    def test_blank_lines_count_in_numbers(self):
        self.assert_refused("Report part 1: made by me\n\n\n" + text(bars()), "begin at line 4")


class Dates(RefusalTest):
    def test_the_form_is_named(self):
        for form, what in (
                (lambda d: str(1042416000 + d.toordinal()), "seconds since 1970"),
                (lambda d: str(1042416000000 + d.toordinal()), "milliseconds since 1970"),
                ("%Y-%m-%dT09:30:00", "joined by a T, which isn't read"),
                ("%Y-%m-%dT09:30:00Z", "with an offset from UTC"),
                ("%Y-%m-%dT09:30:00+01:00", "with an offset from UTC"),
                ("%Y%m%d093000", "a date and a time run together"),
                ("%a %d %b %Y", "begins with the name of a day"),
                ("%B %d %Y", "the month stands as a word"),
                ("%m/%d", "it has no year"),
                ("%b %Y", "a month and a year and no day"),
                (lambda d: f"09:{d.day:02}:00", "it is a time and no date"),
                (lambda d: str(d.toordinal() - 693594), "day number of a spreadsheet"),
                ("%d. %m. %Y", "in no order that is known")):
            with self.subTest(what):
                rows = bars(form=form)
                said = self.assert_refused(text(rows), "Line 2: ", "in column 1, 'Date'", what)
                self.assertIn(f"'{rows[0].split(',')[0]}'", said)

    def test_years_that_cannot_be_delivered(self):
        for year in (1899, 2100, 9999):
            with self.subTest(year):
                self.assert_refused(text(bars(form=lambda d, y=year: f"{y}-{d:%m-%d}")),
                                    f"Line 2: '{year}-01-13'", "outside of 1900 to 2079")

    def test_a_year_that_cannot_be_delivered_in_one_line(self):
        self.assert_refused(changed(2, dated("1899-12-31")), "line 2 has '1899-12-31' there",
                            "outside of 1900 to 2079")
        self.assert_refused(changed(61, dated("2100-01-01")), "line 61 has '2100-01-01' there")

    def test_a_late_date_is_told_with_its_line(self):
        self.assert_refused(changed(61, dated("2085-01-01")), "dates after 2079-06-04", "line 61: '2085-01-01")

    def test_a_form_that_a_template_can_read(self):
        said = self.assert_refused(text(bars(form="%Y.%m.%d")), "Line 2: '2003.01.13'")
        self.assertIn("--column '1=Date:*y.*m.*d'", said)
        self.assertEqual(self.assert_step_works(said, 60)[1][0], "2003-01-13")

    def test_a_date_and_a_time_in_one_cell(self):
        rows = [f"2003-01-13 {9 + i // 60:02}:{i % 60:02}:00,10.5,11.5,9.5,10.25,{100 + i}" for i in range(120)]
        said = self.assert_refused(text(rows), "Line 2: '2003-01-13 09:00:00' in column 1, 'Date'",
                                   "date and time stand in one cell")
        table = self.assert_step_works(said, 120)
        self.assertEqual(table[0], ["Date", "Time", "Open", "High", "Low", "Close", "Volume"])
        self.assertEqual(table[1], ["2003-01-13", "09:00:00", "10.5", "11.5", "9.5", "10.25", "100"])

    def test_a_step_leaves_out_what_has_no_known_heading(self):
        rows = [row + ",0.25" for row in bars(form="%Y.%m.%d")]
        said = self.assert_refused(text(rows, HEADER.strip() + ",Skew\n"), "--column '1=Date:*y.*m.*d'")
        self.assertEqual(self.assert_step_works(said, 60)[0], ["Date", "Open", "High", "Low", "Close", "Volume"])
        self.assertIn('"Skew" is left out', self.after.err)

    def test_the_line_that_spoils_a_column(self):
        said = self.assert_refused(changed(7, dated("n/a")), "Column 1, 'Date' reads as dates by '*y-*m-*d' in 59 "
                                   "of 60 sampled lines, but line 7 has 'n/a' there")
        self.assert_step_works(said, 59)

    def test_a_footer(self):
        for footer in ("Total,60 rows\n", "\x1a"):
            with self.subTest(footer):
                self.assert_refused(text(bars()) + footer, "but line 62 has ", "mend or remove that line")

    def test_two_forms_of_dates(self):
        rows = [row if i % 2 else f"{13 + i % 15}/02/2003" + row[10:] for i, row in enumerate(bars(30))]
        self.assert_refused(text(rows), "dates in two forms", "line 3 has '2003-01-14'", "'*y-*m-*d'")

    def test_a_letter_behind_the_date(self):
        said = self.assert_refused(text(bars(form="%Y-%m-%dT")), "a T stands behind the date")
        self.assertEqual(self.assert_step_works(said, 60)[1][0], "2003-01-13")

    def test_a_given_template_that_does_not_read_the_dates(self):
        for template in ("*d-*m-*y", "xyz"):
            with self.subTest(template):
                said = self.refusal(text(bars()), "--column", f"1=Date:{template}")
                self.assertIn(f"The template given by --column 1, '{template}', doesn't read '2003-01-13' in line 2; "
                              "'*y-*m-*d' does", said)
                self.assert_step_works(said, 60)

    def test_no_step_loses_a_row_as_headings(self):
        rows = [f"X,{9 + i // 4:02}{i % 4 * 15:02},12.03.2003,0.65,0.66,0.64,0.65,{500 + i}" for i in range(40)]
        said = self.refusal("\n".join([rows[0], "A,B,C", *rows[1:]]) + "\n")
        self.assertNotIn("--lines-to-skip 2", said)

    def test_no_dates_at_all(self):
        rows = [row.split(",", 1)[1] for row in bars()]
        self.assert_refused("\n".join(rows) + "\n", "No column of line 1 looks like a date")

    def test_without_the_check_the_cause_is_told_too(self):
        path = self.file("a.csv", text(bars(form="%m/%d")))
        said = self.fail_with(1, "convert", "--no-check", path).err
        self.assertIn("No column holds a date. Line 2: '01/13' in column 1", said)


class Cells(RefusalTest):
    def test_dividers_in_quotes(self):
        rows = [f'"{dt.date(2003, 1, 13) + dt.timedelta(days=i):%b %d, %Y}",{row[11:]}'
                for i, row in enumerate(bars())]
        self.assert_refused(text(rows), "Line 2 has '\"Jan 13, 2003\"'", "write the file with another divider")

    def test_a_quoted_line_end(self):
        rows = [row + ',"a\nb"' for row in bars()]
        self.assert_refused(text(rows, HEADER.strip() + ",Note\n"), "goes on behind the end of line 2")

    def test_an_empty_cell_ahead(self):
        self.assert_refused(text(["," + row for row in bars()], "X," + HEADER), "Line 2 has an empty cell")

    def test_an_empty_heading(self):
        self.assert_refused(text(bars(), HEADER[4:]), "Line 1 has an empty heading")

    def test_headings_in_other_letters(self):
        path = self.file("a.csv", ("日期,代码,开盘,最高,最低,收盘\n" + "\n".join(
            r.rsplit(",", 1)[0].replace(",", ",'600025,", 1) for r in bars()) + "\n").encode("gbk"))
        self.assertIn("no Latin letters", self.fail_with(1, "check", path).err)


class Resolutions(RefusalTest):
    def test_a_heading_that_is_no_known_word(self):
        said = self.assert_refused(text(bars(), HEADER.replace("High", "Peak")), NO_RESOLUTION,
                                   "No column was taken for High")
        rows = self.assert_step_works(said, 60)
        self.assertEqual(rows[1], ["2003-01-13", "10", "11", "9", "10.5", "1000"])

    def test_a_step_follows_the_headings(self):
        for header in ("Fecha,Apertura,Maximo,Minimo,Cierre,Volumen\n", "Date,OpenPx,Max,LOW,CLOSE,V\n",
                       "Session,Open,H,L,C,Lots\n"):
            with self.subTest(header):
                said = self.refusal(text(bars(), header))
                table = self.assert_step_works(said, 60)
                for name, value in (("Open", "10"), ("High", "11"), ("Low", "9"), ("Close", "10.5")):
                    self.assertEqual(table[1][table[0].index(name)], value, said)
                self.assertNotIn("=none", said)
                self.assertTrue("Volume" in table[0] or "left out" in self.after.err, said)

    def test_headings_that_the_values_speak_against(self):
        header = "Date,Anfang,Low,High,Ende,Volume\n"
        self.assert_refused(text(bars(), header), "The headings and the values disagree", "column 4, 'High'",
                            "Correct the headings")

    def test_a_guess_is_by_the_run_of_prices(self):
        rows = [",".join([c[0], c[4], c[2], c[3], c[1], c[5]]) for c in (row.split(",") for row in bars())]
        said = self.refusal(text(rows, "Date,col2,col3,col4,col5,col6\n"))
        table = self.assert_step_works(said, 60)
        self.assertEqual(table[1][table[0].index("Open")], "10")
        self.assertEqual(table[1][table[0].index("Close")], "10.5")

    def test_ticks_under_other_words(self):
        rows = [f"2003-01-13,09:{i // 60:02}:{i % 60:02},{10 + i * 0.25},{100 + i}" for i in range(60)]
        said = self.assert_refused(text(rows, "Date,Time,Last,Lots\n"), "No column was taken for Price")
        self.assertEqual(self.assert_step_works(said, 60)[:2],
                         [["Date", "Time", "Price", "Volume"], ["2003-01-13", "09:00:00", "10", "100"]])

    def test_times_with_points(self):
        rows = [f"T,2019-07-25,{9 + i // 12:02}.{i % 12 * 5:02},{102 + i / 100:.2f},{103 + i / 100:.2f},"
                f"{101 + i / 100:.2f},{102.5 + i / 100:.2f},{5000 + i}" for i in range(60)]
        said = self.assert_refused("\n".join(rows) + "\n", "column 3 has '09.00' in line 1")
        self.assertEqual(self.assert_step_works(said, 60)[2][:3], ["T", "2019-07-25", "09:05:00"])

    def test_a_last_row_that_stands_twice(self):
        said = self.assert_refused(text([*bars(20), bars(20)[-1]]), "Line 21 and line 22 have the same date",
                                   "the dates don't show what the rows are; try --resolution Days")
        self.assert_step_works(said, 21)

    def test_a_single_price_without_a_time(self):
        rows = [",".join(row.split(",")[:2]) for row in bars()]
        self.assert_refused(text(rows, "Date,Close\n"), "1 column of numbers beside the date, and no time",
                            "bars need Open, High, Low and Close, and ticks need Time and Price")

    def test_equal_dates_without_a_time(self):
        self.assert_refused(text([dated("2003-01-13")(row) for row in bars()]),
                            "Line 2 and line 3 have the same date, 2003-01-13")

    def test_symbols_day_by_day(self):
        rows = [row.replace(",", f",{symbol},", 1) for row in bars(30) for symbol in ("AA", "BB")]
        said = self.assert_refused(text(rows, HEADER.replace(",", ",Symbol,", 1)), "have the same date")
        self.assertEqual(self.assert_step_works(said, 60)[1][:2], ["2003-01-13", "AA"])

    def test_an_undated_line_among_the_first_hundred(self):
        said = self.assert_refused(changed(52, dated("n/a")), "Line 52 has no date that is read ('n/a,")
        self.assert_step_works(said, 59)

    def test_times_that_are_not_read(self):
        rows = [f"20030113,{93000000 + i * 1000:09},10.5,100" for i in range(50)]
        self.assert_refused(text(rows, "Date,Time,Price,Volume\n"), "Line 2: '093000000' in column 2, 'Time'",
                            "hours, minutes, seconds and thousandths run together")
        rows = [f"2003-01-13,{9 + i // 30:02}-AM,10.5,100" for i in range(50)]
        self.assert_refused(text(rows, "Date,Time,Price,Volume\n"), "column 2, 'Time' has '09-AM' in line 2")

    def test_what_a_chosen_resolution_lacks(self):
        rows = [",".join(row.split(",")[:2]) for row in bars()]
        path = self.file("a.csv", text(rows, "Date,Close\n"))
        said = self.fail_with(1, "check", path, "--resolution", "Days").err
        self.assertIn('The resolution "Days" lacks these fields: "Open", "High", "Low". No column was taken for '
                      'Open, High, Low', said)

    def test_a_type_that_two_columns_have(self):
        path = self.file("a.csv", text(bars()))
        said = self.fail_with(1, "check", path, "--column", "6=Close").err
        self.assertIn("Column 5, 'Close' and column 6, 'Volume' are all Close", said)
        self.assertIn("--column 6=none", said)


class Settings(RefusalTest):
    def test_an_encoding_of_two_bytes_for_plain_text(self):
        said = self.refusal(text(bars()), "--encoding", "utf-16")
        self.assertIn("Line 1 is 'Date,Open,High,Low,Close,Volume' by its bytes", said)
        self.assertIn("leave --encoding out", said)

    def test_a_comment_ahead_also_with_a_header_that_is_asked_for(self):
        for options in ((), ("--header", "yes")):
            with self.subTest(options):
                said = self.refusal("# by me\n" + text(bars()), *options)
                self.assertIn("try --lines-to-skip 1", said)
                self.assert_step_works(said, 60)

    def test_blank_lines_behind_what_is_looked_at(self):
        said = self.assert_refused("\n" * 2_000_000, "all its lines are blank")
        self.assertNotIn("--lines-to-skip", said)

    def test_the_account_of_a_file_that_is_not_run(self):
        path = self.file("a.csv", text(bars(), HEADER.replace(",", ";")).replace(",", ";"))
        for options in (("--dividers", ","), ("--encoding", "utf-16")):
            with self.subTest(options):
                self.assertNotIn("skipped=", self.fail_with(1, "convert", path, *options).err.splitlines()[-2])

    def test_a_preview_of_nothing_says_why(self):
        for content, cause in ((b"", "The file is empty"), (b"\x7fELF" + bytes(300), "This is a program")):
            with self.subTest(cause):
                result = self.fail_with(1, "preview", self.file("a.csv", content))
                self.assertIn(cause, result.err)
                self.assertEqual(result.out, "")


class Languages(RefusalTest):
    def test_the_check_speaks_the_chosen_language_and_the_cause_follows(self):
        path = self.file("a.csv", b"")
        said = self.fail_with(1, "check", "--lang", "zh", path).err
        self.assertIn("数据周期无效。 The file is empty", said)

    def test_control_characters_are_not_passed_on(self):
        said = self.assert_refused(changed(61, dated("\x1b31mred")), "\\x1B31mred")
        self.assertNotIn("\x1b", said)


if __name__ == "__main__":
    unittest.main()
