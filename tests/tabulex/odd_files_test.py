"""Files with something odd among good rows: each row comes right, or somebody is told."""
import csv
import datetime as dt
import io
import json
import os
import random
import signal
import subprocess
import time
import unittest

from tool import TOOL, ToolTest, environment, minutes_text

HEAD = "Date,Open,High,Low,Close,Volume"


def bars(count, start=dt.date(2003, 1, 13)):
    for i in range(count):
        yield f"{start + dt.timedelta(days=i)},{10 + i / 4},{11 + i / 4},{9 + i / 4},{10.5 + i / 4},{1000 + i}"


def values(line):
    day, *numbers = line.split(",")
    return [day, *map(float, numbers)]


class OddFiles(ToolTest):
    def read_all(self, content, *options):
        """Status, rows, account and standard error of a conversion, whatever its end."""
        result = self.run_tool("convert", self.file("odd.csv", content), *options)
        rows = list(csv.reader(io.StringIO(result.out)))[1:]
        line = next((x for x in result.err.splitlines() if x.startswith("lines=")), "")
        account = {k: int(v) for k, v in (part.split("=") for part in line.split())}
        self.assertEqual(account["lines"], sum(account.values()) - account["lines"], line)
        return result.status, rows, account, result.err

    def assert_right(self, content, truth, *options):
        """All rows of the truth, and nothing else."""
        status, rows, account, err = self.read_all(content, *options)
        self.assertEqual(status, 0, err)
        self.assertEqual([[r[0], *map(float, r[1:])] for r in rows], [values(x) for x in truth])
        return account, err

    def assert_told(self, content, truth, *said):
        """No row that isn't of the truth; what is said of the others holds these texts."""
        status, rows, account, err = self.read_all(content)
        good = [values(x) for x in truth]
        for row in rows:
            self.assertIn([row[0], *map(float, row[1:])], good)
        self.assertTrue(status or "warning: " in err or account.get("bad"), err)
        for text in said:
            self.assertIn(text, err)
        return status, account

    def text(self, lines, end="\n"):
        return end.join(lines) + end

    def test_line_ends_of_every_kind(self):
        truth = list(bars(300))
        for end in ("\r", "\n\r", "\r\r\n", "\r\n"):
            with self.subTest(end=end):
                self.assert_right(self.text([HEAD, *truth], end).encode(), truth)

    def test_a_comment_in_the_middle(self):
        truth = list(bars(300))
        for comment in ("# a comment", "// a comment", "; note", "-- page 2 --"):
            with self.subTest(comment):
                lines = [HEAD, *truth[:150], comment, *truth[150:]]
                status, account = self.assert_told(self.text(lines), truth, "odd.csv:152: ")
                self.assertEqual((status, account["bad"], account["delivered"]), (0, 1, 300))

    def test_a_header_again_in_the_middle(self):
        truth = list(bars(300))
        lines = [HEAD, *truth[:150], HEAD, *truth[150:]]
        status, account = self.assert_told(self.text(lines), truth, "odd.csv:152: field 1: ")
        self.assertEqual((status, account["bad"], account["delivered"]), (0, 1, 300))

    def test_a_field_of_100_kilobytes(self):
        truth = list(bars(300))
        for at in range(6):
            with self.subTest(at):
                cells = truth[200].split(",")
                cells[at] = ("9" if at < 5 else "x") * 100_000
                lines = [HEAD, *truth[:200], ",".join(cells), *truth[201:]]
                self.assert_told(self.text(lines), truth[:200] + truth[201:],
                                 "1 line is longer than 512 bytes")

    def test_columns_that_change_their_order(self):
        truth = list(bars(300))
        turned = [",".join([c[0], c[4], c[1], c[3], c[2], c[5]])
                  for c in (x.split(",") for x in truth[150:])]
        _, _, _, err = self.read_all(self.text([HEAD, *truth[:150], *turned]))
        self.assertIn("150 of 300 rows (50 %): the high is below the low", err)

    def test_a_column_of_quoted_thousands(self):
        lines = [f'{day},{o},{h},{l},{c},"{1000 + i:,}"'
                 for i, (day, o, h, l, c, _) in enumerate(x.split(",") for x in bars(60))]
        status, rows, _, err = self.read_all(self.text([HEAD, *lines]))
        self.assertTrue(status or "warning: " in err, err)
        self.assertIn("between quotation marks", err)

    def test_millions_of_line_ends(self):
        status, rows, _, err = self.read_all("\n" * 3_000_000)
        self.assertEqual((status, rows), (1, []))

    def test_a_very_long_line_in_front_and_behind(self):
        truth = list(bars(60))
        long = "x," * (16 << 20)
        status, rows, account, err = self.read_all(self.text([HEAD, *truth, long]))
        self.assertEqual((status, rows), (1, []))
        self.assertIn("line 62 has 'x' there", err)
        status, rows, account, err = self.read_all(self.text([long, HEAD, *truth]))
        self.assertTrue(status or rows == [x.split(",") for x in truth], err)

    def test_a_file_that_is_replaced_while_it_is_read(self):
        path, new = self.file("a.csv", minutes_text(60000)), self.file("new", minutes_text(50))
        os.mkfifo(self.path("out"))
        tool = subprocess.Popen([*TOOL, "convert", path, "-o", self.path("out")], env=environment(),
                                stdin=subprocess.DEVNULL, stderr=subprocess.PIPE)
        with open(self.path("out"), "rb") as f:
            f.read(1000)
            os.replace(new, path)
            while f.read(1 << 16):
                pass
        err = tool.communicate(timeout=60)[1].decode()
        self.assertEqual(tool.returncode, 1, err)
        self.assertIn("replaced", err)


