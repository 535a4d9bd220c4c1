"""The import dialog in a terminal: its screens, keys, ways out, and what comes of it."""
import os
import signal
import stat
import subprocess
import unittest

from terminal import Terminal
from tool import SAMPLES, TOOL, ToolTest, environment, expected_rows, minutes_text

BORDER = "+" + "-" * 98 + "+"


class ImportTest(ToolTest):
    def open(self, *args, columns=100, rows=30, **changes):
        env = environment(**{"TERM": "xterm-256color", **changes})
        terminal = Terminal([*TOOL, "import", *args], columns, rows, env, self.folder)
        self.addCleanup(terminal.close)
        return terminal

    def open_file(self, name, *args, **options):
        terminal = self.open(self.sample(name), *args, **options)
        terminal.wait_for("record 1 of")
        return terminal

    def finish(self, terminal, status, *keys):
        terminal.send(*keys)
        self.assertEqual(terminal.end(), status, terminal.text())
        return terminal.after()

    def command_of(self, terminal, *keys):
        """The command line that the tool prints after the dialog."""
        lines = [line for line in self.finish(terminal, 0, *keys).splitlines() if "tabulex" in line]
        self.assertEqual(len(lines), 1, lines)
        return lines[0][lines[0].index("tabulex convert"):]

    def rows_of(self, command):
        """What the printed command delivers, by a shell."""
        done = subprocess.run(["bash", "-c", command.replace("tabulex", TOOL[0], 1) + " -q"],
                              stdout=subprocess.PIPE, stderr=subprocess.PIPE, env=environment(),
                              cwd=self.folder, timeout=60)
        self.assertEqual(done.returncode, 0, done.stderr.decode())
        return done.stdout.decode()


