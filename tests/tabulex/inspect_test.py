"""inspect: what is found out about a file, as JSON and for people."""
import json
import os
import time
import unittest

import make_samples
from tool import SAMPLES, ToolTest, encoding_of, environment, minutes_text

KEYS = ["dividers", "has_header", "header_offset", "header", "inverted", "resolution",
        "resolution_size", "valid_resolution", "lacked_fields", "duplicated_field", "start", "end",
        "records", "columns", "first_record", "last_record", "convertible", "reason", "advice"]
MASKS = {":": 1 | 32, " ": 2 | 32, ",": 4 | 32, ";": 8 | 32, "|": 16 | 32, "\t": 32}


def moment(row):
    text = f"{row['Date']:%Y-%m-%d}"
    time = row.get("Time")
    if time is None:
        return text + "T00:00:00"
    return f"{text}T{time.isoformat('milliseconds' if time.microsecond else 'seconds')}"


class EveryLayout(ToolTest):
    found = {}  # by sample, so that each is inspected once for all tests

    def inspect(self, sample):
        if sample.name not in self.found:
            self.found[sample.name] = self.succeed(
                "inspect", "--json", sample.write(self.folder), *encoding_of(sample)).json()
        return self.found[sample.name]

    def test_columns_and_templates_are_found(self):
        for sample in SAMPLES.values():
            with self.subTest(sample.name):
                columns = self.inspect(sample)["columns"]
                self.assertEqual([c["type"] for c in columns], sample.columns)
                templates = {c["type"]: c["template"] for c in columns}
                self.assertEqual(templates["Date"], sample.date_template)
                if "Time" in sample.columns:
                    self.assertEqual(templates["Time"], sample.time_template)

    def test_resolution_direction_and_count_are_found(self):
        for sample in SAMPLES.values():
            with self.subTest(sample.name):
                found = self.inspect(sample)
                self.assertEqual(found["resolution"], sample.resolution)
                self.assertEqual(found["resolution_size"], sample.size)
                self.assertIs(found["valid_resolution"], True)
                self.assertEqual((found["lacked_fields"], found["duplicated_field"]), ([], ""))
                self.assertIs(found["inverted"], sample.descending)
                self.assertEqual(found["records"], len(sample.rows) + len(sample.junk))

    def test_dates_are_those_of_the_first_and_last_record(self):
        for sample in SAMPLES.values():
            if sample.name == "symbols.csv":
                continue  # the file as a whole isn't in the order of dates
            with self.subTest(sample.name):
                found = self.inspect(sample)
                self.assertEqual(found["start"], moment(sample.rows[0]))
                self.assertEqual(found["end"], moment(sample.rows[-1]))

    def test_header_and_records_stand_as_in_the_file(self):
        for sample in SAMPLES.values():
            with self.subTest(sample.name):
                found = self.inspect(sample)
                lines = sample.lines()
                before = len(sample.preamble) + sample.header
                first, last = lines[before], lines[-1]
                if sample.descending:
                    first, last = last, first
                self.assertIs(found["has_header"], sample.header)
                self.assertEqual(found["header_offset"], len(sample.preamble))
                self.assertEqual(found["header"], lines[before - 1] if sample.header else None)
                self.assertEqual(found["first_record"], first)
                self.assertEqual(found["last_record"], last)

    def test_dividers_are_found(self):
        for sample in SAMPLES.values():
            with self.subTest(sample.name):
                self.assertEqual(self.inspect(sample)["dividers"], MASKS[sample.divider])


class Json(ToolTest):
    def test_holds_its_keys_in_their_order(self):
        found = self.succeed("inspect", "--json", self.sample("tick.csv"))
        self.assertEqual(list(json.loads(found.out)), KEYS)
        self.assertEqual(found.err, "")

    def test_leaves_the_count_out_on_request(self):
        found = self.succeed("inspect", "--json", "--no-count", self.sample("tick.csv")).json()
        self.assertIsNone(found["records"])

    def test_names_an_unassigned_column_null(self):
        path = self.file("a.csv", "Date,Open,High,Low,Close\n2100/01/01,1,2,1,1\n")
        columns = self.fail_with(1, "inspect", "--json", path).json()["columns"]
        self.assertEqual([c["type"] for c in columns], [None, "Open", "High", "Low", "Close"])
        self.assertEqual(columns[0]["template"], "")

    def test_shows_milliseconds_where_there_are_any(self):
        found = self.succeed("inspect", "--json", self.sample("time-10.csv")).json()
        self.assertEqual(found["start"], "2003-01-13T09:30:15.005")