class Streams(ToolTest):
    def extra(self):
        lines = [HEAD, *bars(60)]
        lines[41] += ",7,8"
        return self.file("extra.csv", "\n".join(lines) + "\n")

    def test_get_nothing_from_a_strict_run_that_warns(self):
        for output in ([], ["-o", "/dev/stdout"]):
            result = self.fail_with(1, "convert", "--strict", self.extra(), *output)
            self.assertEqual(result.out, "")
            self.assertIn("nothing was written", result.err)
        self.assertEqual(len(self.succeed("convert", "--strict", self.sample("week.csv")).rows()), 21)

    def test_get_nothing_where_there_are_too_many_bad_lines(self):
        junk = self.sample("junk.csv")
        self.assertEqual(self.fail_with(1, "convert", "--max-errors", "2", junk).out, "")
        self.assertEqual(len(self.succeed("convert", "--max-errors", "3", junk).rows()), 131)

    def test_keep_one_header_where_the_first_file_is_held_back(self):
        result = self.run_tool("convert", "--strict", self.extra(), self.sample("week.csv"))
        self.assertEqual((result.status, len(result.rows())), (1, 21))
        self.assertEqual(result.rows()[0][:2], ["File", "Date"])

    def test_do_not_overwrite_what_is_read_through_another(self):
        path = self.extra()
        with open(path, "rb") as f:
            old = f.read()
        for mode in (">>", "1<>"):
            done = subprocess.run(["sh", "-c", f'f=$1; shift; exec "$@" <"$f" {mode}"$f"', "sh",
                                   path, *TOOL, "convert", "-"], stderr=subprocess.PIPE,
                                  env=environment(), timeout=60)
            self.assertEqual(done.returncode, 2, done.stderr)
            with open(path, "rb") as f:
                self.assertEqual(f.read(), old)

    def test_that_are_full_are_a_fault_of_the_report(self):
        result = self.fail_with(3, "convert", self.sample("week.csv"), "-o", self.path("o.csv"),
                                "--report", "/dev/full")
        self.assertIn("/dev/full", result.err)


class Signals(ToolTest):
    def test_at_any_moment_leave_all_or_nothing(self):
        path = self.file("m.csv", minutes_text(20_000))
        whole = self.succeed("convert", path).out
        began = time.monotonic()
        self.succeed("convert", path, "-o", self.path("o.csv"))
        length = time.monotonic() - began
        draw = random.Random(7)
        for _ in range(40):
            for name in ("o.csv", "r.json", "bad.csv"):
                if os.path.exists(self.path(name)):
                    os.remove(self.path(name))
            tool = subprocess.Popen([*TOOL, "convert", path, "-o", self.path("o.csv"), "--report",
                                     self.path("r.json"), "--rejects", self.path("bad.csv")],
                                    stderr=subprocess.PIPE, env=environment())
            time.sleep(draw.random() * length)
            number = draw.choice((signal.SIGINT, signal.SIGTERM, signal.SIGHUP))
            tool.send_signal(number)
            err = tool.communicate(timeout=60)[1].decode()
            left = set(os.listdir(self.folder)) - {"m.csv", "r.json", "bad.csv"}
            if tool.returncode == 0:
                self.assertEqual((left, self.read("o.csv")), ({"o.csv"}, whole))
                with open(self.path("r.json"), encoding="utf-8") as f:
                    self.assertEqual(json.load(f)["result"], "commit")
            else:
                # By itself only ahead of its first steps.
                self.assertIn(tool.returncode, (128 + number, -number), err)
                self.assertEqual(left, set(), err)
                self.assertNotIn("result=commit", err)


if __name__ == "__main__":
    unittest.main()
