"""Inputs that aren't plain files: pipes, archives, marks, folders and patterns."""
import bz2
import gzip
import io
import lzma
import os
import random
import shutil
import signal
import stat
import subprocess
import tarfile
import time
import unittest
import zipfile

from interrupt_test import wait_until
from tool import SAMPLES, TOOL, ToolTest, environment, minutes_text

TEXT = SAMPLES["week.csv"].content()
NAMED = "Symbol,Date,Open,High,Low,Close\n" + "".join(
    f"股票,2003/01/{day},10.5,11.5,9.5,10.25\n" for day in range(13, 31))


def zip_of(**members):
    buffer = io.BytesIO()
    with zipfile.ZipFile(buffer, "w", zipfile.ZIP_DEFLATED) as archive:
        for name, content in members.items():
            archive.writestr(name.replace("|", "/"), content)
    return buffer.getvalue()


def tar_of(**members):
    buffer = io.BytesIO()
    with tarfile.open(fileobj=buffer, mode="w") as archive:
        for name, content in members.items():
            entry = tarfile.TarInfo(name)
            entry.size = len(content)
            archive.addfile(entry, io.BytesIO(content))
    return buffer.getvalue()


def zstd_of(content):
    if not shutil.which("zstd"):
        raise unittest.SkipTest("no zstd")
    return subprocess.run(["zstd", "-qc"], input=content, stdout=subprocess.PIPE, check=True).stdout


class InputTest(ToolTest):
    def rows_of(self, *args, **options):
        return self.succeed("convert", *args, **options).rows()

    def refuse(self, status, *args, **options):
        """The command ends with a message and its summary, and delivers nothing."""
        result = self.fail_with(status, "convert", *args, **options)
        self.assertEqual(result.out, "")
        self.assertTrue(result.summary().endswith("delivered=0 skipped=0 result=refused"))
        return result.err

    def setUp(self):
        super().setUp()
        self.rows = self.rows_of(self.file("plain.csv", TEXT))
        self.assertEqual(len(self.rows), 21)


