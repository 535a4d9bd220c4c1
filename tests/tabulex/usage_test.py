"""The command line: help, version, misspelt words, wrong usage."""
import unittest

from tool import ToolTest

COMMANDS = ["inspect", "convert", "import", "preview", "check", "raw", "symbols", "environment",
            "template"]


class Help(ToolTest):
    def test_starts_with_two_examples_and_ends_with_the_statuses(self):
        for command in [[]] + [[c] for c in COMMANDS]:
            for option in ("--help", "-h"):
                with self.subTest((command, option)):
                    result = self.succeed(*command, option)
                    lines = result.out.splitlines()
                    self.assertEqual(lines[0], "Examples:")
                    for line in lines[1:3]:
                        self.assertTrue(line.startswith("  tabulex "), line)
                    self.assertIn("130  interrupted", lines[-1])
                    self.assertEqual(result.err, "")

    def test_examples_are_understood(self):
        for command in COMMANDS:
            for line in self.succeed(command, "--help").out.splitlines()[1:3]:
                self.assertEqual(line.split()[:2], ["tabulex", command])

    def test_fits_a_terminal(self):
        for command in [[]] + [[c] for c in COMMANDS]:
            for line in self.succeed(*command, "--help").out.splitlines():
                self.assertLessEqual(len(line), 90, line)

    def test_lists_every_command(self):
        out = self.succeed("--help").out
        for command in COMMANDS:
            self.assertIn(f"\n  {command} ", out)

    def test_the_version_is_printed(self):
        self.assertRegex(self.succeed("--version").out, r"^tabulex \d+\.\d+\.\d+\n$")


