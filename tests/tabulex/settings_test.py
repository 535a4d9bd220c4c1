"""The settings options of convert and check, and the check itself."""
import datetime as dt
import unittest

from tool import SAMPLES, ToolTest, expected_rows


class Ranges(ToolTest):
    def rows(self, *options):
        return self.succeed("convert", self.sample("long.csv"), *options).rows()[1:]

    def test_both_ends_belong_to_the_range(self):
        rows = self.rows("--from", "2003-01-14T00:00", "--to", "2003-01-14T00:02:00")
        self.assertEqual([r[:2] for r in rows], [["2003-01-14", f"00:0{m}:00"] for m in range(3)])

    def test_a_date_is_its_first_moment(self):
        rows = self.rows("--from", "2003-01-14", "--to", "2003-01-15")
        self.assertEqual((rows[0][:2], rows[-1][:2]),
                         (["2003-01-14", "00:00:00"], ["2003-01-15", "00:00:00"]))

    def test_one_end_is_enough(self):
        self.assertEqual(self.rows("--to", "2003-01-13T09:31")[-1][1], "09:31:00")
        last = SAMPLES["long.csv"].rows[-1]
        self.assertEqual(self.rows("--from", "2003-01-15T03:00")[-1][1], str(last["Time"]))

    def test_descending_files_have_ranges_too(self):
        rows = self.succeed("convert", self.sample("descending.csv"), "--from", "2003-01-20",
                            "--to", "2003-01-22").rows()[1:]
        self.assertEqual([r[0] for r in rows], ["2003-01-20", "2003-01-21", "2003-01-22"])

    def assert_nothing_new(self, path, *options):
        result = self.succeed("convert", path, *options)
        self.assertEqual(len(result.rows()), 1, result.out)
        self.assertIn(f"{path}: nothing new: ", result.err)
        self.assertIn("delivered=0", result.summary())
        self.assertIn("result=commit", result.summary())
        quiet = self.succeed("convert", path, "-q", *options)
        self.assertEqual((quiet.out, quiet.err), (result.out, ""))

    def test_a_range_outside_of_the_file_has_nothing_new(self):
        for name in ("week.csv", "descending.csv", "long.csv"):
            path = self.sample(name)
            for option, word in (("--from", "2033-01-01"), ("--from", "2100-01-01"),
                                 ("--to", "1980-01-01"), ("--to", "1800-01-01")):
                with self.subTest((name, option, word)):
                    self.assert_nothing_new(path, option, word)
                    self.assert_nothing_new(path, option, word, "--strict")

    def test_a_range_between_two_records_has_nothing_new(self):
        self.assert_nothing_new(self.sample("week.csv"), "--from", "2003-01-14", "--to",
                                "2003-01-15")

    def test_a_range_behind_the_last_line_finds_what_lies_ahead_of_it(self):
        block = lambda name, year: "".join(f"{name},{year}/01/{d:02},{d}.5,{d}.75,{d}.25,{d}.5\n"
                                           for d in range(10, 30))
        path = self.file("a.csv", block("AB", 2003) + block("AB", 2004) + block("CD", 2003))
        rows = self.succeed("convert", path, "--from", "2004-01-20").rows()
        self.assertEqual([row[1] for row in rows[1:]], [f"2004-01-{d}" for d in range(20, 30)])

    def test_blocks_are_read_in_the_direction_of_their_lines(self):
        block = lambda name, year: "".join(f"{name},{year}/01/{d:02},{d}.5,{d}.75,{d}.25,{d}.5\n"
                                           for d in range(10, 30))
        path = self.file("a.csv", block("AB", 2004) + block("CD", 2003))
        rows = self.succeed("convert", path, "--from", "2004-01-20", "--whole-file").rows()
        self.assertEqual([row[1] for row in rows[1:]], [f"2004-01-{d}" for d in range(20, 30)])

    def test_nothing_new_is_nothing_in_a_file_and_a_table(self):
        path, out = self.sample("week.csv"), self.path("out.csv")
        self.succeed("convert", path, "-o", out, "--from", "2033-01-01")
        self.assertEqual(self.read("out.csv"), "Date,Open,High,Low,Close,Volume\n")

    def test_a_range_around_the_file_is_not(self):
        result = self.succeed("convert", self.sample("week.csv"), "--from", "1980-01-01", "--to",
                              "2033-01-01")
        self.assertNotIn("nothing new", result.err)
        self.assertEqual(result.rows(), expected_rows(SAMPLES["week.csv"]))

    def test_an_empty_range_is_refused(self):
        result = self.fail_with(1, "convert", self.sample("week.csv"), "--from", "2003-03-02",
                                "--to", "2003-03-01")
        self.assertIn("--from is after --to", result.err)

    def test_anything_but_an_iso_date_is_wrong_usage(self):
        for text in ("13.01.2003", "2003-02-30", "tomorrow", "2003-01-13T25:00"):
            with self.subTest(text):
                self.fail_with(2, "convert", "x", "--from", text)