class Screens(ImportTest):
    def test_of_a_file_at_100_by_30(self):
        terminal = self.open_file("minute-5.csv")
        lines = terminal.lines()
        self.assertEqual(lines[0], " TabulexConverter - import" + " " * 66 + "F1 help")
        self.assertTrue(lines[1].startswith("+-1 "), lines[1])
        self.assertTrue(lines[2].startswith("|   ../"), lines[2])
        self.assertTrue(lines[3].startswith("| > minute-5.csv"), lines[3])
        self.assertEqual(lines[9:13], [
            "|       1  Date,Time,Open,High,Low,Close,Volume" + " " * 52 + "|",
            "|       2  2003/01/13,09:30:00,133.54,134.30,133.44,133.98,477114" + " " * 34 + "|",
            "|       3  2003/01/13,09:35:00,133.98,134.56,133.94,134.36,839805" + " " * 34 + "|",
            "|       4  2003/01/13,09:40:00,134.36,134.57,133.77,134.24,747848" + " " * 34 + "|"])
        self.assertEqual(lines[15:19], [
            "| Period: [    5]  [Minutes      v]  Fields: [           v]  Time zone: [           v]"
            "             |",
            "| Start row: [      2]  Price multiplier: [1         v]  Volume multiplier: [1         v]"
            "          |",
            "| Start date: [2003-01-13 09:30:00]  End date: [2003-01-13 12:45:00]  [ Delimiters... ]"
            "            |",
            "| [ ] Use end time of bars" + " " * 73 + "|"])
        self.assertTrue(lines[19].endswith(" # = will be imported  record 1 of 40 -+"), lines[19])
        self.assertEqual(lines[20].split(), ["|", "Date", "v", "Time", "v", "Open", "v", "High",
                                             "v", "Low", "v", "Close", "v", "Volume", "v", "|"])
        self.assertEqual(lines[21].split(), ["|", "#", "1", "1/13/2003", "9:30:00", "AM", "133.54",
                                             "134.3", "133.44", "133.98", "477114", "|"])
        self.assertEqual(lines[27], BORDER)
        self.assertEqual(lines[28:], ["", " Ready. F10 checks the settings and imports.",
                                      " Tab 1-4 pane  Arrows move  Enter choose  h column menu"
                                      "  g record           F10 import   Esc cancel"][1:])

    def test_of_a_file_at_80_by_24_leave_the_folder_out(self):
        terminal = self.open_file("tick.csv", columns=80, rows=24)
        lines = terminal.lines()
        self.assertTrue(lines[1].startswith("+-2 "), lines[1])
        self.assertEqual([line[:3] for line in lines if line.startswith("+-")][:3],
                         ["+-2", "+-3", "+-4"])
        self.assertTrue(all(len(line) <= 80 for line in lines))
        self.assertIn("[2003-01-13 09:30:00]", terminal.text())
        self.assertTrue(lines[22].startswith(" Ready."), lines[22])

    def test_follow_the_size(self):
        terminal = self.open_file("minute-5.csv")
        for columns, rows in ((80, 24), (140, 40), (60, 20), (100, 30)):
            with self.subTest((columns, rows)):
                terminal.resize(columns, rows)
                terminal.settle()
                lines = terminal.lines()
                self.assertTrue(lines[rows - 2].startswith(" Ready."), terminal.text())
                self.assertEqual(lines[rows - 3], "+" + "-" * (columns - 2) + "+")

    def test_of_a_tiny_terminal_are_a_sentence(self):
        terminal = self.open_file("minute-5.csv")
        terminal.resize(20, 5)
        terminal.settle()
        self.assertEqual(" ".join(terminal.text().split()),
                         "The import dialog needs 60 columns and 20 rows; enlarge the terminal, or"
                         " press Esc.")
        terminal.send("f10", "h", "4")
        terminal.resize(100, 30)
        terminal.settle()
        self.assertIn("record 1 of 40", terminal.text())
        terminal.resize(20, 5)
        terminal.settle()
        self.finish(terminal, 1, "escape")

    def test_start_on_a_tiny_terminal(self):
        terminal = self.open(self.sample("week.csv"), columns=20, rows=5)
        terminal.wait_for("Esc.")
        self.finish(terminal, 1, "escape")

    def test_have_no_colours_where_none_are_wanted(self):
        for options, coloured in (((), True), (("--color", "never"), False)):
            with self.subTest(options):
                terminal = self.open_file("week.csv", *options)
                self.assertEqual(b"\x1b[30;46m" in terminal.raw or b"[46m" in terminal.raw or
                                 b";46m" in terminal.raw, coloured)
        terminal = self.open_file("week.csv", NO_COLOR="1")
        self.assertNotIn(b"46m", terminal.raw)
        terminal = self.open(self.sample("week.csv"), TERM="vt100")
        terminal.settle()
        self.assertNotIn(b"46m", terminal.raw)

    def test_are_chinese_where_the_user_reads_it(self):
        terminal = self.open(self.sample("week.csv"), "--lang", "zh")
        terminal.wait_for("就")
        text = "".join(terminal.text().split())
        for part in ("周期：", "价格倍数：", "F10导入", "文件语系："):
            self.assertIn(part, text)
        # Wide characters take two cells each, so the right border stands in its column.
        for line in terminal.screen.display[1:26]:
            self.assertIn(line[-1], "|+-")