class WrongUsage(ToolTest):
    def test_is_reported_with_a_next_step(self):
        cases = [([], "a command is needed", "--help"),
                 (["inspct", "x"], "did you mean 'inspect'?", "--help"),
                 (["covnert", "x"], "did you mean 'convert'?", "--help"),
                 (["frobnicate"], "there is no command 'frobnicate'", "--help"),
                 (["inspect", "--jsno", "x"], "did you mean '--json'?", "inspect --help"),
                 (["convert", "--form", "csv", "x"], "did you mean '--format'?", "convert --help"),
                 (["convert", "--dryrun", "x"], "did you mean '--dry-run'?", "convert --help"),
                 (["convert", "--max-eror=3", "x"], "did you mean '--max-errors'?",
                  "convert --help"),
                 (["convert", "-z", "x"], "there is no option '-z'", "convert --help"),
                 (["convert"], "FILE is required", "convert --help"),
                 (["convert", "x", "--format", "jsnl"], "did you mean 'jsonl'?", "convert --help"),
                 (["convert", "x", "--on-error", "ignore"], "is not one of ask, skip, stop",
                  "convert --help"),
                 (["convert", "x", "--max-errors", "-1"], "is not a whole number",
                  "convert --help"),
                 (["convert", "x", "--size", "0"], "is not a whole number", "convert --help"),
                 (["convert", "x", "--dividers", "x"], "is not made of the dividers",
                  "convert --help"),
                 (["convert", "x", "y", "-o", "z"], "several are given", "convert --help"),
                 (["convert", "x", "-o"], "--output needs a value: OUT", "convert --help"),
                 (["convert", "x", "--symbol", ""], "--symbol: '' is not a name", "convert --help"),
                 (["convert", "x", "--size", "1", "--size", "2"], "--size may be given once only",
                  "convert --help"),
                 (["convert", "x", "--quiet=x"], "--quiet takes no value", "convert --help"),
                 (["convert", "x", "--rejects", "-"], "needs a file of its own", "convert --help"),
                 (["preview", "x", "y"], "y", "preview --help"),
                 (["inspect", "x", "--color", "red"], "is not one of auto, always, never",
                  "inspect --help"),
                 (["inspect", "x", "--lang", "fr"], "is not one of zh, en", "inspect --help"),
                 (["template", "Date", "*y"], "TEXT is required", "template --help")]
        for args, message, way in cases:
            with self.subTest(args):
                result = self.fail_with(2, *args)
                self.assertEqual(result.out, "")
                self.assertTrue(result.err.startswith("tabulex: "), result.err)
                self.assertIn(message, result.err)
                self.assertTrue(result.err.endswith(f"{way}'.\n"), result.err)

    def test_a_bad_value_is_reported_with_its_option_and_what_is_allowed(self):
        path = self.sample("week.csv")
        cases = [(["--lang", "e"], 2, "--lang: 'e' is not one of zh, en; did you mean 'en'?"),
                 (["--encoding", "gbkk"], 2, "--encoding: there is no encoding 'gbkk'; did you mean"
                  " 'gbk'?"),
                 (["--encoding", "42"], 2, "--encoding: there is no encoding '42'; use a name such as"),
                 (["--offer", "x=Days"], 2, "--offer: 'x=Days' is not of the form id=name"),
                 (["--offer", "4=Days,5=Days"], 1, "--offer: 'Days' is offered twice"),
                 (["--color", "nevr"], 2, "--color: 'nevr' is not one of auto, always, never; did you"
                  " mean 'never'?"),
                 (["--report-log", self.path("no/log")], 3, "--report-log: '"),
                 (["--format", "xml"], 2, "--format: 'xml' is not one of csv, jsonl, sqlite"),
                 (["--progress", "x"], 2, "--progress: 'x' is not one of auto, always, never"),
                 (["--on-error", "skp"], 2, "--on-error: 'skp' is not one of ask, skip, stop; did you"
                  " mean 'skip'?"),
                 (["--rejects", ""], 2, "--rejects: '' is not a name"),
                 (["--max-errors", "x"], 2, "--max-errors: 'x' is not a whole number from 0"),
                 (["--resolution", "Minuts"], 2, "--resolution 'Minuts' isn't offered; did you mean"
                  " 'Minutes'?"),
                 (["--resolution", "Eon"], 2, "--resolution 'Eon' isn't offered; use one of None,"
                  " Ticks, Tick Bars, Count Bars, Seconds, Minutes, Days, Weeks"),
                 (["--resolution", "Minutes|x"], 2, "the size after the '|' is a whole number from 1"),
                 (["--size", "x"], 2, "--size: 'x' is not a whole number from 1 to 2147483647"),
                 (["--dividers", "ab"], 2, "--dividers: 'ab' is not made of the dividers ':', ' ', ',',"
                  " ';', '|' and '\\t'"),
                 (["--lines-to-skip", "1000"], 1, "--lines-to-skip 1000: the file has no lines behind"),
                 (["--column", "1"], 2, "--column: '1' is not of the form N=TYPE[:TEMPLATE]"),
                 (["--column", "1=Dat"], 2, "--column: column 1: there is no field type 'Dat'; did you"
                  " mean 'Date'?"),
                 (["--column", "1=Quark"], 2, "--column: column 1: there is no field type 'Quark'; use one of"
                  " Symbol, Date, Time, Open,"),
                 (["--column", "9=Open"], 1, "--column 9: the file has 6 columns"),
                 (["--code-page", "x"], 2, "--code-page: there is no code page 'x'; use a published"),
                 (["--code-page", "999999"], 2, "--code-page: there is no code page '999999'; use a"),
                 (["--code-page", "1225"], 2, "--code-page: there is no code page '1225'; did you mean"
                  " '1252'?"),
                 (["--header", "ys"], 2, "--header: 'ys' is not one of yes, no, auto; did you mean"
                  " 'yes'?"),
                 (["--symbol-from-name", "x.csv"], 2, "--symbol-from-name: 'x.csv' is not a name"),
                 (["--symbol-from-name", "{}{}"], 2, "--symbol-from-name: '{}{}' is not a name"),
                 (["--price-multiplier", "5"], 2, "--price-multiplier: there is no multiplier '5'; use one of"
                  " 1000000, 100000,"),
                 (["--volume-multiplier", "5"], 2, "--volume-multiplier: there is no multiplier '5'; use"),
                 (["--from", "2003"], 2, "--from: '2003' is not a date YYYY-MM-DD or a date-time"),
                 (["--to", "2003-13-01"], 2, "--to: '2003-13-01' is not a date YYYY-MM-DD"),
                 (["--portion", "1"], 2, "--portion: '1' is not of the form START:COUNT")]
        for options, status, message in cases:
            with self.subTest(options):
                self.assertIn(message, self.fail_with(status, "convert", path, *options).err)

    def test_a_wrong_name_is_seen_before_any_file(self):
        for command in ("convert", "check", "preview", "symbols"):
            for option, name in (("--price-multiplier", "7"), ("--volume-multiplier", "1/7"),
                                 ("--resolution", "Hours"), ("--column", "1=Dat"),
                                 ("--code-page", "999999"), ("--encoding", "martian")):
                with self.subTest((command, option)):
                    err = self.fail_with(2, command, self.path("missing"), option, name).err
                    self.assertIn(option, err)
                    self.assertNotIn("missing", err)

    def test_general_options_may_stand_on_either_side(self):
        path = self.file("a.txt", "nothing of the kind\n")
        for args in (["--lang", "zh", "check", path], ["check", path, "--lang", "zh"],
                     ["check", "--lang=zh", path]):
            with self.subTest(args):
                self.assertIn("数据周期无效。", self.fail_with(1, *args).err)


if __name__ == "__main__":
    unittest.main()