class Symbols(ToolTest):
    def test_one_symbol_is_delivered(self):
        sample = SAMPLES["symbols.csv"]
        result = self.succeed("convert", self.sample(sample.name), "--symbol", "DEF")
        wanted = [r for r in sample.rows if r["Symbol"] == "DEF"]
        self.assertEqual(result.rows(), expected_rows(sample, wanted))
        self.assertIn("delivered=12 skipped=24", result.summary())

    def test_an_unknown_symbol_delivers_nothing(self):
        result = self.fail_with(1, "convert", self.sample("symbols.csv"), "--symbol", "def")
        self.assertEqual(result.summary(), "batches=1 delivered=0 skipped=36 result=commit")

    def test_a_file_without_symbols_refuses_one(self):
        result = self.fail_with(1, "convert", self.sample("week.csv"), "--symbol", "ABC")
        self.assertIn("no Symbol column", result.err)
        self.assertIn("result=refused", result.summary())


class Multipliers(ToolTest):
    def test_prices_and_volumes_are_scaled_apart(self):
        row = SAMPLES["week.csv"].rows[0]
        cases = [("100", "1/10"), ("1/100", "1000"), ("1000000", "1/1000000"), ("1", "1")]
        for price, volume in cases:
            with self.subTest((price, volume)):
                rows = self.succeed("convert", self.sample("week.csv"), "--price-multiplier",
                                    price, "--volume-multiplier", volume).rows()
                factor = lambda name: 1 / int(name[2:]) if "/" in name else int(name)
                for i, column in enumerate(("Open", "High", "Low", "Close")):
                    self.assertAlmostEqual(float(rows[1][i + 1]), row[column] * factor(price))
                self.assertEqual(rows[1][5], str(int(row["Volume"] * factor(volume) + 1e-9)))

    def bars(self, price, volume):
        lines = [f"2003/01/{d:02},{price},{price},{price},{price},{volume}\n" for d in range(1, 21)]
        return self.file("a.csv", "Date,Open,High,Low,Close,Volume\n" + "".join(lines))

    def test_prices_are_the_nearest_decimals(self):
        cases = [("98.05", "1/100", "0.9805"), ("1.1", "1/10", "0.11"), ("0.07", "100", "7"),
                 ("4.35", "100", "435"), ("0.000123456789", "1000", "0.123456789"),
                 ("123456789.123", "1/1000000", "123.456789123"), ("12345", "1/1000", "12.345")]
        for price, name, want in cases:
            with self.subTest((price, name)):
                path = self.bars(price, 5)
                rows = self.succeed("convert", path, "--price-multiplier", name).rows()
                self.assertEqual(rows[1][1:5], [want] * 4)
                lines = self.succeed("convert", path, "--price-multiplier", name, "--format",
                                     "jsonl").out.splitlines()
                self.assertIn(f'"Open":{want},', lines[0])

    def test_rows_that_lose_a_fraction_of_their_volume_are_counted(self):
        result = self.succeed("convert", self.bars("1.5", 1234), "--volume-multiplier", "1/100")
        self.assertEqual(result.rows()[1][5], "12")
        self.assertIn("20 rows lost a fraction of a volume to the multiplier 1/100", result.err)
        self.fail_with(1, "convert", self.path("a.csv"), "--volume-multiplier", "1/100", "--strict")

    def test_nothing_is_said_of_volumes_that_are_divided_without_a_rest(self):
        for name in ("1/100", "100"):
            err = self.succeed("convert", self.bars("1.5", 1200), "--volume-multiplier", name).err
            self.assertNotIn("warning", err)

    def test_a_volume_that_grows_too_large_is_warned_of(self):
        err = self.succeed("convert", self.bars("1.5", 10 ** 14), "--volume-multiplier",
                           "1000000").err
        self.assertIn("20 rows have a volume that is too large for the multiplier 1000000", err)
        rows = self.run_tool("convert", self.path("a.csv"), "--volume-multiplier", "1000000").rows()
        self.assertEqual({row[-1] for row in rows[1:]}, {str(2 ** 63 - 1)})

    def test_an_unknown_name_is_refused_with_the_known_ones(self):
        for option in ("--price-multiplier", "--volume-multiplier"):
            with self.subTest(option):
                err = self.fail_with(2, "convert", self.sample("week.csv"), option, "7").err
                self.assertIn("1000000, 100000, 10000", err)


