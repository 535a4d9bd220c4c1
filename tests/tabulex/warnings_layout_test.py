"""Warnings about a file's layout: columns, headings, the order of dates, and text."""
import datetime as dt
import unittest

from tool import ToolTest, minutes_text


def bars(days, form="%Y-%m-%d", head="Date,Open,High,Low,Close,Volume", row="10,12,9,11,5000"):
    """Daily bars, a line a day."""
    return "\n".join([*([head] if head else []), *(f"{day:{form}},{row}" for day in days)]) + "\n"


def days(first, count, step=1):
    return [dt.date.fromisoformat(first) + dt.timedelta(days=i * step) for i in range(count)]


class LayoutTest(ToolTest):
    def warnings_of(self, content, *args, status=0, **options):
        path = self.file("quotes.csv", content)
        result = self.run_tool("convert", path, *args, **options)
        self.assertEqual(result.status, status, result.err)
        begin = f"warning: {path}: "
        return [line[len(begin):] for line in result.err.splitlines() if line.startswith(begin)]

    def only_warning_of(self, content, *args, **options):
        warnings = self.warnings_of(content, *args, **options)
        self.assertEqual(len(warnings), 1, warnings)
        return warnings[0]

    def assert_silent(self, content, *args, **options):
        self.assertEqual(self.warnings_of(content, *args, **options), [])


class Plain(LayoutTest):
    def test_a_file_that_says_what_it_holds_gives_no_warning(self):
        self.assert_silent(bars(days("2020-01-01", 40)))
        self.assert_silent(bars(days("2020-01-01", 40), head="<DATE>,<O>,<H>,<L>,<LAST>,<VOL>"))
        self.assert_silent(bars(days("2020-01-01", 40), head=""))
        self.assert_silent(minutes_text(2000))

    def test_quiet_says_nothing(self):
        path = self.file("quotes.csv", bars(days("2020-01-01", 9), head="Date,Open,High,Low,Close,Foo"))
        self.assertEqual(self.succeed("convert", "-q", path).err, "")


class LeftOut(LayoutTest):
    HEAD = "Date,Open,High,Low,Close,Adj Close,Volume"
    ROW = "10,12,9,11,10.5,5000"

    def test_a_column_without_a_type_is_named(self):
        warning = self.only_warning_of(bars(days("2020-01-01", 20), head=self.HEAD, row=self.ROW))
        self.assertIn('column 6 "Adj Close" is left out', warning)
        self.assertIn("--column 6=none", warning)

    def test_one_that_the_user_leaves_out_is_not(self):
        text = bars(days("2020-01-01", 20), head=self.HEAD, row=self.ROW)
        self.assert_silent(text, "--column", "6=none")

    def test_one_that_the_user_does_not_know_is(self):
        text = bars(days("2020-01-01", 20))
        self.assertIn('column 6 "Volume" is left out', self.only_warning_of(text, "--column", "6=unknown"))
        self.assert_silent(text, "--column", "6=unknown", "--column", "6=none")

    def test_a_column_of_dates_is_not_offered_as_symbols(self):
        rows = "".join(f"600519,{day:%d-%b-%Y},25,26,24,25,{106 + i}\n" for i, day in enumerate(days("2015-07-06", 5)))
        warnings = self.warnings_of(rows)
        self.assertFalse([w for w in warnings if "--column 2=Symbol" in w], warnings)
        self.assertTrue([w for w in warnings if "--column 1=Symbol --column 2=Date" in w], warnings)

    def test_a_column_of_empty_cells_is_not(self):
        self.assert_silent(bars(days("2020-01-01", 20), row="10,12,9,11,5000,",
                                head="Date,Open,High,Low,Close,Volume,"))

    def test_the_setting_that_reads_it_is_given(self):
        lines = ["Date,Open,High,Low,Close,Volume,Code"]
        for day in days("2020-01-01", 20):
            lines.append(f"{day},10,12,9,11,5000,600025")
        warning = self.only_warning_of("\n".join(lines) + "\n")
        self.assertIn("--column 7=Symbol", warning)
        path = self.path("quotes.csv")
        out = self.succeed("convert", path, "--column", "7=Symbol").rows()
        self.assertEqual(out[1], ["2020-01-01", "10", "12", "9", "11", "5000", "600025"])

    def test_rows_of_several_symbols_are_told(self):
        lines = ["Date,Open,High,Low,Close,Volume,Ticker"]
        for i, day in enumerate(days("2020-01-01", 60)):
            lines.append(f"{day},10,12,9,11,5000,{'abc' if i < 50 else 'xyz'}")
        warnings = self.warnings_of("\n".join(lines) + "\n")
        self.assertEqual(len(warnings), 2, warnings)
        self.assertIn('rows of several symbols come out as one: column 7 "Ticker" has "abc", "xyz"',
                      warnings[1])
        self.assert_silent("\n".join(lines) + "\n", "--column", "7=Symbol")