class Report(ToolTest):
    def test_says_it_in_words(self):
        out = self.succeed("inspect", self.sample("descending.csv")).out
        for words in ("delimiters  comma, tab", "header      line 1: Date,Open,",
                      "resolution  Days, size 1", "direction   latest record first",
                      "dates       2003-01-13 00:00:00 to 2003-02-06 00:00:00",
                      "convertible yes", "*y/*m/*d", "records     25"):
            self.assertIn(words, out)
        self.assertNotIn("\033", out)

    def test_says_what_stands_against_a_conversion(self):
        out = self.fail_with(1, "inspect", self.file("a.txt", "nothing of the kind\n")).out
        self.assertIn("convertible no: The date range of the data is invalid. The file has no data "
                      "lines", out)

    def test_leaves_the_count_out_on_request(self):
        out = self.succeed("inspect", "--no-count", self.sample("tick.csv")).out
        self.assertNotIn("records", out)

    def test_is_coloured_on_request_only(self):
        path = self.sample("tick.csv")
        self.assertIn("\033[1m", self.succeed("inspect", "--color=always", path).out)
        self.assertNotIn("\033", self.succeed("inspect", "--color=never", path).out)
        no_colour = environment(NO_COLOR="1")
        self.assertIn("\033[1m", self.succeed("inspect", "--color=always", path,
                                              env=no_colour).out)

    def test_shows_each_of_several_files(self):
        paths = self.sample("tick.csv"), self.sample("week.csv")
        out = self.succeed("inspect", *paths).out
        self.assertLess(out.index(paths[0]), out.index(paths[1]))


class Readiness(ToolTest):
    def test_a_file_that_cannot_be_converted_ends_with_1_and_is_reported_all_the_same(self):
        path = self.file("a.csv", "Date,Open,High,Low,Close\n01/13,1,2,1,1\n01/14,1,2,1,1\n")
        result = self.fail_with(1, "inspect", path)
        self.assertEqual(result.err, "")
        for words in ("delimiters  comma, tab", "convertible no: ", "it has no year", "records     2"):
            self.assertIn(words, result.out)
        found = self.fail_with(1, "inspect", "--json", path).json()
        self.assertIs(found["convertible"], False)
        self.assertIn("Line 2: '01/13' in column 1, 'Date'", found["reason"])

    def test_a_file_that_can_has_no_reason(self):
        found = self.succeed("inspect", "--json", self.sample("tick.csv")).json()
        self.assertEqual((found["convertible"], found["reason"]), (True, None))

    def test_the_highest_status_of_several_files_is_given(self):
        bad = self.file("a.csv", "nothing\n")
        result = self.fail_with(1, "inspect", bad, self.sample("tick.csv"))
        self.assertIn("convertible yes", result.out)


class GivenSettings(ToolTest):
    def test_a_correction_can_be_looked_at(self):
        path = self.file("a.csv", "".join(f"2003.01.{d},10.5,11.5,9.5,10.25\n" for d in range(13, 30)))
        self.fail_with(1, "inspect", path)
        settings = ["--column", "1=Date:*y.*m.*d", "--column", "2=Open", "--column", "3=High", "--column", "4=Low",
                    "--column", "5=Close", "--resolution", "Days"]
        found = self.succeed("inspect", "--json", path, *settings).json()
        self.assertEqual([c["type"] for c in found["columns"]], ["Date", "Open", "High", "Low", "Close"])
        self.assertEqual(found["start"], "2003-01-13T00:00:00")

    def test_what_was_given_is_marked(self):
        path = self.sample("descending.csv")
        out = self.succeed("inspect", path).out
        self.assertNotIn("(given)", out)
        out = self.succeed("inspect", path, "--dividers", ",", "--column", "6=none", "--from", "2003-01-20",
                           "--price-multiplier", "100").out
        lines = out.splitlines()
        marked = [line.split()[0] for line in lines if "(given)" in line]
        self.assertEqual(marked, ["delimiters", "dates", "prices", "6"])
        self.assertIn("2003-01-20 00:00:00 to 2003-02-06 00:00:00", out)

    def test_a_setting_that_is_refused_is_told(self):
        result = self.fail_with(1, "inspect", self.sample("tick.csv"), "--column", "99=Open")
        self.assertIn("--column 99: the file has", result.err)