class Resolutions(ToolTest):
    def test_a_name_and_a_size_are_set(self):
        path = self.sample("minute-5.csv")
        for options in (["--resolution", "Minutes|10"], ["--size", "10"],
                        ["--resolution", "minutes", "--size", "10"]):
            with self.subTest(options):
                result = self.succeed("convert", path, "--max-errors", "100", *options)
                self.assertEqual(len(result.rows()), 1 + 20)
                self.assertIn('doesn\'t fit the resolution "Minutes"', result.err)

    def test_a_resolution_decides_the_types(self):
        header = self.succeed("convert", self.sample("minute-5.csv"), "--resolution",
                              "Tick Bars").rows()[0]
        self.assertEqual(header, SAMPLES["minute-5.csv"].columns)

    def test_the_size_of_days_stands(self):
        err = self.fail_with(1, "convert", self.sample("descending.csv"), "--size", "4").err
        self.assertIn("the size of this resolution is 1", err)

    def test_what_is_not_offered_is_refused(self):
        for options in (["--resolution", "Hours"], ["--resolution", "Minutes|x"],
                        ["--resolution", "Minutes", "--offer", "4=Days"]):
            with self.subTest(options):
                err = self.fail_with(2, "convert", self.sample("minute-5.csv"), *options).err
                self.assertIn("isn't offered", err)

    def test_a_resolution_keeps_the_words_of_a_header(self):
        header = ["Date", "Close", "High", "Low", "Open", "Volume"]
        lines = [f"2003/01/{d:02},{d}.5,{d}.75,{d}.25,{d}.4,{1000 + d}\n" for d in range(1, 29)]
        for order in (lines, lines[::-1]):
            path = self.file("a.csv", ",".join(header) + "\n" + "".join(order))
            result = self.run_tool("convert", path, "--resolution", "Weeks", "--max-errors", "100")
            self.assertEqual(result.rows()[0], header)
            self.assertEqual(result.rows()[1], ["2003-01-01", "1.5", "1.75", "1.25", "1.4", "1001"])

    def test_a_file_that_runs_backwards_keeps_the_words_of_its_header(self):
        lines = [f"2003/01/13,{m // 60:02}:{m % 60:02},{m}.5,{m}.75,{m}.25,{m}.4,7\n"
                 for m in range(600, 900, 5)]
        path = self.file("a.csv", "Date,Time,Close,High,Low,Open,Volume\n" + "".join(lines[::-1]))
        result = self.succeed("convert", path, "--resolution", "Minutes|5", "-v")
        self.assertIn("resolution Minutes, size 5; columns Date, Time, Close, High", result.err)
        self.assertEqual(len(result.rows()), 61)

    def test_bars_may_be_stamped_with_their_end(self):
        rows = self.succeed("convert", self.sample("minute-5.csv"), "--bar-end-time").rows()
        self.assertEqual([r[1] for r in rows[1:4]], ["09:35:00", "09:40:00", "09:45:00"])


class Columns(ToolTest):
    def convert(self, *options, name="descending-no-header.csv"):
        return self.run_tool("convert", self.sample(name), *options)

    def test_types_are_assigned(self):
        header = self.convert("--column", "2=High", "--column", "3=open").rows()[0]
        self.assertEqual(header, ["Date", "High", "Open", "Low", "Close", "Volume"])

    def test_a_column_may_be_left_out(self):
        header = self.convert("--column", "6=none").rows()[0]
        self.assertEqual(header, ["Date", "Open", "High", "Low", "Close"])

    def test_a_template_is_set(self):
        text = "".join(f"0{d}/02/2003,10.5,11.5,9.5,10.25\n" for d in range(1, 10))
        path = self.file("a.csv", text)
        month_first = self.succeed("convert", path, "--no-check").rows()
        self.assertEqual(month_first[1][0], "2003-01-02")
        day_first = self.succeed("convert", path, "--no-check", "--column",
                                 "1=Date:*d/*m/*y").rows()
        self.assertEqual([r[0] for r in day_first[1:3]], ["2003-02-01", "2003-02-02"])

    def test_a_template_is_found_for_a_date_that_names_none(self):
        rows = self.succeed("convert", self.sample("date-06.csv"), "--column", "1=Date").rows()
        self.assertEqual(rows, expected_rows(SAMPLES["date-06.csv"]))

    def test_what_cannot_be_is_refused(self):
        cases = [("9=Open", "the file has 6 columns"), ("2=Date", "no Date template reads it"),
                 ("2=Open:*i", "only Date and Time columns take a template")]
        for column, reason in cases:
            with self.subTest(column):
                result = self.convert("--column", column)
                self.assertEqual(result.status, 1)
                self.assertIn(reason, result.err)

    def test_an_unknown_type_is_wrong_usage(self):
        result = self.convert("--column", "2=Opne")
        self.assertEqual(result.status, 2)
        self.assertIn("did you mean 'Open'?", result.err)


