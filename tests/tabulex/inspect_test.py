"""inspect: what is found out about a file, as JSON and for people."""
import json
import os
import unittest

from tool import SAMPLES, ToolTest, encoding_of, environment

KEYS = ["dividers", "has_header", "header_offset", "header", "inverted", "resolution",
        "resolution_size", "valid_resolution", "lacked_fields", "duplicated_field", "start", "end",
        "records", "columns", "first_record", "last_record"]
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
        columns = self.succeed("inspect", "--json", path).json()["columns"]
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
        out = self.succeed("inspect", self.file("a.txt", "nothing of the kind\n")).out
        self.assertIn("convertible The date range of the data is invalid.", out)

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


class Offers(ToolTest):
    def test_only_offered_resolutions_are_found(self):
        path = self.sample("minute-5.csv")
        cases = [("2=Minutes", 5, 5), ("2=Minutes|5", 5, 5), ("2=Minutes|3", 0, 0),
                 ("1=Ticks,1=Bars", 2, 0), ("8=Count", 3, 0), ("4=Days", 0, 0), ("", 0, 0)]
        for offer, resolution, size in cases:
            with self.subTest(offer):
                found = self.succeed("inspect", "--json", "--offer", offer, path).json()
                self.assertEqual((found["resolution"], found["resolution_size"]),
                                 (resolution, size))

    def test_a_name_offered_twice_is_refused(self):
        result = self.fail_with(1, "inspect", "--offer", "2=A,4=A", self.sample("tick.csv"))
        self.assertIn("'A' is offered twice", result.err)


class Samples(unittest.TestCase):
    def test_the_kept_ones_are_what_the_generator_makes(self):
        folder = os.path.join(os.path.dirname(__file__), "..", "..", "samples")
        kept = {s.name: s for s in SAMPLES.values() if s.kept}
        self.assertEqual(sorted(n for n in os.listdir(folder) if not n.endswith(".md")),
                         sorted(kept))
        for name, sample in kept.items():
            with self.subTest(name), open(os.path.join(folder, name), "rb") as f:
                self.assertEqual(f.read(), sample.content())


if __name__ == "__main__":
    unittest.main()