class Headings(LayoutTest):
    def test_a_heading_that_says_something_else_is_told(self):
        text = bars(days("2020-01-01", 20), "%Y%m%d", "date,amount,close,high,low,open,volume",
                    "990000,11,12,9,10,5000")
        warning = self.only_warning_of(text)
        self.assertIn('column 2 "amount" as Volume and 7 "volume" as Up Volume', warning)
        self.assertIn("give --column 2=none --column 7=Volume", warning)

    def test_the_settings_that_are_given_mend_it(self):
        text = bars(days("2020-01-01", 20), "%Y%m%d", "date,amount,close,high,low,open,volume",
                    "990000,11,12,9,10,5000")
        settings = ["--column", "2=none", "--column", "7=Volume"]
        self.assert_silent(text, *settings)
        rows = self.succeed("convert", self.path("quotes.csv"), *settings).rows()
        self.assertEqual(rows[:2], [["Date", "Close", "High", "Low", "Open", "Volume"],
                                    ["2020-01-01", "11", "12", "9", "10", "5000"]])

    def test_an_unknown_word_over_a_number_is_told(self):
        warning = self.only_warning_of(bars(days("2020-01-01", 20), row="10,12,9,11,5000,7",
                                            head="Date,Open,High,Low,Close,Volume,Totals"))
        self.assertIn('7 "Totals" as Total Ticks', warning)

    def test_names_that_do_not_stand_over_their_columns_are_told(self):
        lines = ["Date,Open,High,Low,Close,Volume"]
        for i in range(30):
            lines.append(f"2020-01-02,{9 + i // 60:02}:{i % 60:02}:00,10,12,9,11,5000")
        warnings = self.warnings_of("\n".join(lines) + "\n")
        self.assertIn("the heading line names 6 columns, but rows have 7", warnings[0])

    def test_a_type_that_the_user_names_against_it_is_questioned(self):
        text = bars(days("2020-01-01", 20))
        exchanged = ("--column", "2=Close", "--column", "5=Open")
        warnings = self.warnings_of(text, *exchanged)
        self.assertIn('column 2 "Open" is read as Close, as --column says', warnings[0])
        self.assert_silent(text, "--column", "2=Open", "--column", "6=none")
        self.assert_silent(text.replace("Volume", "Foo", 1), "--column", "6=Volume")

    def test_a_row_that_is_taken_for_the_heading_is_told(self):
        text = bars(days("2020-01-01", 20))
        warnings = self.warnings_of(text, "--lines-to-skip", "1", "--header", "yes")
        self.assertTrue(any("line 2 is taken for the headings" in w for w in warnings), warnings)


class Values(LayoutTest):
    def test_a_price_far_from_the_others_is_told(self):
        lines = [f"{day},25,24.9,24.8,{300 + i * 7}" for i, day in enumerate(days("2020-01-13", 20))]
        self.assertTrue(any("is far from the other prices" in warning
                            for warning in self.warnings_of("\n".join(lines) + "\n")))

    def test_high_below_the_close_in_most_rows_is_told(self):
        warnings = self.warnings_of(bars(days("2020-01-13", 20), row="10,11,9,12,5000"))
        self.assertTrue(any('"High" (taken as High) isn\'t the highest' in w for w in warnings),
                        warnings)

    def test_a_number_of_the_row_as_symbol_is_told(self):
        lines = [",Date,Open,High,Low,Close,Volume"]
        lines += [f"{i},{day},10,12,9,11,5000" for i, day in enumerate(days("2020-01-01", 20))]
        text = "\n".join(lines) + "\n"
        warning = self.only_warning_of(text, "--no-check")
        self.assertIn("column 1 (taken as Symbol) counts the rows", warning)
        self.assert_silent(text, "--no-check", "--column", "1=Symbol")

    def test_an_empty_cell_that_moves_the_others_is_told(self):
        lines = bars(days("2020-01-01", 20)).splitlines()
        lines[5] = "2020-01-05,10,,9,11,5000,7"
        warnings = self.warnings_of("\n".join(lines) + "\n")
        self.assertTrue(any("1 of 20 rows" in w and "first cell 3" in w for w in warnings), warnings)


