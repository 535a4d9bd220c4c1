"""Bad lines: how they are reported, kept, allowed or refused, and asked about."""
import csv
import os
import pty
import select
import subprocess
import time
import unittest

from tool import SAMPLES, TOOL, ToolTest, environment, expected_rows

HEADER = ["file", "line", "field", "column", "text", "message"]


def unreadable(text, template="*y/*m/*d"):
    return f' "{text}" can\'t be parsed with the template "{template}".'


class Messages(ToolTest):
    def test_name_file_line_and_field(self):
        path = self.sample("junk.csv")
        err = self.succeed("convert", path).err.splitlines()
        self.assertEqual(err[:-2],
                         [f"{path}:105: field 1: {unreadable('junk line')}",
                          f"{path}:110: The time or date runs backwards.",
                          f"{path}:126: field 1: {unreadable('--- end of page ---')}"])

    def test_name_each_bad_field(self):
        lines = [x for x in SAMPLES["junk.csv"].lines() if x not in SAMPLES["junk.csv"].junk.values()]
        high = lines[109].split(",")[2]
        lines[109] = lines[109].replace(high, "high")
        lines[111] = ",".join(lines[111].split(",")[:5] + ["12.5"])
        path = self.file("a.csv", "\n".join(lines) + "\n")
        err = self.succeed("convert", path).err.splitlines()
        self.assertEqual(err[:2], [f"{path}:110: field 3: {unreadable('high', 'float')}",
                                   f'{path}:112: field 6: Volume must be integer; "12.5" is invalid.'])

    def test_stay_one_line_each(self):
        lines = SAMPLES["junk.csv"].lines()
        lines[104] = "x"  # a line of one character is joined to the next one
        path = self.file("a.csv", "\n".join(lines) + "\n")
        err = self.succeed("convert", path).err.splitlines()
        self.assertIn('"x\\n2003/', err[0])

    def test_stand_although_quiet(self):
        err = self.succeed("convert", "-q", self.sample("junk.csv")).err.splitlines()
        self.assertEqual(len(err), 3)


class Rejects(ToolTest):
    def rows_of(self, name):
        with open(self.path(name), encoding="utf-8", newline="") as f:
            return list(csv.reader(f))

    def rejects(self, name, *options):
        path = self.sample(name)
        result = self.run_tool("convert", path, "--rejects", self.path("r.csv"), *options)
        rows = self.rows_of("r.csv")
        self.assertEqual(rows[0], HEADER)
        for row in rows[1:]:
            self.assertEqual(row.pop(0), path)
        return result, rows[1:]

    def test_hold_the_line_as_it_stands_in_the_file(self):
        _, rows = self.rejects("junk.csv")
        self.assertEqual(rows, [["105", "1", "Date", "junk line", unreadable("junk line")],
                                ["110", "", "", "2003/01/30,x,1,1,1,1",
                                 "The time or date runs backwards."],
                                ["126", "1", "Date", "--- end of page ---",
                                 unreadable("--- end of page ---")]])

    def test_hold_the_right_text_however_the_line_is_numbered(self):
        _, rows = self.rejects("junk-descending.csv")
        self.assertEqual([r[3] for r in rows], ["another one", "junk line"])

    def test_of_a_portion_are_skipped_without_a_word(self):
        result, rows = self.rejects("junk.csv", "--portion", "100:20")
        self.assertEqual(rows, [])
        self.assertIn("skipped=2 ", result.summary())

    def test_are_right_in_full_batches_too(self):
        lines = SAMPLES["long.csv"].lines()
        junk = {150: "junk A", 1500: "junk B", 2400: "junk C"}
        for at, text in junk.items():
            lines.insert(at, text)
        self.file("a.csv", "\n".join(lines) + "\n")
        self.file("d.csv", "\n".join([lines[0]] + lines[:0:-1]) + "\n")
        for name in ("a.csv", "d.csv"):
            with self.subTest(name):
                self.succeed("convert", self.path(name), "--rejects", self.path("r.csv"))
                self.assertEqual([r[4] for r in self.rows_of("r.csv")[1:]], list(junk.values()))

    def test_are_kept_after_a_rollback(self):
        result, rows = self.rejects("junk.csv", "--max-errors", "1")
        self.assertEqual((result.status, len(rows)), (1, 2))

    def test_hold_the_header_alone_where_all_is_well(self):
        result, rows = self.rejects("week.csv")
        self.assertEqual((result.status, rows), (0, []))

    def test_are_written_by_a_dry_run_too(self):
        self.succeed("convert", self.sample("junk.csv"), "-n", "--rejects", self.path("r.csv"))
        self.assert_entries("junk.csv", "r.csv")