class Reasons(ToolTest):
    def explain(self, name, content, *options, status=0):
        path = self.file(name, content)
        return self.fail_with(status, "inspect", "--explain", "--json", path, *options).json()["explain"]

    def test_the_report_goes_through_all_decisions(self):
        plain = self.succeed("inspect", self.sample("descending.csv")).out
        out = self.succeed("inspect", "--explain", self.sample("descending.csv")).out
        for words in ("Dividers:", "comma     fields of the first lines: 6", "(used)", "Header:",
                      "no field looks like data, so it names the columns", "Columns:", "Date by '*y/*m/*d'",
                      "sampled cells are read", "Resolution:", "steps from row to row: 1 day (",
                      "so the file runs backwards", "plain ASCII"):
            self.assertIn(words, out)
            if words != "Resolution:":
                self.assertNotIn(words, plain)

    def test_a_column_that_is_left_out_says_what_was_tried(self):
        found = self.explain("a.csv", "Date,Open,High,Low,Close,Note\n" + "".join(
            f"2003/01/{d},10.5,11.5,9.5,10.25,x{d}\n" for d in range(13, 30)))
        column = found["columns"][5]
        self.assertEqual((column["heading"], column["type"], column["samples"]), ("Note", None, ["x13", "x14", "x15"]))
        self.assertIn("no template of Date reads it: line 2 has 'x13'", column["failed"])
        self.assertIn("not a number: line 2 has 'x13'", column["failed"])

    def test_a_column_says_what_else_would_read_it(self):
        found = self.explain("a.csv", "Date,Open,High,Low,Close\n" + "".join(
            f"{m:02}/05/2003,10.5,11.5,9.5,10.25\n" for m in range(1, 13)))
        date = found["columns"][0]
        self.assertEqual((date["template"], date["read"], date["sampled"]), ("*m/*d/*y", 12, 12))
        self.assertIn("Date by '*d/*m/*y'", date["others"])

    def test_a_cell_that_is_not_read_is_named(self):
        rows = [f"2003/01/{d},10.5,11.5,9.5,10.25\n" for d in range(1, 32)]
        rows[20] = rows[20].replace("11.5", "abc")
        found = self.explain("a.csv", "Date,Open,High,Low,Close\n" + "".join(rows))
        high = found["columns"][2]
        self.assertEqual((high["read"], high["sampled"]), (30, 31))
        self.assertEqual(high["first_failure"], "line 22 has 'abc'")

    def test_lines_are_numbered_as_in_the_file(self):
        found = self.explain("a.csv", "Made by me\n\n\nDate Open High Low Close\n" + "".join(
            f"2003/01/{d} 10.5 11.5 9.5 10.25\n" for d in range(13, 30)))
        self.assertEqual([(line["line"], line["heading"]) for line in found["lines"]],
                         [("line 1", False), ("line 4", True), ("line 5", False)])

    def test_steps_are_counted(self):
        found = self.explain("a.csv", "Date,Open,High,Low,Close\n" + "".join(
            f"2003/01/{d},10.5,11.5,9.5,10.25\n" for d in (6, 7, 8, 9, 10, 13, 14)))
        self.assertEqual(found["steps"], [{"step": "1 day", "count": 5}, {"step": "3 days", "count": 1}])

    def test_it_is_quick_on_a_large_file(self):
        path = self.file("big.csv", minutes_text(300_000))
        begin = time.monotonic()
        self.succeed("inspect", "--explain", "--no-count", path)
        self.assertLess(time.monotonic() - begin, 5)

    def test_a_file_without_a_table_is_explained_too(self):
        for content in (b"", b"\n\n", b"\0" * 100, b"word\n"):
            with self.subTest(content[:4]):
                found = self.explain("a.csv", content, status=1)
                self.assertEqual(found["steps"], [])


class Offers(ToolTest):
    def test_only_offered_resolutions_are_found(self):
        path = self.sample("minute-5.csv")
        cases = [("2=Minutes", 5, 5), ("2=Minutes|5", 5, 5), ("2=Minutes|3", 0, 0),
                 ("1=Ticks,1=Bars", 2, 0), ("8=Count", 3, 0), ("4=Days", 0, 0), ("", 0, 0)]
        for offer, resolution, size in cases:
            with self.subTest(offer):
                result = self.run_tool("inspect", "--json", "--offer", offer, path)
                found = result.json()
                self.assertEqual(result.status, 0 if resolution else 1)
                self.assertEqual((found["resolution"], found["resolution_size"]),
                                 (resolution, size))

    def test_a_name_offered_twice_is_refused(self):
        result = self.fail_with(1, "inspect", "--offer", "2=A,4=A", self.sample("tick.csv"))
        self.assertIn("'A' is offered twice", result.err)


class Samples(unittest.TestCase):
    def test_the_kept_ones_are_what_the_generator_makes(self):
        folder = os.path.join(os.path.dirname(__file__), "..", "..", "samples")
        made = (*SAMPLES.values(), make_samples.export_sample())
        kept = {s.name: s for s in made if s.kept}
        self.assertEqual(sorted(n for n in os.listdir(folder) if not n.endswith(".md")),
                         sorted(kept))
        for name, sample in kept.items():
            with self.subTest(name), open(os.path.join(folder, name), "rb") as f:
                self.assertEqual(f.read(), sample.content())


if __name__ == "__main__":
    unittest.main()