class Folders(ImportTest):
    def test_files_are_chosen_by_keys(self):
        os.mkdir(self.path("archive"))
        SAMPLES["week.csv"].write(self.path("archive"))
        terminal = self.open(self.folder)
        terminal.wait_for("archive/")
        self.assertIn("Choose a file", terminal.text())
        terminal.send("down", "enter")
        terminal.wait_for("week.csv")
        terminal.send("down", "enter")
        terminal.wait_for("record 1 of")
        self.assertIn("[Weeks", terminal.text())
        terminal.send("1", "backspace")
        terminal.wait_for("> archive/")
        self.finish(terminal, 1, "escape")

    def test_a_file_that_has_gone_is_not_imported(self):
        SAMPLES["minute-5.csv"].write(self.folder)
        gone = os.path.join(self.folder, "week.csv")
        SAMPLES["week.csv"].write(self.folder)
        terminal = self.open(self.folder)
        terminal.wait_for("week.csv")
        terminal.send("down", "enter")
        terminal.wait_for("record 1 of")
        os.remove(gone)
        terminal.send("1", "down", "enter")
        terminal.settle()
        self.assertIn("can't be opened", self.finish(terminal, 3, "f10"))

    def test_details_have_size_and_time(self):
        path = self.file("quotes.csv", b"x" * 2500)
        os.utime(path, (0, 1577880000))  # 2020-01-01 12:00 UTC
        terminal = self.open(self.folder, TZ="UTC")
        terminal.wait_for("quotes.csv")
        self.assertNotIn("KB", terminal.text())
        terminal.send("v")
        self.assertRegex(terminal.text(), r"quotes\.csv +2\.4 KB +2020-01-01 12:00")
        terminal.send("v")
        self.assertNotIn("KB", terminal.text())

    def test_names_are_written_out(self):
        for name in (b"a\x1b[2Jb.csv", b"bad\xff.csv", "股票.csv".encode()):
            with open(os.path.join(os.fsencode(self.folder), name), "wb") as f:
                f.write(b"x\n")
        terminal = self.open(self.folder)
        terminal.wait_for("a\\x1B[2Jb.csv")
        self.assertIn("bad\\xFF.csv", terminal.text())
        self.assertIn("股票.csv", terminal.text().replace(" ", ""))

    def test_the_current_folder_is_the_first_one(self):
        self.sample("week.csv")
        terminal = self.open()
        terminal.wait_for("week.csv")

    @unittest.skipIf(os.geteuid() == 0, "nothing is closed to root")
    def test_without_rights_stay_closed(self):
        os.mkdir(self.path("locked"), 0)
        self.addCleanup(os.chmod, self.path("locked"), stat.S_IRWXU)
        result = self.fail_with(3, "import", self.path("locked"))
        self.assertIn("can't be read", result.err)
        terminal = self.open(self.folder)
        terminal.wait_for("locked/")
        terminal.send("down", "enter")
        self.assertIn("'locked' can't be opened.", terminal.text())


