"""Advice: what inspect ends with, commands that can be pasted, --auto, and what is refused."""
import json
import os
import shlex
import unittest

from tool import ToolTest

SOUND = "Date,Open,High,Low,Close,Volume\n" + "".join(
    f"2020-01-{day:02},{day}.5,{day + 1}.25,{day - 1}.75,{day}.75,{day * 100}\n" for day in (2, 3, 6, 7, 8, 9, 10, 13))
MIXED = "Amount,Date,Time,Symbol,Last,Open,High,Low,Vol.\n" + "".join(
    f'9,"0{day}.01.2020",9:30,ES,"{day},50","{day},25","{day + 1},00","{day - 1},00","1,{day}K"\n' for day in range(2, 9))
UNDECIDED = "Date,Open,High,Low,Close\n" + "".join(f"0{day}/03/2010,{day}.5,{day + 1},{day - 1},{day}\n" for day in (2, 3))
WIDE = ",BTC:open,BTC:high,BTC:low,BTC:close,ETH:open,ETH:high,ETH:low,ETH:close\n" + "".join(
    f"2020-01-{day:02},{day},{day + 2},{day - 1},{day + 1},1{day},1{day + 2},1{day - 1},1{day + 1}\n" for day in range(2, 7))


class Advice(ToolTest):
    def advice(self, content):
        found = self.run_tool("inspect", "--json", self.file("in.csv", content))
        return json.loads(found.out)["advice"]

    def test_says_so_where_the_file_can_be_read_as_it_stands(self):
        advice = self.advice(SOUND)
        self.assertEqual((advice["verdict"], advice["tries"]), ("as it stands", 1))
        self.assertEqual(advice["readings"][0]["options"], [])
        report = self.succeed("inspect", self.path("in.csv")).out
        self.assertIn("advice      as it stands: the component's own reading is right", report)

    def test_gives_a_command_that_does_what_auto_does(self):
        path = self.file("in.csv", MIXED)
        report = self.run_tool("inspect", path).out
        command = next(line.split("command", 1)[1].strip() for line in report.splitlines() if line.startswith("  command"))
        pasted = self.succeed(*shlex.split(command)[1:])
        by_itself = self.succeed("convert", path, "--auto")
        self.assertEqual(pasted.out, by_itself.out)
        self.assertEqual(by_itself.rows()[0], ["Symbol", "Date", "Time", "Open", "High", "Low", "Close", "Volume"])
        self.assertEqual(by_itself.rows()[1], ["ES", "2020-01-02", "09:30:00", "2.25", "3", "1", "2.5", "1200"])

    def test_says_in_one_line_what_it_did(self):
        err = self.succeed("convert", self.file("in.csv", MIXED), "--auto").err
        lines = [line for line in err.splitlines() if line.startswith("auto: ")]
        self.assertEqual(len(lines), 1)
        self.assertIn("--moment 2+3:dmy+time", lines[0])
        self.assertNotIn("auto: ", self.succeed("convert", self.path("in.csv"), "--auto", "-q").err)

    def test_has_the_score_with_its_parts(self):
        best = self.advice(MIXED)["readings"][0]
        self.assertAlmostEqual(best["score"], sum(part["points"] for part in best["parts"]))
        self.assertEqual(sum(part["most"] for part in best["parts"]), 100)

    def test_a_refusal_names_the_advised_command(self):
        refused = self.run_tool("convert", self.file("in.csv", MIXED.replace(",9:30,", ",9 o'clock,").replace(".01.2020", ".Jan.2020 9:30:00 AM")))
        self.assertEqual(refused.status, 1)
        line = next(line for line in refused.err.splitlines() if line.startswith("  advised: "))
        self.succeed(*shlex.split(line.split("advised: ")[1])[1:])


class Doubt(ToolTest):
    def test_nothing_is_written_where_nothing_tells_day_from_month(self):
        path = self.file("in.csv", UNDECIDED)
        refused = self.run_tool("convert", path, "--auto", "-o", self.path("out.csv"))
        self.assertEqual(refused.status, 1)
        self.assertFalse(os.path.exists(self.path("out.csv")))
        for text in ("'02/03/2010' in line 2", "day first: tabulex convert", "month first: tabulex convert"):
            self.assertIn(text, refused.err)

    def test_a_preference_decides(self):
        path = self.file("in.csv", UNDECIDED)
        for prefer, day in (("day-first", "2010-03-02"), ("month-first", "2010-02-03")):
            rows = self.succeed("convert", path, "--auto", "--prefer", prefer).rows()
            self.assertEqual(rows[1][0], day)

    def test_no_preference_goes_against_the_file(self):
        path = self.file("in.csv", UNDECIDED + "25/03/2010,1,2,0,1\n")
        rows = self.succeed("convert", path, "--auto", "--prefer", "month-first").rows()
        self.assertEqual(rows[1][0], "2010-03-02")

    def test_another_symbol_of_the_row_is_told(self):
        done = self.succeed("convert", self.file("in.csv", WIDE), "--auto")
        self.assertRegex(done.err, r"(?m)^warning: .*2 groups of prices")
        self.assertEqual(done.rows()[1][1:], ["2020-01-02", "2", "4", "1", "3"])
        report = self.run_tool("inspect", self.path("in.csv")).out
        self.assertIn("the columns of 'eth'", report)

    def test_a_file_without_dates_is_refused_with_the_cause(self):
        for text, cause in (("Open,Close\n1.5,2.5\n2.5,3.5\n", "no column holds a date"),
                            ("9:30,1.5\n9:31,1.6\n", "name the day of the file by --date"),
                            ("words without a table\n", "no divider cuts the lines into columns")):
            refused = self.run_tool("convert", self.file("in.csv", text), "--auto")
            self.assertEqual(refused.status, 1, text)
            self.assertIn(cause, refused.err)


if __name__ == "__main__":
    unittest.main()