class Layouts(ToolTest):
    def test_dividers_are_set(self):
        text = "".join(f"2003/01/{d};10.5;11.5;9.5;10.25;A|B\n" for d in range(13, 30))
        path = self.file("a.csv", text)
        found = self.fail_with(1, "inspect", "--json", path).json()
        self.assertEqual(found["dividers"], 16 | 32)
        rows = self.succeed("convert", path, "--dividers", ";", "--column",
                            "6=none").rows()
        self.assertEqual(rows[0], ["Date", "Open", "High", "Low", "Close"])
        self.assertEqual(len(rows), 18)

    HEADER = "Date,Close,High,Low,Open,Volume"
    PREAMBLE = "Report 2020/01/02 of 5\nMade on 2020/02/01 12:30\nnumbers: 3\n"

    def days(self, backwards=False):
        lines = [f"2003-01-{d:02},{d}.5,{d}.75,{d}.25,{d}.4,{1000 + d}" for d in range(1, 29)]
        return lines[::-1] if backwards else lines

    def quotes(self, *lines, name="a.csv", backwards=False):
        return self.file(name, "\n".join([*lines, *self.days(backwards)]) + "\n")

    def all_days(self):
        return [self.HEADER.split(","), *(line.split(",") for line in self.days())]

    def test_lines_are_skipped(self):
        rows = self.succeed("convert", self.sample("week.csv"), "--lines-to-skip", "3").rows()
        sample = SAMPLES["week.csv"]
        self.assertEqual(rows[1:], expected_rows(sample, sample.rows[2:])[1:])

    def test_a_header_behind_skipped_lines_is_used(self):
        for backwards in (False, True):
            path = self.file("a.csv", self.PREAMBLE + self.HEADER + "\n" +
                             "\n".join(self.days(backwards)) + "\n")
            for options in ([], ["--dividers", ","], ["--header", "yes"], ["--header", "auto"]):
                with self.subTest((backwards, options)):
                    result = self.succeed("convert", path, "--lines-to-skip", "3", *options)
                    self.assertEqual(result.rows(), self.all_days())
        self.assertEqual(self.succeed("check", path, "--lines-to-skip", "3").err, "")
        self.assertIn("28.75", self.succeed("preview", path, "--lines-to-skip", "3", "--count",
                                            "40").out)

    def test_no_lines_to_skip_leave_the_header_in_use(self):
        for backwards in (False, True):
            path = self.quotes(self.HEADER, backwards=backwards)
            for options in (["--lines-to-skip", "0"], ["--header", "yes"],
                            ["--header", "yes", "--lines-to-skip", "0"]):
                with self.subTest((backwards, options)):
                    self.assertEqual(self.succeed("convert", path, *options).rows(),
                                     self.all_days())

    def test_the_dates_are_those_behind_the_skipped_lines(self):
        old = "1999-01-04,1.5,1.75,1.25,1.4,9"
        for path in (self.quotes(old), self.quotes("2019-01-04,1.5,1.75,1.25,1.4,9")):
            rows = self.succeed("convert", path, "--lines-to-skip", "1").rows()
            self.assertEqual([row[0] for row in rows[1:]],
                             [f"2003-01-{d:02}" for d in range(1, 29)])
        err = self.succeed("convert", path, "--lines-to-skip", "1", "--from", "2004-01-01").err
        self.assertIn("the last record is of 2003-01-28", err)

    def test_a_header_that_looks_like_data_is_no_row(self):
        path = self.quotes("Date,P,High,Low,Open,5")
        result = self.succeed("convert", path, "--header", "yes", "--column", "6=Volume")
        self.assertEqual(len(result.rows()), 29)
        self.assertIn("its words don't say what the columns are", result.err)
        self.fail_with(1, "convert", path, "--header", "yes", "--strict")

    def test_no_header_takes_the_first_line_for_a_row(self):
        plain = self.quotes()
        self.assertEqual(self.succeed("convert", plain, "--header", "no").rows(),
                         self.succeed("convert", plain).rows())
        result = self.run_tool("convert", self.quotes(self.HEADER, name="b.csv"), "--header", "no")
        self.assertEqual((result.status, result.out), (1, ""))

    def test_more_lines_than_the_file_has_are_refused(self):
        err = self.fail_with(1, "convert", self.quotes(), "--lines-to-skip", "28").err
        self.assertIn("--lines-to-skip 28: the file has no lines behind these", err)

    def test_a_preamble_is_skipped(self):
        text = b"Quotes of a day\n" + SAMPLES["week.csv"].content()
        path = self.file("a.csv", text)
        for options in (["--dividers", ","], []):
            rows = self.succeed("convert", path, *options, "--lines-to-skip", "1").rows()
            self.assertEqual(rows, expected_rows(SAMPLES["week.csv"]))

    def test_a_code_page_starts_the_detection_over(self):
        rows = self.succeed("convert", self.sample("week.csv"), "--code-page", "936").rows()
        self.assertEqual(rows, expected_rows(SAMPLES["week.csv"]))

    def test_an_unknown_encoding_is_wrong_usage(self):
        err = self.fail_with(2, "convert", self.sample("week.csv"), "--encoding", "martian").err
        self.assertIn("no encoding 'martian'", err)