class Pipes(InputTest):
    def piped(self, name, content, *args):
        tool = subprocess.Popen([*TOOL, "convert", name, *args], stdin=subprocess.PIPE,
                                stdout=subprocess.PIPE, stderr=subprocess.PIPE, env=environment())
        out, err = tool.communicate(content, timeout=60)
        return tool.returncode, out.decode(), err.decode()

    def test_are_read_by_each_of_their_names(self):
        want = self.run_tool("convert", self.path("plain.csv")).out
        for name in "-", "/dev/stdin", "/dev/fd/0", "/proc/self/fd/0":
            with self.subTest(name):
                self.assertEqual(self.piped(name, TEXT)[:2], (0, want))

    def test_may_come_as_another_descriptor(self):
        script = f'"$@" <(cat "{self.path("plain.csv")}")'
        done = subprocess.run(["bash", "-c", script, "bash", *TOOL, "raw", "--count-only"],
                              capture_output=True, env=environment(), timeout=60)
        self.assertEqual((done.returncode, done.stdout), (0, b"21\n"), done.stderr)

    def test_may_come_as_a_file_that_is_partly_read(self):
        with open(self.path("plain.csv"), "rb") as f:
            self.assertEqual(self.rows_of("-", stdin=f), self.rows)
            self.assertEqual(self.rows_of("-", stdin=f), self.rows)  # its place wasn't moved
            os.lseek(f.fileno(), TEXT.index(b"\n", 200) + 1, os.SEEK_SET)
            rows = self.rows_of("-", stdin=f)
        self.assertGreater(len(rows), 5)
        self.assertEqual(rows[1:], self.rows[-len(rows) + 1:])

    def test_may_have_names_and_writers_that_take_their_time(self):
        os.mkfifo(self.path("pipe"))
        tool = subprocess.Popen([*TOOL, "convert", self.path("pipe")], stdout=subprocess.PIPE,
                                stderr=subprocess.PIPE, env=environment())
        time.sleep(0.3)
        self.assertIsNone(tool.poll())
        with open(self.path("pipe"), "wb") as pipe:
            pipe.write(TEXT[:100])
            pipe.flush()
            time.sleep(0.3)
            pipe.write(TEXT[100:])
        out = tool.communicate(timeout=60)[0].decode()
        self.assertEqual(out, self.run_tool("convert", self.path("plain.csv")).out)

    def test_may_hold_archives_and_marks(self):
        want = self.run_tool("convert", self.path("plain.csv")).out
        for content in (gzip.compress(TEXT), zip_of(a=TEXT), b"\xef\xbb\xbf" + TEXT,
                        TEXT.decode().encode("utf-16")):
            self.assertEqual(self.piped("-", content)[:2], (0, want))

    def test_are_shown_by_the_name_that_was_given(self):
        junk = SAMPLES["junk.csv"].content()
        status, _, err = self.piped("-", junk)
        self.assertEqual(status, 0)
        self.assertIn("-:105: ", err)
        self.assertNotIn("/proc/", err)
        self.assertIn("tabulex: -: is no text: 4,096 of its first 4,096 bytes",
                      self.piped("-", b"\0" * 100_000)[2])

    def test_can_be_given_once_only(self):
        err = self.fail_with(2, "convert", "-", "-", "-o", self.path("new/")).err
        self.assertIn("standard input can be read once only", err)

    def test_that_are_closed_are_reported(self):
        err = subprocess.run(["sh", "-c", '"$@" <&-', "sh", *TOOL, "convert", "-"],
                             capture_output=True, env=environment(), timeout=60).stderr.decode()
        self.assertIn("tabulex: -: standard input is closed", err)

    def test_go_to_a_name_in_a_folder(self):
        self.assertEqual(self.piped("-", TEXT, "-o", self.path("new/"))[0], 0)
        self.assertEqual(os.listdir(self.path("new")), ["stdin.csv"])

    def test_serve_the_other_commands(self):
        for command in ("inspect", "check", "preview", "raw"):
            with self.subTest(command):
                want = self.run_tool(command, self.path("plain.csv"))
                done = subprocess.run([*TOOL, command, "-"], input=TEXT, capture_output=True,
                                      env=environment(), timeout=60)
                self.assertEqual(done.stdout.decode(), want.out.replace(self.path("plain.csv"), "-"))
                self.assertEqual(done.returncode, 0)


