"""Recipes: lines that are made clean before they are read, and what stays that of the user's file."""
import csv
import gzip
import io
import json
import os
import subprocess
import unittest

from tool import ToolTest, environment

BARS = ["--take", "2=Open", "--take", "3=High", "--take", "4=Low", "--take", "5=Close"]


def days(first, count, line):
    return [line.format(day=first + i, n=i) for i in range(count)]


class Clean(ToolTest):
    def rows(self, content, *options, name="in.csv"):
        return self.succeed("convert", self.file(name, content), *options).rows()

    def test_reads_decimal_commas_and_suffixes(self):
        lines = ['"Data","Abertura","Máx","Mín","Último","Vol."']
        lines += days(10, 15, '"{day}.03.2023","101.{n:03}","102.900,5","100.000","101.000,25","1,5M"')
        rows = self.rows("\n".join(lines) + "\n", "--quotes", "--decimal", "comma", "--thousands", "point",
                         "--numbers", "suffix", "--moment", "1:dmy", *BARS, "--take", "6=Volume")
        self.assertEqual(rows[0], ["Date", "Open", "High", "Low", "Close", "Volume"])
        self.assertEqual(rows[1], ["2023-03-10", "101000", "102900.5", "100000", "101000.25", "1500000"])
        self.assertEqual(len(rows), 16)

    def test_gives_scaled_volumes_back_as_decimals(self):
        lines = days(10, 15, "2023-03-{day},1,3,1,2,0.1234567{n:02}")
        rows = self.rows("\n".join(lines), "--moment", "1:ymd", *BARS, "--take", "6=Volume", "--scale", "Volume:9")
        self.assertEqual([float(row[5]) for row in rows[1:]],
                         [float(f"0.1234567{n:02}") for n in range(15)])
        self.assertEqual(rows[2][5], "0.123456701")

    def test_warns_of_volumes_that_were_rounded(self):
        lines = days(10, 15, "2023-03-{day},1,3,1,2,5")
        lines[3] = lines[3][:-1] + "0.126"
        done = self.succeed("convert", self.file("in.csv", "\n".join(lines)), "--moment", "1:ymd", *BARS,
                            "--take", "6=Volume", "--scale", "Volume:2")
        self.assertEqual(done.rows()[4][5], "0.13")
        self.assertRegex(done.err, r"(?m)^warning: .*in line 4.*--scale")

    def test_bad_lines_are_those_of_the_file(self):
        lines = ["made by hand", "", "Day;O;H;L;C"]
        lines += days(10, 20, "{day}.03.2023;1,5;3;1;2")
        lines[5] = "12.03.2023;N/A;3;1;2"
        lines[15] = "-- page 2 --"
        lines[22] = "29.03.2023;1,5;3;1;"
        done = self.succeed("convert", self.file("in.csv", "\n".join(lines) + "\n"), "--decimal", "comma",
                            "--moment", "1:dmy", *BARS, "--rejects", self.path("bad.csv"), "--max-errors", "9",
                            "--resolution", "Days")
        self.assertEqual(len(done.rows()), 18)
        rejects = list(csv.reader(io.StringIO(self.read("bad.csv"))))[1:]
        self.assertEqual([(row[1], row[4]) for row in rejects],
                         [(str(n + 1), lines[n]) for n in (5, 15, 22)])
        for number in (6, 16, 23):
            self.assertIn(f"in.csv:{number}: ", done.err)
        self.assertEqual([row[2:4] for row in rejects], [["2", "Open"], ["1", "Date"], ["5", "Close"]])
        self.assertIn('"N/A"', rejects[0][5])
        self.assertIn("lines=23 blank=1 header=1 skipped=1 delivered=17 bad=3\n", done.err)

    def test_accounts_for_lines_that_are_left_out_or_joined(self):
        lines = ["# x", "Day,O,H,L,C,Note"] + days(10, 15, '2023-03-{day},1,3,1,2,"a\nb"')
        lines += ["Total,,,,,"]
        done = self.succeed("convert", self.file("in.csv", "\n".join(lines) + "\n"), "--quotes", "--comment", "#",
                            "--leave-out", "no-date", "--moment", "1:ymd", *BARS)
        self.assertIn("lines=33 header=1 skipped=17 delivered=15\n", done.err)

    def test_sorts_rows_and_knows_their_lines(self):
        lines = ["D,S,C"]
        for day in range(24, 9, -1):
            lines += [f"2023-03-{day},B,{day}", f"2023-03-{day},A,x" if day == 20 else f"2023-03-{day},A,{day}.5"]
        file = self.file("in.csv", "\n".join(lines) + "\n")
        done = self.succeed("convert", file, "--moment", "1:ymd", "--take", "2=Symbol", "--take", "3=Close",
                            "--take", "3=Open", "--take", "3=High", "--take", "3=Low", "--sort", "symbol")
        rows = done.rows()
        self.assertEqual([row[0] for row in rows[1:]], ["A"] * 14 + ["B"] * 15)
        self.assertEqual([row[1] for row in rows[15:]], [f"2023-03-{day}" for day in range(10, 25)])
        self.assertIn(f"in.csv:{lines.index('2023-03-20,A,x') + 1}: ", done.err)
        self.assertIn("lines=31 header=1 delivered=29 bad=1\n", done.err)

    def test_moves_times_between_zones(self):
        lines = [f"2020-03-{day:02} 09:30,1,3,1,2" for day in range(1, 21)]
        rows = self.rows("\n".join(lines), "--moment", "1:ymd+time", "--time-zone", "America/New_York", *BARS,
                         "--resolution", "Tick Bars")
        self.assertEqual(rows[1][:2], ["2020-03-01", "14:30:00"])
        self.assertEqual(rows[20][:2], ["2020-03-20", "13:30:00"])

    def test_keeps_the_columns_where_they_are_without_takes(self):
        lines = ["Date,Open,High,Low,Close,Volume"] + days(10, 15, '"{day}.03.2023","1.000,5","3.000","1","2.000,25",7')
        rows = self.rows("\n".join(lines), "--quotes", "--decimal", "comma", "--thousands", "point", "--moment", "1:dmy")
        self.assertEqual(rows[0], ["Date", "Open", "High", "Low", "Close", "Volume"])
        self.assertEqual(rows[1], ["2023-03-10", "1000.5", "3000", "1", "2000.25", "7"])

    def test_takes_a_date_by_hand(self):
        lines = [f"{34200000 + 60000 * i},1,3,1,2" for i in range(20)]
        rows = self.rows("\n".join(lines), "--moment", "1:ms-of-day", "--date", "2013-10-07", *BARS)
        self.assertEqual(rows[2], ["2013-10-07", "09:31:00", "1", "3", "1", "2"])

    def test_works_on_what_isnt_plain(self):
        text = "Day,O,H,L,C\n" + "\n".join(days(10, 15, "{day}.03.2023,1,3,1,2")) + "\n"
        options = ["--moment", "1:dmy", *BARS]
        expected = self.rows(text, *options)
        self.assertEqual(self.rows(text.encode("utf-16"), *options), expected)
        self.assertEqual(self.rows(gzip.compress(text.encode()), *options), expected)
        with open(self.file("in.csv", text), "rb") as file:
            self.assertEqual(self.succeed("convert", "-", *options, stdin=file).rows(), expected)

    def test_is_the_same_in_every_command(self):
        text = "Day,O,H,L,C\n" + "\n".join(days(10, 15, "{day}.03.2023,1,3,1,2")) + "\n"
        file = self.file("in.csv", text)
        options = ["--moment", "1:dmy", *BARS]
        self.succeed("check", file, *options)
        shown = self.succeed("inspect", file, "--json", *options).json()
        self.assertEqual([column["type"] for column in shown["columns"]], ["Date", "Open", "High", "Low", "Close"])
        self.assertEqual((shown["records"], shown["start"]), (15, "2023-03-10T00:00:00"))
        self.assertIn("2023-03-11", self.succeed("preview", file, *options).out)
        self.assertIn("as taken: Date;Open;High;Low;Close", self.succeed("inspect", file, *options).out)
        listed = self.succeed("symbols", file, "--symbol-name", "ABC", *options)
        self.assertEqual(listed.out, "ABC\n")

    def test_reports_the_lines_of_the_file_as_json(self):
        lines = ["x", "Day,O,H,L,C"] + days(10, 15, "{day}.03.2023,1,3,1,2")
        lines[4] = "12.03.2023,-,3,1,2"
        done = self.succeed("convert", self.file("in.csv", "\n".join(lines)), "-n", "--json", "--moment", "1:dmy", *BARS)
        report = next(json.loads(line) for line in done.err.splitlines() if line.startswith("{"))
        self.assertEqual(report["account"]["lines"], 17)
        self.assertEqual([(bad["line"], bad["text"]) for bad in report["bad_lines"]], [(5, lines[4])])

    def test_refuses_what_contradicts(self):
        file = self.file("in.csv", "1,2\n")
        for options, word in [(["--decimal", "x"], "--decimal"), (["--moment", "1:dmy+xyz"], "--moment"),
                              (["--take", "x"], "--take"), (["--sort", "moment"], "--moment"),
                              (["--moment", "1:time"], "--date"), (["--scale", "Volume:2"], "--take"),
                              (["--moment", "1:ymd", "--time-zone", "Nowhere"], "Nowhere"),
                              (["--decimal", "comma", "--decimal", "point"], "--decimal")]:
            with self.subTest(options):
                self.assertIn(word, self.fail_with(2, "check", file, *options).err)

    def test_needs_room_in_the_temporary_folder(self):
        text = "\n".join(days(10, 15, "{day}.03.2023,1,3,1,2") * 5000)
        file = self.file("in.csv", text)
        done = self.fail_with(3, "convert", file, "--moment", "1:dmy", *BARS, "-o", self.path("out.csv"),
                              env=environment(TMPDIR=self.path("none")))
        self.assertIn("TMPDIR", done.err)
        for extra in [], ["--sort", "moment"]:
            done = self.fail_with(3, "convert", file, "--moment", "1:dmy", *BARS, *extra, "-o",
                                  self.path("out.csv"), most_bytes=100000)
            self.assertIn("TMPDIR", done.err)
        self.assertEqual(sorted(os.listdir(self.folder)), ["in.csv"])

    def test_copies_nothing_without_a_recipe(self):
        file = self.file("in.csv", "\n".join(days(10, 15, "2023-03-{day},1,3,1,2,7")))
        self.succeed("convert", file, env=environment(TMPDIR=self.path("none")))


if __name__ == "__main__":
    unittest.main()