class Times(LayoutTest):
    def test_a_number_that_is_read_as_a_time_is_told(self):
        warnings = self.warnings_of("2020/01/20;1300.0;1309.1;1300.0;1305.5;900\n")
        self.assertTrue(any("is read as a time, 900 as 09:00" in w for w in warnings), warnings)

    def test_times_that_run_through_a_day_are_not(self):
        lines = [f"20200113,{930 + i},10,12,9,11,5000" for i in range(20)]
        self.assert_silent("\n".join(lines) + "\n")

    def test_nor_those_under_their_heading(self):
        lines = ["Date,Time,Open,High,Low,Close,Volume"]
        lines += [f"{day:%Y%m%d},1200,10,12,9,11,5000" for day in days("2020-01-13", 20)]
        self.assert_silent("\n".join(lines) + "\n")


class DateOrder(LayoutTest):
    def test_an_order_that_no_row_decides_is_told(self):
        warning = self.only_warning_of(bars(days("2010-03-02", 8), "%d/%m/%Y"))
        self.assertIn('"02/03/2010" was read by *m/*d/*y as 2010-02-03', warning)
        self.assertIn("*d/*m/*y (2010-03-02)", warning)
        self.assertIn("--column '1=Date:*d/*m/*y'", warning)

    def test_the_setting_that_is_given_reads_it_the_other_way(self):
        text = bars(days("2010-03-02", 8), "%d/%m/%Y")
        self.assert_silent(text, "--column", "1=Date:*d/*m/*y")
        rows = self.succeed("convert", self.path("quotes.csv"),
                            "--column", "1=Date:*d/*m/*y").rows()
        self.assertEqual(rows[2][0], "2010-03-03")

    def test_a_month_decides(self):
        self.assert_silent(bars(days("2010-03-02", 30), "%d/%m/%Y"))

    def test_a_year_ahead_leaves_nothing_open(self):
        for form in ("%Y-%m-%d", "%Y%m%d", "%Y/%m/%d", "%d-%b-%Y"):
            self.assert_silent(bars(days("2010-03-02", 8), form))

    def test_a_single_day_that_decides_is_named(self):
        lines = bars(days("2010-03-01", 13), "%d/%m/%Y").replace("\n", "\n\n", 1).splitlines()
        warning = self.only_warning_of("\n".join(lines) + "\n")
        self.assertIn("only 1 of 13 days shows", warning)
        self.assertIn('(line 15: "13/03/2010")', warning)  # a blank line stands ahead

    def test_years_in_two_digits_may_stand_anywhere(self):
        warning = self.only_warning_of(bars(days("2003-02-01", 6), "%y/%m/%d"))
        self.assertIn('"03/02/01" was read by *y/*m/*d as 2003-02-01', warning)
        self.assertIn("*d/*m/*y (2001-02-03)", warning)

    def test_a_day_in_the_future_is_told(self):
        first = dt.date.today() + dt.timedelta(days=30)
        warning = self.only_warning_of(bars(days(first.isoformat(), 12)))
        self.assertIn(f"12 rows are in the future, first {first} (line 2:", warning)

    def test_today_is_no_future(self):
        first = dt.date.today() - dt.timedelta(days=20)
        self.assert_silent(bars(days(first.isoformat(), 21)))


class Encoding(LayoutTest):
    def text(self, symbol, encoding):
        lines = ["Symbol,Date,Open,High,Low,Close,Volume"]
        lines += [f"{symbol},{day},10,12,9,11,5000" for day in days("2020-01-01", 20)]
        return ("\n".join(lines) + "\n").encode(encoding)

    def test_utf8_that_is_read_in_another_encoding_is_told(self):
        warning = self.only_warning_of(self.text("Škoda", "utf-8"), "--encoding", "windows-1252")
        self.assertIn("is UTF-8 but is read in another encoding", warning)
        self.assertIn("--encoding utf-8", warning)
        self.assert_silent(self.text("Škoda", "utf-8"), "--encoding", "utf-8")

    def test_text_that_cannot_be_decoded_is_told(self):
        warning = self.only_warning_of(self.text("沪深", "gbk"), "--encoding", "utf-8")
        self.assertIn("--encoding gbk", warning)
        self.assert_silent(self.text("沪深", "gbk"), "--encoding", "gbk")

    def test_headings_show_the_encoding(self):
        text = bars(days("2020-01-01", 20), head="日期,开盘价,最高价,最低价,收盘价,成交量")
        settings = ["--resolution", "Days", "--column", "1=Date", "--column",
                    "2=Open", "--column", "3=High", "--column", "4=Low", "--column", "5=Close",
                    "--column", "6=Volume"]
        warning = self.only_warning_of(text.encode("gbk"), "--encoding", "windows-1252", *settings)
        self.assertIn("--encoding gbk", warning)


if __name__ == "__main__":
    unittest.main()
