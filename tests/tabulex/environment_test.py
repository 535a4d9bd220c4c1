"""Environment files: templates that a user keeps from one call to the next."""
import os
import unittest

from tool import ToolTest

TEMPLATE = "*y-*d-*m"  # not built in, so it is never detected by itself
DOCUMENT = ("<ENVIRONMENT><TABULEXCONVERTOR_ENVIRONMENT><PATH>\"/quotes\"</PATH>"
            "</TABULEXCONVERTOR_ENVIRONMENT><RECORD_PARSER_ENVIRONMENT><TYPE><NAME>\"Date\"</NAME>"
            f"<TEMPLATE>\"{TEMPLATE}\"</TEMPLATE></TYPE></RECORD_PARSER_ENVIRONMENT>"
            "</ENVIRONMENT>")
QUOTES = "Date,Open,High,Low,Close\n" + "".join(
    f"2003-{d:02}-01,10.5,11.5,9.5,10.25\n" for d in range(13, 31))


class Environments(ToolTest):
    def test_are_printed_as_they_result(self):
        out = self.succeed("environment", self.file("a.env", DOCUMENT)).out
        self.assertTrue(out.startswith("<ENVIRONMENT>\r\n<TABULEXCONVERTOR_ENVIRONMENT>\r\n"
                                       "<PATH>\"/quotes\"</PATH>\r\n"), out[:200])
        self.assertIn(f"<TEMPLATE>\"{TEMPLATE}\"</TEMPLATE>", out)
        self.assertTrue(out.endswith("</RECORD_PARSER_ENVIRONMENT>\r\n</ENVIRONMENT>\r\n"))

    def test_of_several_files_add_up(self):
        other = DOCUMENT.replace(TEMPLATE, "*m-*y-*d")
        out = self.succeed("environment", self.file("a.env", DOCUMENT),
                           self.file("b.env", "\ufeff" + other)).out
        self.assertIn(f"\"{TEMPLATE}\"", out)
        self.assertIn("\"*m-*y-*d\"", out)

    def test_take_part_in_finding_the_layout(self):
        quotes, env = self.file("a.csv", QUOTES), self.file("a.env", DOCUMENT)
        layout = self.succeed("inspect", "--json", "--environment", env, quotes).json()
        self.assertEqual(layout["columns"][0], {"type": "Date", "template": TEMPLATE})
        rows = self.succeed("convert", "--environment", env, quotes).rows()
        self.assertEqual((rows[1][0], len(rows)), ("2003-01-13", 19))

    def test_are_saved_after_a_commit_only(self):
        quotes, env = self.file("a.csv", QUOTES), self.file("a.env", DOCUMENT)
        self.succeed("convert", "--environment", env, "--save-environment", "-n", quotes)
        self.assertEqual(self.read("a.env"), DOCUMENT)
        self.succeed("convert", "--environment", env, "--save-environment", quotes)
        saved = self.read("a.env")
        self.assertNotEqual(saved, DOCUMENT)
        self.assertIn(TEMPLATE, saved)
        self.succeed("convert", "--environment", env, "--save-environment", quotes)
        self.assertEqual(self.read("a.env"), saved)

    def test_that_are_no_such_document_are_refused(self):
        quotes = self.file("a.csv", QUOTES)
        for text in ("a,b,c\n1,2,3\n", DOCUMENT + "stray", DOCUMENT[:-3], "<!-- no end"):
            with self.subTest(text[-12:]):
                env = self.file("bad.env", text)
                for args in (("environment", env),
                             ("convert", "--environment", env, "--save-environment", quotes,
                              "-o", self.path("out.csv"))):
                    result = self.run_tool(*args)
                    self.assertEqual((result.status, result.out), (1, ""))
                    self.assertIn("holds no environment", result.err)
                self.assertEqual(self.read("bad.env"), text)
                self.assertFalse(os.path.exists(self.path("out.csv")))

    def test_that_cannot_be_read_are_reported(self):
        for path in (self.path("none.env"), self.folder):
            self.assertIn("can't be read", self.fail_with(3, "environment", path).err)

    def test_are_needed_for_saving(self):
        result = self.fail_with(2, "convert", "--save-environment", self.file("a.csv", QUOTES))
        self.assertIn("--environment", result.err)


if __name__ == "__main__":
    unittest.main()
