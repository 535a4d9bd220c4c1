"""The command line: help, version, near misses, wrong usage."""
import unittest

from tool import ToolTest

COMMANDS = ["inspect", "convert", "preview", "check", "raw", "template"]


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
    def test_is_told_with_a_way_out(self):
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

    def test_general_options_may_stand_on_either_side(self):
        path = self.file("a.txt", "nothing of the kind\n")
        for args in (["--lang", "zh", "check", path], ["check", path, "--lang", "zh"],
                     ["check", "--lang=zh", path]):
            with self.subTest(args):
                self.assertIn("数据周期无效。", self.fail_with(1, *args).err)


if __name__ == "__main__":
    unittest.main()
