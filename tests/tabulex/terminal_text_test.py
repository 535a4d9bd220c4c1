"""What a terminal is given: nothing of a file acts on it, and columns stand in line. A pipe gets
the same as it is."""
import datetime as dt
import fcntl
import json
import os
import pty
import re
import select
import struct
import subprocess
import termios
import unittest

from tool import TOOL, ToolTest, environment

# What moves a cursor, changes colours, rings, or turns the direction of a text around.
EVIL = {"\x1bc": "^[c", "\x1b#8": "^[#8", "\x07": "^G", "\x08": "^H", "\x7f": "^?", "\x9b2J": r"\x9B2J",
        "\u202e": r"\u{202E}", "\u2066": r"\u{2066}"}
SYMBOLS = [f"A{text}B" for text in EVIL]
SHOWN = [f"A{text}B" for text in EVIL.values()]
UTF8 = ["--encoding", "utf-8"]


def quotes(symbols, bad=""):
    start = dt.date(2003, 1, 1)
    lines = [f"{symbol},{start + dt.timedelta(i):%Y/%m/%d},1,2,0.5,1.5,{100 + i}"
             for i, symbol in enumerate(symbols)]
    return "\n".join(["Symbol,Date,Open,High,Low,Close,Volume", *lines[:120], *([bad] if bad else []),
                      *lines[120:]]) + "\n"


class TerminalTest(ToolTest):
    def on_terminal(self, *command, columns=200, streams=("stdout", "stderr"), status=0, **changes):
        """What a terminal of that width is given by the streams; line ends are newlines."""
        main, terminal = pty.openpty()
        fcntl.ioctl(terminal, termios.TIOCSWINSZ, struct.pack("HHHH", 50, columns, 0, 0))
        others = {name: subprocess.DEVNULL for name in ("stdout", "stderr") if name not in streams}
        tool = subprocess.Popen([*TOOL, *command], stdin=subprocess.DEVNULL,
                                env=environment(**changes), **{name: terminal for name in streams}, **others)
        os.close(terminal)
        data = b""
        while select.select([main], [], [], 60)[0]:
            try:
                piece = os.read(main, 65536)
            except OSError:
                break
            data += piece
        os.close(main)
        self.assertEqual(tool.wait(60), status, data)
        return data.decode().replace("\r\n", "\n")


class ControlCharacters(TerminalTest):
    def assert_harmless(self, text):
        self.assertNotRegex(text, "[\x00-\x08\x0b-\x1f\x7f-\x9f\u061c\u200b-\u200f\u2028-\u202e\u2066-\u2069]")

    def test_of_results_are_shown_and_do_nothing(self):
        path = self.file("evil.csv", quotes(SYMBOLS))
        for command in (["preview"], ["symbols"], ["raw"], ["raw", "--last"], ["convert"], ["inspect"],
                        ["inspect", "--json"], ["convert", "-o", "/dev/stdout"],
                        ["convert", "--format", "jsonl"]):
            with self.subTest(command):
                text = self.on_terminal(*command, path, *UTF8, "--color=never")
                self.assert_harmless(text)
                if "json" not in command[-1] and command[0] != "inspect" and "--last" not in command:
                    for shown in SHOWN:
                        self.assertIn(shown, text)

    def test_of_bold_text_are_no_exception(self):
        path = self.file("evil.csv", quotes(["A\x1b[1mB"] * 5))
        for command in ("raw", "preview", "symbols"):
            self.assert_harmless(self.on_terminal(command, path, *UTF8, "--color=never"))

    def test_go_into_pipes_as_they_are(self):
        path = self.file("evil.csv", quotes(SYMBOLS))
        self.assertEqual(self.succeed("symbols", path, *UTF8).out, "".join(s + "\n" for s in SYMBOLS))
        self.assertEqual(self.succeed("raw", path, *UTF8).out, quotes(SYMBOLS))
        out = self.succeed("preview", path, *UTF8).out
        out += self.succeed("convert", path, *UTF8).out
        for symbol in SYMBOLS:
            self.assertEqual(out.count(symbol), 2)

    def test_of_bad_lines_are_shown_and_do_nothing(self):
        bad = "A,2003/04/30,1,2,\x1b#8owned\x07\u202e,1.5,3"
        path = self.file("evil\x1b[7m.csv", quotes(["ABC"] * 150, bad))
        text = self.on_terminal("convert", path, *UTF8, "-o", self.path("out.csv"), "--color=never")
        self.assert_harmless(text)
        self.assertIn("evil^[[7m.csv:122: ", text)
        self.assertIn("^[#8owned^G", text)
        self.assertIn("\x1b#8owned", self.succeed("convert", path, *UTF8, "-n", "--on-error=skip").err)

    def test_of_reports_are_numbers(self):
        path = self.file("evil.csv", quotes(["ABC"] * 150, "A,2003/04/30,1,2,\x1b#8\x7f\x9b\u202e\U0001f4c8,1.5,3"))
        report = self.on_terminal("convert", path, *UTF8, "-n", "--report", "-", streams=("stdout",))
        self.assert_harmless(report)
        self.assertEqual(json.loads(report)["bad_lines"][0]["text"].split(",")[4],
                         "\x1b#8\x7f\x9b\u202e\U0001f4c8")

    def test_of_rejects_are_shown_and_do_nothing(self):
        bad = "A,2003/04/30,1,2,\x1b[2J,1.5,3"
        path = self.file("evil.csv", quotes(["ABC"] * 150, bad))
        text = self.on_terminal("convert", path, *UTF8, "-o", self.path("out.csv"), "--rejects", "/dev/stderr",
                                "--color=never")
        self.assert_harmless(text)

    def test_of_names_are_shown_and_do_nothing(self):
        name = "no\x1b[31m\u202e.csv"
        for command in ("convert", "inspect", "raw"):
            text = self.on_terminal(command, self.path(name), status=3, streams=("stderr",), **{"NO_COLOR": "1"})
            self.assert_harmless(text)
            self.assertIn(r"no^[[31m\u{202E}.csv", text)
        text = self.on_terminal("convert", "--no\x1b[31m", status=2)
        self.assert_harmless(text)

    def test_of_the_tool_itself_stay(self):
        path = self.file("evil.csv", quotes(SYMBOLS))
        text = self.on_terminal("preview", path, *UTF8, "--color=always")
        self.assertTrue(re.match("\x1b\\[1m *#.*\x1b\\[0m\n", text), text)


