"""Files without quotes, and names that aren't files: an answer and a status, never a crash."""
import os
import random
import re
import subprocess
import time
import unittest

from tool import SAMPLES, TOOL, ToolTest, environment, minutes_text

DAY = "2003/01/{},10.5,11.5,9.5,10.25\n"

# The content, and how many of its lines count as lines with content.
NO_QUOTES = {
    "empty": (b"", 0),
    "newline": (b"\n", 0),
    "one-byte": (b"a", 1),
    "separators": (b",,,;;\n|||\n\t\t\n  \n", 0),
    "no-line-end": (b"no line end at all", 1),
    "zeros": (b"\0" * 5000, 0),
    "binary": (bytes(range(256)) * 40, None),
    "noise": (random.Random(7).randbytes(20000), None),
    "long-lines": ((b"x" * 100_000 + b"\n") * 3, 3),
    "header-only": (b"Date,Open,High,Low,Close\n", 1),
    "dates-outside": (b"1899/12/31,1,2,1,1\n2100/01/01,1,2,1,1\n", 2),
}


# Those that hold lines to be looked at.
WITH_LINES = ("one-byte", "noise", "dates-outside")


class NoQuotes(ToolTest):
    def test_every_command_has_an_answer(self):
        for name, (content, _) in NO_QUOTES.items():
            path = self.file(name, content)
            lines = 0 if name in WITH_LINES else 1
            for status, *command in ((1, "inspect"), (1, "inspect", "--json"), (lines, "preview"),
                                     (0, "raw"), (1, "check"), (1, "convert"),
                                     (1, "convert", "--no-check")):
                with self.subTest((name, command)):
                    done = subprocess.run([*TOOL, *command, path], capture_output=True,
                                          env=environment(), timeout=60)
                    self.assertEqual(done.returncode, status, done.stderr)

    def test_a_conversion_says_why_not(self):
        for name, (content, _) in NO_QUOTES.items():
            with self.subTest(name):
                path = self.file(name, content)
                refused = self.run_tool("convert", path)
                self.assertIn("The date range of the data is invalid.", refused.err)
                dateless = self.run_tool("convert", path, "--no-check")
                self.assertIn("No column holds a date.", dateless.err)
                for result in (refused, dateless):
                    self.assertEqual(result.out, "")
                    self.assertEqual(result.summary(),
                                     "batches=0 delivered=0 skipped=0 result=refused")

    def test_lines_with_content_are_counted(self):
        for name, (content, lines) in NO_QUOTES.items():
            if lines is None:
                continue
            with self.subTest(name):
                out = self.succeed("raw", "--count-only", self.file(name, content)).out
                self.assertEqual(out, f"{lines}\n")

    def test_json_has_null_for_what_is_missing(self):
        found = self.fail_with(1, "inspect", "--json", self.file("empty", b"")).json()
        for key in ("dividers", "header", "start", "end", "first_record", "last_record"):
            self.assertIsNone(found[key], key)
        self.assertEqual((found["records"], found["columns"]), (0, []))


class NoFiles(ToolTest):
    def test_the_reason_is_reported(self):
        os.mkdir(self.path("folder"))
        cases = [("missing.csv", "No such file or directory"), ("folder", "is a folder"),
                 ("folder/missing/x", "No such file or directory"), ("", "is a folder")]
        for name, reason in cases:
            for command in ("inspect", "convert", "preview", "check", "raw"):
                with self.subTest((command, name)):
                    result = self.fail_with(3, command, self.path(name))
                    self.assertIn(f"{self.path(name)}: {reason}", result.err)

    def test_a_file_without_permission_is_reported(self):
        path = self.sample("week.csv")
        os.chmod(path, 0)
        os.chmod(self.folder, 0o755)
        # The superuser can read every file, but can run the tool as another user.
        somebody = {"user": 65534} if os.geteuid() == 0 else {}
        try:
            result = self.run_tool("inspect", path, **somebody)
        except PermissionError:
            self.skipTest("the program isn't reachable for another user")
        self.assertEqual(result.status, 3)
        self.assertIn("Permission denied", result.err)

    def test_a_conversion_ends_with_its_summary_all_the_same(self):
        result = self.fail_with(3, "convert", self.path("missing.csv"), "-o", self.path("o.csv"))
        self.assertEqual(result.summary(), "batches=0 delivered=0 skipped=0 result=refused")
        self.assert_entries()