class Limits(ToolTest):
    def test_the_run_ends_at_the_first_line_beyond(self):
        for most, told, status in (("0", 1, 1), ("1", 2, 1), ("2", 3, 1), ("3", 3, 0)):
            with self.subTest(most):
                result = self.fail_with(status, "convert", self.sample("junk.csv"), "-o",
                                        self.path("out.csv"), "--max-errors", most)
                self.assertEqual(sum("junk.csv:" in line and "allows" not in line
                                     for line in result.err.splitlines()), told)
                ending = "result=commit" if status == 0 else "result=rollback"
                self.assertTrue(result.summary().endswith(ending))
                self.assertEqual(os.path.exists(self.path("out.csv")), status == 0)

    def test_stop_ends_it_at_the_first(self):
        result = self.fail_with(1, "convert", self.sample("junk.csv"), "--on-error", "stop", "-o",
                                self.path("out.csv"))
        self.assertEqual(result.summary(), "batches=0 delivered=0 skipped=0 result=rollback")
        self.assert_entries("junk.csv")


class Questions(ToolTest):
    def ask(self, answers):
        return self.run_tool("convert", self.sample("junk.csv"), "--on-error", "ask", stdin=None,
                             input=answers.encode())

    def test_each_line_is_asked_about(self):
        cases = [("s\ns\ns\n", 3, "commit"), ("a\n", 1, "commit"), ("s\nc\n", 2, "rollback"),
                 ("S\nA\n", 2, "commit"), ("what?\na\n", 2, "commit"), ("s\n", 2, "rollback"),
                 ("", 1, "rollback")]
        for answers, questions, ending in cases:
            with self.subTest(answers):
                result = self.ask(answers)
                self.assertEqual(result.err.count("skip all [a]"), questions)
                self.assertTrue(result.summary().endswith(f"result={ending}"))
                self.assertEqual(result.status, 0 if ending == "commit" else 1)

    def test_show_the_line(self):
        self.assertIn("\n  2003/01/30,x,1,1,1,1\n", self.ask("s\na\n").err)

    def test_are_not_asked_elsewhere(self):
        result = self.succeed("convert", self.sample("junk.csv"))
        self.assertNotIn("cancel", result.err)
        self.assertEqual(result.rows(), expected_rows(SAMPLES["junk.csv"]))


class QuestionsOnATerminal(ToolTest):
    def test_are_the_default_on_a_terminal(self):
        path = self.sample("junk.csv")
        main, terminal = pty.openpty()
        tool = subprocess.Popen([*TOOL, "convert", path, "-o", self.path("out.csv")],
                                stdin=terminal, stderr=terminal, env=environment())
        os.close(terminal)
        said = self.talk(main, b"a\n")
        self.assertEqual(tool.wait(60), 0)
        self.assertEqual(said.count("skip all [a]"), 1, said)
        self.assertIn("result=commit", said)

    def talk(self, main, answer):
        said, answered, deadline = b"", False, time.time() + 60
        while time.time() < deadline:
            if select.select([main], [], [], 0.2)[0]:
                try:
                    piece = os.read(main, 4096)
                except OSError:  # the other end is closed
                    break
                if not piece:
                    break
                said += piece
            if not answered and b"cancel [c]?" in said:
                os.write(main, answer)
                answered = True
        os.close(main)
        return said.decode()


if __name__ == "__main__":
    unittest.main()