class Tables(TerminalTest):
    def test_are_in_line_whatever_the_characters(self):
        """A combining mark takes no cell, a pictograph two."""
        symbols = ["plain", "e\u0301e\u0301", "\u80a1\u7968", "\U0001f4c8\U0001f680"]
        cells = [5, 2, 4, 4]
        lines = self.succeed("preview", self.file("a.csv", quotes(symbols)), *UTF8).out.splitlines()[1:]
        for line, symbol, width in zip(lines, symbols, cells):
            self.assertIn(symbol + " " * (6 - width) + "  2003-01-", line)

    def test_are_in_line_on_a_terminal(self):
        text = self.on_terminal("preview", self.file("a.csv", quotes(SYMBOLS)), *UTF8, "--color=never")
        places = {line.index("2003-01-") for line in text.splitlines()[1:]}
        self.assertEqual(len(places), 1, text)


class Widths(TerminalTest):
    def test_of_help_are_those_of_the_terminal(self):
        longest = {}
        for columns in (40, 60, 80, 100, 160):
            for command in ([], ["convert"]):
                lines = self.on_terminal(*command, "--help", columns=columns).splitlines()
                longest[columns] = max(len(line) for line in lines if not line.startswith("  tabulex "))
                if columns >= 80:
                    self.assertLess(longest[columns], columns)
        self.assertGreater(longest[160], longest[80] + 20)
        self.assertLess(longest[60], longest[80])

    def test_of_help_are_80_columns_elsewhere(self):
        for command in ([], ["convert"], ["inspect"]):
            for line in self.succeed(*command, "--help").out.splitlines():
                self.assertLess(len(line), 80, line)

    def test_of_progress_are_those_of_the_terminal(self):
        path = self.file("a.csv", quotes(["ABC"] * 20))
        for columns, bar in ((80, 8), (100, 28), (160, 88)):
            text = self.on_terminal("convert", "-n", path, "--progress=always", columns=columns,
                                    streams=("stderr",))
            self.assertEqual([len(found) for found in re.findall(r"\[([#.]*)\] 100%", text)], [bar])
        text = self.on_terminal("convert", "-n", path, "--progress=always", columns=30, streams=("stderr",))
        self.assertTrue(all(len(line) < 30 for line in re.split("[\r\n]", text) if line.startswith("[")), text)


if __name__ == "__main__":
    unittest.main()
