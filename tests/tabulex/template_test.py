"""template: one template tried on one text."""
import json
import os
import tempfile
import unittest

from tool import ToolTest, environment

VALID = [
    ("Date", "*y/*m/*d", "01/02/03", "2001-02-03"),
    ("Date", "*m/*d/*y", "12/25/2003", "2003-12-25"),
    ("Date", "yyyymmdd", "20031225", "2003-12-25"),
    ("Date", "*dmmyyyy", "1122003", "2003-12-01"),
    ("Date", "ddmmy*", "251203", "2003-12-25"),
    ("Date", "*d-mmm-*y", "25-Dec-03", "2003-12-25"),
    ("Date", "mmm,*d *y", "Dec,25 2003", "2003-12-25"),
    ("Date", "*Y/*M/*D", "49/1/1", "2049-01-01"),
    ("date", "*y/*m/*d", "199/1/1", "2099-01-01"),
    ("Time", "*hmm", "930", "09:30:00"),
    ("Time", "*hmmss", "93015", "09:30:15"),
    ("Time", "*h:*mtt@pm", "12:30am", "00:30:00"),
    ("Time", "*h:*mtt@pm", "1:30pm", "13:30:00"),
    ("Time", "*h:*m:*s tt@pm", "1:05:30 PM", "13:05:30"),
    ("Time", "*h:*m:*s.*f", "09:30:15.5", "09:30:15.005"),
    ("Price", "*i.*f", "1,5", 1.5),
    ("Open", "float", "-2.50", -2.5),
    ("Volume", "*i", "123.00", 123),
    ("Up Ticks", "int", "-7", -7),
    ("Symbol", "*", "A B,C", "A B,C"),
]
INVALID = [
    ("Date", "*y/*m/*d", "12/25/2003"),
    ("Date", "yyyymmdd", "2003125"),
    ("Date", "*d/*m/*y", "31/02/03"),
    ("Date", "*y/*m/*d", "2100/1/1"),
    ("Date", "*y/*m/*d", ""),
    ("Time", "*h:*m", "24:60"),
    ("Time", "*h:*m", "24:00"),
    ("Time", "*h:*m", "half past"),
    ("Volume", "*i", "12.5"),
    ("Close", "*i.*f", "1.5x"),
]


class Trials(ToolTest):
    def test_give_the_value(self):
        for kind, template, text, value in VALID:
            with self.subTest((kind, template, text)):
                result = self.succeed("template", kind, template, text)
                self.assertEqual((result.out, result.err), (f"{value}\n", ""))
                found = self.succeed("template", "--json", kind, template, text).json()
                self.assertEqual((found["valid"], found["value"]), (True, value))

    def test_give_the_reason(self):
        for kind, template, text in INVALID:
            with self.subTest((kind, template, text)):
                result = self.fail_with(1, "template", kind, template, text)
                self.assertEqual(result.out, "")
                self.assertIn(f'"{text}"', result.err)
                found = json.loads(self.fail_with(1, "template", "--json", kind, template,
                                                  text).out)
                self.assertEqual((found["valid"], found["value"]), (False, None))
                self.assertIn(f'"{text}"', found["reason"])

    def test_an_hour_that_belongs_to_the_next_day_has_no_value(self):
        for template, text in [("*h:*m", "24:00"), ("*hmm", "2400"), ("*h:*m tt@pm", "24:30 pm")]:
            with self.subTest((template, text)):
                reason = f'"{text}" has an hour above 23, which has no value without a date.'
                self.assertEqual(self.fail_with(1, "template", "Time", template, text).err,
                                 f"tabulex: {reason}\n")
                found = json.loads(self.fail_with(1, "template", "--json", "Time", template,
                                                  text).out)
                self.assertEqual(found["reason"], reason)

    def test_a_text_may_begin_with_a_dash(self):
        self.assertEqual(self.succeed("template", "Volume", "*i", "--", "-12").out, "-12\n")

    def test_unknown_types_and_templates_are_wrong_usage(self):
        cases = [(["Dat", "x", "y"], "did you mean 'Date'?"),
                 (["Open", "*i", "1"], "the only template of this type is '*i.*f'"),
                 (["Date", "", "1"], "the template is empty")]
        for args, message in cases:
            with self.subTest(args):
                self.assertIn(message, self.fail_with(2, "template", *args).err)


class Traces(ToolTest):
    def test_are_removed_in_the_end(self):
        with tempfile.TemporaryDirectory() as folder:
            self.succeed("template", "Date", "*y/*m/*d", "03/1/1", env=environment(TMPDIR=folder))
            self.assertEqual(os.listdir(folder), [])


if __name__ == "__main__":
    unittest.main()
