"""preview and raw: records by number."""
import unittest

from tool import SAMPLES, ToolTest


class Preview(ToolTest):
    def table(self, *args):
        return [line.split() for line in self.succeed("preview", *args).out.splitlines()]

    def test_shows_the_first_records_decoded(self):
        table = self.table(self.sample("long.csv"))
        self.assertEqual(table[0], ["#", *SAMPLES["long.csv"].columns])
        self.assertEqual(len(table), 21)
        self.assertEqual(table[1][:4], ["*", "0", "2003-01-13", "09:30:00"])

    def test_starts_and_ends_where_the_options_say(self):
        for name, first, count, shown in (("long.csv", 1000, 3, 3), ("long.csv", 2498, 9, 2),
                                          ("long.csv", 5000, 5, 0), ("descending.csv", 24, 9, 1),
                                          ("descending.csv", 0, 0, 0)):
            with self.subTest((name, first, count)):
                table = self.table(self.sample(name), "--from", str(first), "--count", str(count))
                self.assertEqual([row[1] for row in table[1:]],
                                 [str(first + i) for i in range(shown)])
                for row, record in zip(table[1:], SAMPLES[name].rows[first:]):
                    self.assertEqual(row[2], f"{record['Date']:%Y-%m-%d}")

    def test_long_ones_come_in_pieces(self):
        self.assertEqual(len(self.table(self.sample("long.csv"), "--count", "9999")), 2501)

    def test_shows_what_cannot_be_read_as_it_stands_and_unmarked(self):
        table = self.table(self.sample("junk.csv"), "--from", "103", "--count", "2")
        self.assertEqual(table[1][:3], ["103", "junk", "line"])
        self.assertEqual(table[2][0], "*")

    def test_marks_records_of_the_symbol_only(self):
        table = self.table(self.sample("symbols.csv"), "--symbol", "DEF", "--from", "10",
                           "--count", "4")
        self.assertEqual([row[0] for row in table[1:]], ["10", "11", "*", "*"])

    def test_takes_settings(self):
        table = self.table(self.sample("week.csv"), "--column", "6=none", "--count", "1")
        self.assertEqual(table[0], ["#", "Date", "Open", "High", "Low", "Close", "-"])


class Raw(ToolTest):
    def test_shows_lines_with_content_by_number(self):
        sample = SAMPLES["descending.csv"]
        path = self.sample(sample.name)
        self.assertEqual(self.succeed("raw", path).out.splitlines(), sample.lines())
        for first, count in ((0, 2), (5, 1), (24, 10), (100, 3), (3, 0)):
            with self.subTest((first, count)):
                out = self.succeed("raw", path, "--from", str(first), "--count", str(count)).out
                self.assertEqual(out.splitlines(), sample.lines()[first:first + count])

    def test_shows_the_last_and_the_number_of_lines(self):
        for name in ("descending.csv", "no-final-newline.csv", "two-byte.txt", "junk.csv"):
            with self.subTest(name):
                path, lines = self.sample(name), SAMPLES[name].lines()
                self.assertEqual(self.succeed("raw", path, "--last").out, lines[-1] + "\n")
                self.assertEqual(self.succeed("raw", path, "--count-only").out, f"{len(lines)}\n")

    def test_leaves_empty_lines_out(self):
        path = self.file("a.txt", "one line\n\n\nanother\r\n\r\n  third\n")
        self.assertEqual(self.succeed("raw", path).out, "one line\nanother\nthird\n")

    def test_has_no_last_line_of_an_empty_file(self):
        self.fail_with(1, "raw", "--last", self.file("a.txt", b""))


if __name__ == "__main__":
    unittest.main()