class TemporaryCopies(InputTest):
    def waiting(self, *args, content=TEXT, folder="temp"):
        """The tool with a copy begun, of a pipe that stays open."""
        os.makedirs(self.path(folder), exist_ok=True)
        tool = subprocess.Popen([*TOOL, "convert", "-", *args], stdin=subprocess.PIPE,
                                stdout=subprocess.DEVNULL, stderr=subprocess.PIPE,
                                env=environment(TMPDIR=self.path(folder)))
        self.addCleanup(tool.stdin.close)
        self.addCleanup(tool.stderr.close)
        self.addCleanup(tool.wait)
        self.addCleanup(tool.kill)
        tool.stdin.write(content * 500)
        tool.stdin.flush()
        wait_until(lambda: self.copy_of(tool, folder))
        return tool

    def copy_of(self, tool, folder):
        """What is known of the copy that the tool has open."""
        descriptors = f"/proc/{tool.pid}/fd"
        for number in os.listdir(descriptors):
            try:
                if self.path(folder) in os.readlink(f"{descriptors}/{number}"):
                    return os.stat(f"{descriptors}/{number}")
            except OSError:
                pass
        return None

    def test_belong_to_their_owner_and_have_no_name(self):
        copy = self.copy_of(self.waiting(), "temp")
        self.assertEqual((stat.S_IMODE(copy.st_mode), copy.st_nlink), (0o600, 0))
        self.assertEqual(os.listdir(self.path("temp")), [])

    def test_go_with_the_tool(self):
        os.mkdir(self.path("out"))
        for number, options in ((signal.SIGINT, []), (signal.SIGHUP, []), (signal.SIGKILL, []),
                                (signal.SIGINT, ["-o", self.path("out/")]),
                                (signal.SIGTERM, ["-o", self.path("out/"), "--rejects",
                                                  self.path("r.csv")])):
            with self.subTest((number, options)):
                tool = self.waiting(*options)
                tool.send_signal(number)
                self.assertEqual(tool.wait(20), -9 if number == signal.SIGKILL else 128 + number)
                self.assertEqual(os.listdir(self.path("temp")), [])
                self.assertEqual(os.listdir(self.path("out")), [])
                self.assertFalse(os.path.exists(self.path("r.csv")))

    def test_need_room(self):
        big = gzip.compress(minutes_text(50_000).encode())
        err = self.refuse(3, self.file("big.gz", big), most_bytes=100_000)
        self.assertRegex(err, r"big\.gz: its temporary copy can't be written to '.*': File too "
                              "large; make room there, or set TMPDIR to another folder")

    def test_need_a_folder(self):
        err = self.refuse(3, self.file("a.gz", gzip.compress(TEXT)),
                          env=environment(TMPDIR=self.path("none")))
        self.assertIn(f"no temporary file can be made in '{self.path('none')}': No such file", err)

    def test_are_not_made_of_plain_files(self):
        self.assertEqual(self.rows_of(self.path("plain.csv"),
                                      env=environment(TMPDIR=self.path("none"))), self.rows)

    def big(self):
        """310 MB that are packed in a few."""
        head, line = b"Date,Open,High,Low,Close\n", b"2003/01/13,10.5,11.5,9.5,10.25\n"
        packed = gzip.compress(head, 1) + gzip.compress(line * 100_000, 1) * 100
        return self.file("big.gz", packed), head + line * 2

    def test_take_little_memory(self):
        path, lines = self.big()
        tool = subprocess.Popen([*TOOL, "raw", "--count", "3", path], stdout=subprocess.PIPE,
                                env=environment())
        out = tool.stdout.read()
        tool.stdout.close()
        # What is resident, since a sanitizer reserves more addresses than any limit leaves.
        _, status, used = os.wait4(tool.pid, 0)
        tool.returncode = os.waitstatus_to_exitcode(status)
        self.assertEqual((tool.returncode, out), (0, lines))
        self.assertLess(used.ru_maxrss, 256 << 10)  # KiB

    def test_are_not_taken_of_a_file_that_changes(self):
        path, _ = self.big()
        os.mkdir(self.path("temp"))
        tool = subprocess.Popen([*TOOL, "raw", path], stdout=subprocess.PIPE, stderr=subprocess.PIPE,
                                env=environment(TMPDIR=self.path("temp")))
        wait_until(lambda: (copy := self.copy_of(tool, "temp")) and copy.st_size > 0)
        os.utime(path)
        out, err = tool.communicate(timeout=60)
        self.assertEqual((tool.returncode, out), (1, b""))
        self.assertIn(b"big.gz: the file changed while it was read; wait until", err)