class Portions(ToolTest):
    def test_are_counted_from_the_earliest_record(self):
        for name in ("long.csv", "descending.csv"):
            with self.subTest(name):
                sample = SAMPLES[name]
                result = self.succeed("convert", self.sample(name), "--portion", "7:9")
                self.assertEqual(result.rows(), expected_rows(sample, sample.rows[7:16]))
                self.assertEqual(result.summary(), "batches=1 delivered=9 skipped=0 result=commit")

    def test_end_with_the_file(self):
        sample = SAMPLES["descending.csv"]
        result = self.succeed("convert", self.sample(sample.name), "--portion", "20:1000")
        self.assertEqual(result.rows(), expected_rows(sample, sample.rows[20:]))

    def test_may_be_empty(self):
        for portion, status in (("3:0", 0), ("300:5", 1)):
            with self.subTest(portion):
                result = self.fail_with(status, "convert", self.sample("descending.csv"),
                                        "--portion", portion)
                self.assertEqual(len(result.rows()), 1)
                self.assertEqual(result.summary(), "batches=0 delivered=0 skipped=0 result=commit")

    def test_are_checked_whatever_is_asked(self):
        path = self.sample("minute-5.csv")
        result = self.fail_with(1, "convert", path, "--no-check", "--portion", "0:5", "--offer",
                                "4=Days")
        self.assertIn("No resolution is selected.", result.err)
        self.assertIn("result=refused", result.summary())

    def test_have_one_form(self):
        for text in ("5", "a:b", "1:-1"):
            with self.subTest(text):
                self.fail_with(2, "convert", "x", "--portion", text)


class Check(ToolTest):
    def test_says_nothing_of_good_settings(self):
        result = self.succeed("check", self.sample("week.csv"))
        self.assertEqual((result.out, result.err), ("", ""))

    def test_reports_the_fault(self):
        cases = [([], self.file("a.txt", "nothing of the kind\n"),
                  "The date range of the data is invalid."),
                 (["--offer", "5=Weeks"], self.sample("minute-5.csv"),
                  "No resolution is selected."),
                 (["--column", "2=High"], self.sample("week.csv"), 'lacks these fields: "Open".'),
                 (["--column", "6=High"], self.sample("week.csv"),
                  'The field "High" occurs more than once.')]
        for options, path, text in cases:
            with self.subTest(text):
                result = self.fail_with(1, "check", path, *options)
                self.assertEqual(result.out, "")
                self.assertIn(text, result.err)

    def test_refused_settings_are_not_converted_but_may_be(self):
        path, column = self.sample("week.csv"), ["--column", "6=High"]
        refused = self.fail_with(1, "convert", path, *column)
        self.assertEqual(refused.out, "")
        self.assertEqual(refused.summary(), "batches=0 delivered=0 skipped=0 result=refused")
        self.assertIn("delivered=20", self.succeed("convert", path, "--no-check",
                                                   *column).summary())

    def test_takes_several_files(self):
        bad = self.file("a.txt", "nothing of the kind\n")
        self.fail_with(3, "check", bad, self.path("missing"), self.sample("week.csv"))


if __name__ == "__main__":
    unittest.main()