class Names(ToolTest):
    def test_files_may_have_any_name(self):
        content = SAMPLES["week.csv"].content()
        for name in ("with blank.csv", "-dash.csv", "股票.csv", "a=b,c;d.csv"):
            with self.subTest(name):
                self.file(name, content)
                self.succeed("convert", self.path(name), "-o", self.path("out/"))
                self.assertTrue(os.path.exists(self.path("out/" + name)))

    def test_a_leading_dash_is_a_name_after_two_dashes(self):
        self.file("-dash.csv", SAMPLES["week.csv"].content())
        self.succeed("convert", "--", "-dash.csv", cwd=self.folder)


class NamesOfBytes(ToolTest):
    def test_may_hold_what_is_no_text(self):
        content = SAMPLES["week.csv"].content()
        self.file("quote\".csv", content)
        self.succeed("convert", self.path("quote\".csv"))
        with open(os.path.join(os.fsencode(self.folder), b"caf\xe9.csv"), "wb") as f:
            f.write(content)
        self.succeed("convert", os.path.join(os.fsencode(self.folder), b"caf\xe9.csv"))


class OddQuotes(ToolTest):
    def test_dates_up_to_the_last_year_are_read(self):
        text = "Date,Open,High,Low,Close\n" + "".join(
            f"{y}/06/04,10.5,11.5,9.5,10.25\n" for y in (1900, 1950, 1999, 2000, 2078, 2079))
        rows = self.succeed("convert", self.file("a.csv", text)).rows()
        self.assertEqual([r[0][:4] for r in rows[1:]],
                         ["1900", "1950", "1999", "2000", "2078", "2079"])

    def test_dates_after_the_last_day_that_can_be_delivered_are_refused(self):
        text = "Date,Open,High,Low,Close\n" + "".join(
            f"{y}/06/04,10.5,11.5,9.5,10.25\n" for y in (1999, 2000, 2001, 2079, 2099))
        path = self.file("a.csv", text)
        result = self.run_tool("convert", path)
        self.assertEqual((result.status, result.out), (1, ""))
        self.assertIn("2079-06-04", result.err)
        self.assertEqual(self.run_tool("check", path).status, 1)
        rows = self.succeed("convert", path, "--to", "2079-06-04").rows()
        self.assertEqual(rows[-1][0], "2079-06-04")

    def test_lines_may_have_too_few_and_too_many_fields(self):
        lines = SAMPLES["junk.csv"].lines()
        lines[40] += ",7,8,9"
        lines[104] = ",".join(lines[103].split(",")[:3])
        path = self.file("a.csv", "\n".join(lines) + "\n")
        result = self.succeed("convert", path)
        self.assertEqual(len(result.rows()[41]), 6)
        self.assertIn(f"{path}:105: ", result.err)

    def test_a_leap_day_of_a_common_year_does_not_hang_the_run(self):
        days = "".join(DAY.format(d) for d in range(13, 31)) + "2003/02/29,10.5,11.5,9.5,10.25\n"
        result = self.run_tool("convert", self.file("a.csv", "Date,Open,High,Low,Close\n" + days))
        self.assertRegex(result.summary(), r"^batches=\d+ delivered=1[89] skipped=\d+ result=commit$")

    def test_a_file_may_shrink_or_go_while_it_is_read(self):
        text = minutes_text(80_000)
        changes = ((lambda path: os.truncate(path, 300_000), {(0, 80_000, "commit"), (3, None, "rollback"),
                                                              (1, None, "rollback"), (3, None, "refused")}),
                   (os.unlink, {(0, 80_000, "commit"), (1, None, "rollback"), (3, None, "refused")}))
        for change, outcomes in changes:
            path = self.file("big.csv", text)
            tool = subprocess.Popen([*TOOL, "convert", "-n", path], stdout=subprocess.DEVNULL, stderr=subprocess.PIPE,
                                    env=environment())
            time.sleep(0.2)
            change(path)
            err = tool.communicate(timeout=120)[1].decode()
            with self.subTest(err[-300:]):
                rows, result = re.search(r"delivered=(\d+) .*result=(\w+)$", err).groups()
                rows = int(rows) if tool.returncode == 0 else None
                self.assertIn((tool.returncode, rows, result), outcomes)


if __name__ == "__main__":
    unittest.main()