class Archives(InputTest):
    PACKED = {"gz": gzip.compress, "bz2": bz2.compress, "xz": lzma.compress, "zst": zstd_of,
              "zip": lambda content: zip_of(data=content), "tar": lambda content: tar_of(data=content),
              "tgz": lambda content: gzip.compress(tar_of(data=content)),
              "gz.xz": lambda content: lzma.compress(gzip.compress(content))}

    def test_are_told_by_their_content(self):
        for kind, pack in self.PACKED.items():
            for name in f"quotes.{kind}", "quotes.csv":
                with self.subTest((kind, name)):
                    path = self.file(name, pack(TEXT))
                    self.assertEqual(self.rows_of(path), self.rows)

    def test_of_several_pieces_are_read_to_the_end(self):
        half = TEXT.index(b"\n", 300) + 1
        for kind in "gz", "bz2", "xz", "zst":
            with self.subTest(kind):
                pack = self.PACKED[kind]
                path = self.file("a", pack(TEXT[:half]) + pack(TEXT[half:]))
                self.assertEqual(self.rows_of(path), self.rows)

    def test_that_are_cut_deliver_nothing(self):
        text = minutes_text(3000).encode()
        for kind in "gz", "bz2", "xz", "zst", "zip", "tgz":
            packed = self.PACKED[kind](text)
            for length in (12, 40, len(packed) // 2, len(packed) - 10, len(packed) - 1):
                with self.subTest((kind, length)):
                    err = self.refuse(3, self.file("a", packed[:length]))
                    self.assertRegex(err, r"a: the (gzip file|archive) is damaged or cut \(.+\); "
                                          "fetch it anew")

    def test_that_are_damaged_never_give_other_rows(self):
        good = random.Random(3)
        text = minutes_text(300).encode()
        want = self.run_tool("convert", self.file("good.csv", text)).out
        for kind in "gz", "bz2", "xz", "zst", "zip":
            packed = self.PACKED[kind](text)
            for _ in range(12):
                at = good.randrange(len(packed))
                damaged = bytearray(packed)
                damaged[at] ^= 1 << good.randrange(8)
                with self.subTest((kind, at, damaged[at])):
                    result = self.run_tool("convert", self.file("a", bytes(damaged)))
                    self.assertIn((result.status, result.out), {(0, want), (1, ""), (3, "")})

    def test_whose_sum_is_wrong_deliver_nothing(self):
        stored = gzip.compress(TEXT, 0)
        at = stored.index(b"Open")
        err = self.refuse(3, self.file("a.gz", stored[:at] + b"O" + stored[at:at + 1].lower() +
                                       stored[at + 2:]))
        self.assertIn("incorrect data check", err)

    def test_with_bytes_behind_give_a_warning(self):
        for kind in "gz", "bz2":
            path = self.file("a", self.PACKED[kind](TEXT) + b"more\n")
            result = self.succeed("convert", path)
            self.assertEqual(result.rows(), self.rows)
            self.assertIn(f"warning: {path}: 5 bytes behind the packed content", result.err)
        path = self.file("a", gzip.compress(TEXT) + b"\0" * 512)
        self.assertNotIn("warning", self.succeed("convert", path).err)

    def test_of_several_files_want_a_name(self):
        other = SAMPLES["tick.csv"].content()
        for pack in zip_of, tar_of:
            with self.subTest(pack):
                path = self.file("two", pack(**{"b10.csv": other, "b9.csv": TEXT}))
                err = self.refuse(1, path)
                self.assertIn("two: the archive holds 2 files: b9.csv, b10.csv; name one behind it, "
                              "as ARCHIVE/b9.csv", err)
                self.assertEqual(self.rows_of(f"{path}/b9.csv"), self.rows)
                self.assertEqual(len(self.rows_of(f"{path}/b10.csv")), 41)
                err = self.refuse(3, f"{path}/b8.csv")
                self.assertIn("two/b8.csv: the archive has no file 'b8.csv', but b9.csv, b10.csv", err)
        self.succeed("convert", f"{path}/b9.csv", "-o", self.path("new/"))
        self.assertEqual(os.listdir(self.path("new")), ["b9.csv"])

    def test_of_one_file_may_have_what_does_not_count(self):
        path = self.file("a.zip", zip_of(**{"deep|in|quotes.csv": TEXT, "__MACOSX|x": b"1",
                                            "deep|.hidden": b"2"}))
        self.assertEqual(self.rows_of(path), self.rows)
        self.assertEqual(self.rows_of(f"{path}/deep/in/quotes.csv"), self.rows)

    def test_of_nothing_are_refused(self):
        self.assertIn("is an empty archive", self.refuse(1, self.file("a.zip", zip_of())))
        hidden = self.file("b.zip", zip_of(**{".hidden": b"1"}))
        self.assertIn("the archive holds no file", self.refuse(1, hidden))
        for kind in "gz", "bz2", "xz", "zst":
            with self.subTest(kind):
                self.refuse(1, self.file("a", self.PACKED[kind](b"")))

    def test_that_are_workbooks_are_refused(self):
        path = self.file("a.xlsx", zip_of(**{"xl|workbook.xml": b"<x/>", "xl|styles.xml": b"<x/>"}))
        self.assertIn("is an Excel workbook", self.refuse(1, path))

    def test_that_are_encrypted_are_refused(self):
        if not shutil.which("zip"):
            self.skipTest("no zip")
        subprocess.run(["zip", "-q", "-P", "secret", "a.zip", "plain.csv"], cwd=self.folder, check=True)
        self.assertIn("a.zip: the archive is encrypted; ", self.refuse(3, self.path("a.zip")))

    def test_in_each_other_have_an_end(self):
        packed = TEXT
        for _ in range(5):
            packed = gzip.compress(packed)
        self.assertIn("archive of an archive", self.refuse(1, self.file("a", packed)))

    def test_lose_their_ending_in_a_folder(self):
        self.succeed("convert", self.file("a.csv.gz", gzip.compress(TEXT)),
                     self.file("b.gz", gzip.compress(TEXT)), "-o", self.path("new/"))
        self.assertEqual(sorted(os.listdir(self.path("new"))), ["a.csv", "b.csv"])

    def test_are_no_files_in_files(self):
        self.assertIn("is no archive of files", self.refuse(3, self.path("plain.csv/a.csv")))


class Marks(InputTest):
    FORMS = {"utf-8": lambda text: b"\xef\xbb\xbf" + text.encode(),
             "le": lambda text: b"\xff\xfe" + text.encode("utf-16-le"),
             "be": lambda text: b"\xfe\xff" + text.encode("utf-16-be")}

    def test_change_nothing(self):
        text = TEXT.decode()
        for name, form in self.FORMS.items():
            for content in text, text.split("\n", 1)[1], "\n\n" + text, text.replace("\n", "\r\n"):
                with self.subTest((name, content[:20])):
                    want = self.run_tool("convert", self.file("want.csv", content)).out
                    result = self.succeed("convert", self.file("a.csv", form(content)))
                    self.assertEqual(result.out, want)
                    self.assertNotIn("warning", result.err)

    def test_are_no_part_of_the_text(self):
        for form in self.FORMS.values():
            found = self.succeed("inspect", "--json", self.file("a.csv", form(TEXT.decode()))).json()
            self.assertEqual(found["header"], TEXT.decode().splitlines()[0])

    def test_tell_the_encoding(self):
        for name, form in self.FORMS.items():
            with self.subTest(name):
                rows = self.rows_of(self.file("a.csv", form(NAMED)))
                self.assertEqual({row[0] for row in rows[1:]}, {"股票"})

    def test_of_one_file_say_nothing_about_the_next(self):
        utf8 = self.file("utf8.csv", NAMED)
        gbk = self.file("gbk.csv", NAMED.encode("gbk"))
        latin = self.file("latin.csv", NAMED.replace("股票", "Ü").encode("latin-1"))
        marked = self.file("marked.csv", self.FORMS["utf-8"](NAMED))
        self.assertEqual(self.succeed("symbols", latin, marked, latin).out.split(), ["Ü", "股票", "Ü"])
        for options, env in ((["--encoding", "utf-8"], {}), ([], {"LC_ALL": "C.UTF-8"})):
            out = self.succeed("symbols", marked, utf8, *options, env=environment(**env)).out
            self.assertEqual(out.split(), ["股票"] * 2)
        out = self.succeed("symbols", marked, gbk, env=environment(LC_ALL="zh_CN.GBK")).out
        self.assertEqual(out.split(), ["股票"] * 2)

    def test_want_a_locale_that_tells_its_own(self):
        err = self.refuse(1, self.file("a.csv", self.FORMS["le"](NAMED)), env=environment(LC_ALL="ru_RU"))
        self.assertIn("the locale doesn't name its own encoding; add --encoding utf-8", err)
        self.rows_of(self.path("a.csv"), "--encoding", "utf-8", env=environment(LC_ALL="ru_RU"))

    def test_are_overruled_by_an_encoding_that_is_asked_for(self):
        path = self.file("a.csv", self.FORMS["utf-8"](NAMED.replace("股票", "Ü")))
        result = self.succeed("symbols", path, "--encoding", "iso-8859-1")
        self.assertEqual(result.out, "Ã\x9c\n")
        self.assertIn("the file is UTF-8 by its first bytes, and is read by --encoding iso-8859-1",
                      result.err)

    def test_count_no_line(self):
        lines = SAMPLES["junk.csv"].content().decode()
        want = self.run_tool("convert", self.file("a.csv", lines))
        for name, form in self.FORMS.items():
            result = self.succeed("convert", self.file("a.csv", form(lines)))
            self.assertEqual((result.out, result.err), (want.out, want.err), name)

    def test_may_be_missing_in_two_byte_text(self):
        for encoding, order in (("utf-16-le", "low"), ("utf-16-be", "high")):
            path = self.file("a.csv", NAMED.encode(encoding))
            result = self.succeed("convert", path)
            self.assertEqual(result.rows()[1][0], "股票")
            self.assertIn(f"warning: {path}: the text has two bytes a character and no mark that says "
                          f"so; it is read as UTF-16, {order} byte first.", result.err)
            said = self.succeed("convert", path, "--encoding", "utf-16")
            self.assertEqual((said.out, "warning" in said.err), (result.out, False))

    def test_of_two_byte_text_come_with_whole_characters(self):
        for name in "le", "be":
            path = self.file("a.csv", self.FORMS[name](NAMED) + b"\0")
            result = self.succeed("convert", path)
            self.assertEqual(len(result.rows()), 19)
            self.assertIn(f"warning: {path}: the text has two bytes a character, and a single one at "
                          "its end that isn't read.", result.err)

    def test_of_two_byte_text_come_with_pairs(self):
        text = NAMED.replace("股票", "A😀")
        for name in "le", "be":
            lines = self.succeed("raw", self.file("a.csv", self.FORMS[name](text))).out.splitlines()
            self.assertEqual(lines, text.splitlines())
        half = self.FORMS["le"](text).replace("😀".encode("utf-16-le"), b"\x3d\xd8", 3)
        path = self.file("a.csv", half)
        result = self.succeed("raw", path)
        self.assertEqual([line[:2] for line in result.out.splitlines()[1:5]],
                         ["A\ufffd"] * 3 + ["A😀"])
        self.assertIn(f"warning: {path}: 3 halves of characters stand alone, and are read as U+FFFD; "
                      "the first is in line 2.", result.err)

    def test_at_the_ends_of_pieces_are_kept_together(self):
        text = "Symbol,Date,Open,High,Low,Close\n" + "".join(
            f"{'😀' * (i % 7)}A,2003/01/{13 + i % 15},10.5,11.5,9.5,10.25\n" for i in range(20_000))
        for name in "le", "be":
            lines = self.succeed("raw", self.file("a.csv", self.FORMS[name](text))).out.splitlines()
            self.assertEqual(lines, text.splitlines())


class NoText(InputTest):
    def test_of_two_bytes_twice_is_refused(self):
        for form in "utf-32", "utf-32-be":
            mark = b"" if form == "utf-32" else b"\0\0\xfe\xff"
            path = self.file("a.csv", mark + TEXT.decode().encode(form))
            for command in "convert", "inspect", "check", "preview", "raw", "symbols":
                with self.subTest((form, command)):
                    result = self.fail_with(1, command, path)
                    self.assertEqual(result.out, "")
                    self.assertIn(f"tabulex: {path}: is text in UTF-32, which isn't read; ", result.err)

    def test_is_told_packed_too(self):
        path = self.file("a.gz", gzip.compress(b"\x7fELF\2\1\1" + bytes(range(256))))
        self.assertIn("This is a program", self.refuse(1, path))

    def test_is_seen_at_once_where_looking_takes_long(self):
        with open(self.path("sparse"), "wb") as f:
            f.truncate(300 << 30)
        for name in self.path("sparse"), "/dev/zero", "/dev/urandom":
            with self.subTest(name):
                start = time.monotonic()
                self.assertRegex(self.refuse(1, name), r"is no text: [0-9,]+ of its first 4,096 bytes")
                self.assertLess(time.monotonic() - start, 30)


class Names(InputTest):
    def setUp(self):
        super().setUp()
        os.makedirs(self.path("data/deep"))
        for name in "a10.csv", "a9.csv", "b.txt", ".hidden.csv", "deep/c.csv":
            self.file("data/" + name, TEXT)

    def names_of(self, *args):
        result = self.succeed("convert", "-n", "-v", *args, cwd=self.folder)
        return [line.split(": ")[1] for line in result.err.splitlines() if "; columns " in line]

    def test_of_folders_stand_for_their_files(self):
        for name in "data", "data/":
            self.assertEqual(self.names_of(name), ["data/a9.csv", "data/a10.csv", "data/b.txt"])
        self.assertEqual(self.names_of("data/deep", "plain.csv"), ["data/deep/c.csv", "plain.csv"])

    def test_that_are_patterns_stand_for_what_fits(self):
        self.assertEqual(self.names_of("data/*.csv"), ["data/a9.csv", "data/a10.csv"])
        self.assertEqual(self.names_of("d*/a?.csv"), ["data/a9.csv"])
        self.assertEqual(self.names_of("*/*/[a-c].csv"), ["data/deep/c.csv"])
        self.assertEqual(self.names_of(self.path("data/.h*")), [self.path("data/.hidden.csv")])

    def test_of_files_are_no_patterns(self):
        self.file("data/[ab]*.csv", TEXT)
        self.assertEqual(self.names_of("data/[ab]*.csv"), ["data/[ab]*.csv"])

    def test_without_files_are_reported(self):
        os.mkdir(self.path("empty"))
        err = self.refuse(3, self.path("empty"))
        self.assertIn("empty: is a folder that holds no files", err)
        err = self.refuse(3, self.path("data/*.json"))
        self.assertIn("*.json: No such file or directory; no file fits the pattern either", err)

    def test_do_not_stop_the_others(self):
        result = self.fail_with(3, "convert", "none*", "data", "-o", "new/", cwd=self.folder)
        self.assertEqual(sorted(os.listdir(self.path("new"))), ["a10.csv", "a9.csv", "b.csv"])
        self.assertIn("none*: No such file", result.err)

    def test_serve_all_commands_that_take_several_files(self):
        for command in ["inspect", "--json"], ["check"]:
            self.succeed(*command, self.path("data"))
        out = self.succeed("inspect", "--json", "--no-count", self.path("data")).out
        self.assertEqual(out.count('"dividers"'), 3)

    def test_of_folders_are_too_many_for_the_others(self):
        err = self.fail_with(3, "raw", self.path("data")).err
        self.assertIn("data: is a folder; name one of the files in it", err)

    def test_of_inputs_are_never_those_of_outputs(self):
        os.symlink("plain.csv", self.path("link.csv"))
        packed = self.file("two.zip", zip_of(a=TEXT, b=TEXT))
        for name, output in (("-", "plain.csv"), ("-", "link.csv"), ("link.csv", "plain.csv"),
                             ("two.zip/a", "two.zip"), ("/dev/stdin", "plain.csv")):
            with self.subTest((name, output)), open(self.path("plain.csv"), "rb") as f:
                result = self.fail_with(2, "convert", name, "-o", output, "--format", "csv", stdin=f,
                                        cwd=self.folder)
                self.assertIn("the output would replace a file that is read", result.err)
        self.refuse(1, "-", "-o", "/dev/null", stdin=subprocess.DEVNULL)  # a device may be both
        self.assertEqual(self.read("plain.csv").encode(), TEXT)
        self.assertTrue(zipfile.is_zipfile(packed))


class Dialogs(InputTest):
    def test_want_files_that_can_be_opened_as_they_are(self):
        os.mkfifo(self.path("pipe"))
        cases = ((1, self.file("a.csv", gzip.compress(TEXT)), "is packed; unpack it first"),
                 (3, self.path("pipe"), "can be read once only"), (3, "-", "can be read once only"))
        for status, name, reason in cases:
            with self.subTest(name):
                self.assertIn(reason, self.fail_with(status, "import", name).err)


if __name__ == "__main__":
    unittest.main()