class Settings(ImportTest):
    def test_printed_command_gives_the_same(self):
        for name in ("week.csv", "descending.csv", "preamble.csv", "symbols.csv"):
            with self.subTest(name):
                terminal = self.open_file(name)
                command = self.command_of(terminal, "f10")
                self.assertEqual(command, f"tabulex convert {self.path(name)}")

    def test_lines_are_made_clean_by_a_recipe(self):
        lines = [f"{day}.03.2023;1,5;3;1;2" for day in range(10, 30)]
        file = self.file("in.csv", "\n".join(lines) + "\n")
        options = ["--decimal", "comma", "--moment", "1:dmy", "--take", "2=Open", "--take", "3=High",
                   "--take", "4=Low", "--take", "5=Close"]
        terminal = self.open(file, *options)
        terminal.wait_for("record 1 of 20")
        command = self.command_of(terminal, "f10")
        self.assertTrue(command.startswith(f"tabulex convert {file} {' '.join(options)}"), command)
        self.assertEqual(self.rows_of(command), self.succeed("convert", file, *options).out)

    def test_a_column_is_changed_in_its_menu(self):
        terminal = self.open_file("minute-5.csv")
        terminal.send("4", *["right"] * 6, "h")
        self.assertIn("Undefined", terminal.text())
        terminal.send("home", "enter")
        terminal.settle()
        command = self.command_of(terminal, "f10")
        self.assertIn("--column 7=none", command)
        header = self.rows_of(command).splitlines()[0]
        self.assertEqual(header, "Date,Time,Open,High,Low,Close")

    def test_the_range_is_typed_and_tinted(self):
        terminal = self.open_file("minute-5.csv")
        terminal.send("3", *["tab"] * 7)
        for digit in "20030113100000":
            terminal.send(digit)
        terminal.settle()
        terminal.send("tab", "tab", "4", "pagedown")
        rows = [line for line in terminal.lines() if "1/13/2003" in line]
        for line in rows:
            self.assertEqual(line.startswith("| #"), "9:" not in line.split("2003")[1], line)
        self.assertTrue(any(" 10:00:00 AM" in line for line in rows), terminal.text())
        command = self.command_of(terminal, "f10")
        self.assertIn("--from 2003-01-13T10:00:00", command)
        self.assertEqual(len(self.rows_of(command).splitlines()), 1 + 40 - 6)

    def test_a_date_that_a_type_takes_away_is_told_by_the_check(self):
        terminal = self.open_file("minute-5.csv")
        terminal.send("4", "h", "end", "enter", "f10")
        terminal.settle()
        self.assertIn("invalid", terminal.lines()[28])
        self.finish(terminal, 1, "escape")

    def test_a_file_without_a_layout_says_what_is_missing(self):
        for content in (b"Dear reader,\nthis is no quote file\n" * 30, b"", bytes(range(256)) * 99):
            terminal = self.open(self.file("odd.txt", content))
            terminal.wait_for("No dates are found")
            terminal.send("f10")
            terminal.wait_for("invalid")
            terminal.send("4", "h", "escape")
            self.finish(terminal, 1, "escape")

    def test_dividers_are_boxes(self):
        terminal = self.open_file("minute-5.csv")
        terminal.send("f4")
        terminal.wait_for("[x]  ,")
        self.assertIn("Field delimiters:", terminal.text())
        terminal.send("escape")
        self.assertNotIn("[x]  ,", terminal.text())
        self.finish(terminal, 1, "escape")

    def test_the_menu_says_what_a_date_costs(self):
        terminal = self.open_file("minute-5.csv")
        terminal.send("4", "h")
        terminal.wait_for("types chosen before are lost")
        terminal.send("escape")
        self.assertNotIn("types chosen before", terminal.text())

    def test_templates_are_kept_in_the_environment(self):
        terminal = self.open(self.sample("minute-5.csv"), "--environment",
                             self.file("mine.env", "<ENVIRONMENT></ENVIRONMENT>"),
                             "--save-environment")
        terminal.wait_for("record 1 of")
        terminal.send("4", "h", "enter", "end", "enter")
        terminal.wait_for("Edit template")
        for key in "yyyy/mm/dd":
            terminal.send(key)
        terminal.send("enter")
        terminal.settle()
        self.assertIn("Ready", terminal.text())
        self.finish(terminal, 0, "f10")
        self.assertIn("yyyy/mm/dd", self.read("mine.env"))


