"""The manual page: complete, and formatted without warnings."""
import os
import re
import shutil
import subprocess
import unittest

from completion_test import CompletionTest, read

PAGE = os.path.join(os.environ["TABULEX_SHARE"], "man/man1/tabulex.1")
SECTIONS = ["NAME", "SYNOPSIS", "DESCRIPTION", "COMMANDS", "OPTIONS", "CONVERSIONS", "EXIT STATUS",
            "ENVIRONMENT", "FILES", "EXAMPLES", "SEE ALSO"]


class ManualPage(CompletionTest):
    def test_has_the_usual_sections(self):
        self.assertEqual(re.findall(r"^\.SH (.*)", read(PAGE), re.M), SECTIONS)

    def test_names_every_command_with_its_options(self):
        text = read(PAGE).replace("\\-", "-")
        commands = text.split(".SH COMMANDS\n")[1].split(".SH ")[0]
        parts = dict(re.findall(r"^\.SS (\w+)\n(.*?)(?=^\.SS |\Z)", commands, re.M | re.S))
        shared = text.split(".SH OPTIONS\n")[1].split(".SH ")[0]
        for takers, part in re.findall(r"^Taken by (.*?)\.\n(.*?)(?=^\.SS |\Z)", shared, re.M | re.S):
            for name in takers.split(", "):
                parts[name] += part
        for command, options in self.help_options().items():
            with self.subTest(command):
                if command:
                    told = re.findall(r"^\.TP\n(.*)", parts[command], re.M)
                    names = {word for head in told for word in re.findall(r"\\fB(--?[a-z-]+)", head)}
                    self.assertEqual(names, options)
                    self.assertIn(f"tabulex {command}", parts[command])

    def test_lists_every_exit_status(self):
        part = read(PAGE).split(".SH EXIT STATUS\n")[1].split(".SH ")[0]
        statuses = re.findall(r"^  (\d+) ", self.succeed("--help").out.split("Exit status:")[1], re.M)
        self.assertEqual(re.findall(r"^\.TP\n\\fB(\d+)", part, re.M), statuses)

    def test_is_taken_without_a_warning(self):
        tools = [["groff", "-man", "-ww", "-z", PAGE], ["mandoc", "-T", "lint", "-W", "error", PAGE],
                 ["man", "--warnings", "-E", "UTF-8", "-Tutf8", "-Z", "-l", PAGE]]
        tools = [tool for tool in tools if shutil.which(tool[0])]
        if not tools:
            self.skipTest("neither groff nor mandoc nor man")
        for tool in tools:
            with self.subTest(tool[0]):
                done = subprocess.run(tool, stdout=subprocess.DEVNULL, stderr=subprocess.PIPE,
                                      text=True, timeout=60)
                self.assertEqual((done.returncode, done.stderr), (0, ""))


if __name__ == "__main__":
    unittest.main()