class Conversions(ImportTest):
    def test_write_the_rows(self):
        for name in ("week.csv", "minute-5.csv", "descending.csv"):
            with self.subTest(name):
                terminal = self.open_file(name, "-o", self.path("out.csv"))
                after = self.finish(terminal, 0, "f10")
                self.assertIn("result=commit", after)
                with open(self.path("out.csv"), encoding="utf-8") as f:
                    header = f.readline().strip().split(",")
                    count = sum(1 for _ in f)
                expected = expected_rows(SAMPLES[name])
                self.assertEqual((header, count), (expected[0], len(expected) - 1))

    def test_to_standard_output_come_after_the_screen(self):
        terminal = self.open_file("week.csv", "-o", "-", "-q")
        after = self.finish(terminal, 0, "f10")
        self.assertIn("Date,Open,High,Low,Close", after)

    def test_ask_about_bad_lines_in_the_box(self):
        terminal = self.open_file("junk.csv", "-o", self.path("out.csv"))
        terminal.send("f10")
        terminal.wait_for("s skip   a skip all   c cancel")
        self.assertRegex(terminal.text(), r"Line \d+")
        after = self.finish(terminal, 0, "a")
        self.assertIn("result=commit", after)
        self.assertTrue(os.path.exists(self.path("out.csv")))

    def test_are_cancelled_from_the_box(self):
        terminal = self.open_file("junk.csv", "-o", self.path("out.csv"))
        terminal.send("f10")
        terminal.wait_for("s skip   a skip all   c cancel")
        after = self.finish(terminal, 1, "c")
        self.assertIn("result=rollback", after)
        self.assertFalse(os.path.exists(self.path("out.csv")))

    def test_on_the_way_are_cancelled_by_esc(self):
        terminal = self.open(self.file("big.csv", minutes_text(400_000)), "-o",
                             self.path("out.csv"))
        terminal.wait_for("record 1 of", 60)
        os.write(terminal.main, b"\x1b[21~")
        terminal.wait_for("Records: ", 60, settle=False)
        os.write(terminal.main, b"\x1b")
        self.assertEqual(terminal.end(60), 1)
        self.assertIn("result=rollback", terminal.after())
        self.assert_entries("big.csv")

    def test_of_a_file_that_grew_meanwhile_are_rolled_back(self):
        path = self.sample("minute-5.csv")
        terminal = self.open(path, "-o", self.path("out.csv"))
        terminal.wait_for("record 1 of")
        with open(path, "a", encoding="ascii") as f:
            f.write("2003/01/13,14:00:00,1,2,1,2,3\n")
        terminal.send("4", "pagedown")
        self.assertIn("the file grew", self.finish(terminal, 1, "f10"))
        self.assertFalse(os.path.exists(self.path("out.csv")))

    def test_of_a_file_that_was_removed_meanwhile_are_whole(self):
        path = self.sample("minute-5.csv")
        terminal = self.open(path, "-o", self.path("out.csv"))
        terminal.wait_for("record 1 of")
        os.remove(path)
        terminal.send("4", "pagedown")
        self.assertIn("delivered=40", self.finish(terminal, 0, "f10"))

    def test_never_replace_the_file_that_is_read(self):
        path = self.sample("week.csv")
        terminal = self.open(path, "-o", path)
        terminal.wait_for("record 1 of")
        self.assertIn("would replace a file that is read", self.finish(terminal, 2, "f10"))


class WaysOut(ImportTest):
    def test_cancel_with_status_1(self):
        for key in ("escape", "ctrl-c"):
            with self.subTest(key):
                terminal = self.open_file("week.csv")
                after = self.finish(terminal, 1, key)
                self.assertNotIn("tabulex", after)
                self.assertIn(b"\x1b[?1049l", terminal.raw)

    def test_restore_the_terminal(self):
        script = 'stty -a > before; "$@"; stty -a > after; cmp before after && echo the same'
        for keys in (["f10"], ["escape"]):
            with self.subTest(keys):
                terminal = Terminal(["sh", "-c", script, "sh", *TOOL, "import",
                                     self.sample("week.csv")], 100, 30,
                                    environment(TERM="xterm-256color"), self.folder)
                self.addCleanup(terminal.close)
                terminal.wait_for("record 1 of")
                self.assertIn("the same", self.finish(terminal, 0, *keys))

    def test_a_request_to_terminate_ends_it(self):
        terminal = self.open_file("week.csv")
        os.kill(terminal.pid, signal.SIGTERM)
        self.assertEqual(terminal.end(), 143)
        self.assertIn(b"\x1b[?1049l", terminal.raw)

    def test_a_terminal_that_goes_cancels(self):
        terminal = self.open_file("week.csv", "-o", self.path("out.csv"))
        terminal.hang_up()
        self.assertEqual(terminal.end(), 129)
        self.assertFalse(os.path.exists(self.path("out.csv")))

    def test_without_a_terminal_there_is_no_dialog(self):
        result = self.fail_with(2, "import", self.sample("week.csv"))
        self.assertIn("needs a terminal", result.err)
        self.assertEqual(result.out, "")

    def test_an_unknown_terminal_is_named(self):
        # The terminal's library forgets some memory then, and the process ends.
        terminal = self.open(self.sample("week.csv"), TERM="no-such-terminal",
                             ASAN_OPTIONS="detect_leaks=0")
        self.assertEqual(terminal.end(), 2)
        self.assertIn("'no-such-terminal' isn't known", terminal.raw.decode())

    def test_a_file_that_is_not_there_is_named(self):
        result = self.fail_with(3, "import", self.path("none.csv"))
        self.assertIn("No such file", result.err)


if __name__ == "__main__":
    unittest.main()
