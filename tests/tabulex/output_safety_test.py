"""Outputs that nobody loses anything by: where they may go, who may read them, and what a run
leaves that fails or is killed."""
import errno
import os
import random
import signal
import stat
import subprocess
import time
import unittest

from tool import SAMPLES, TOOL, ToolTest, environment, expected_rows, minutes_text

WEEK = "".join(",".join(row) + "\n" for row in expected_rows(SAMPLES["week.csv"]))


class Endings(ToolTest):
    def test_that_stand_for_no_format_are_refused_with_those_that_do(self):
        for name in ("x.parquet", "x.json", "x.csv.gz", "x.TSV", "new/x.xlsx"):
            with self.subTest(name):
                result = self.fail_with(2, "convert", self.sample("week.csv"), "-o",
                                        self.path(name))
                for word in (f"'{os.path.splitext(name)[1].lower()}'", ".csv", ".jsonl", ".ndjson", ".db",
                             ".sqlite", ".sqlite3", "--format"):
                    self.assertIn(word, result.err)
        self.assert_entries("week.csv")

    def test_may_be_any_where_the_format_is_said(self):
        self.succeed("convert", self.sample("week.csv"), "--format", "csv", "-o", self.path("x.dat"))
        self.assertEqual(self.read("x.dat"), WEEK)

    def test_need_not_be_there(self):
        for name in ("plain", ".hidden", "dot."):
            self.succeed("convert", self.sample("week.csv"), "-o", self.path(name))
            self.assertEqual(self.read(name), WEEK)

    def test_of_folders_and_pipes_say_nothing(self):
        os.mkdir(self.path("out.d"))
        self.succeed("convert", self.sample("week.csv"), "-o", self.path("out.d"))
        self.assertEqual(self.read("out.d/week.csv"), WEEK)
        os.mkfifo(self.path("pipe.in"))
        with subprocess.Popen(["cat", self.path("pipe.in")], stdout=subprocess.PIPE) as reader:
            self.succeed("convert", self.sample("week.csv"), "-o", self.path("pipe.in"))
            self.assertEqual(reader.stdout.read().decode(), WEEK)


class Streams(ToolTest):
    NAMES = ("/dev/stdout", "/dev/fd/1", "/proc/self/fd/1", "/proc/thread-self/fd/1")

    def test_are_appended_to_by_name_and_never_replaced(self):
        os.symlink("/dev/stdout", self.path("link"))
        for name in (*self.NAMES, self.path("link")):
            with self.subTest(name):
                with open(self.file("log", "old\n"), "ab") as log:
                    done = subprocess.run([*TOOL, "convert", "-q", self.sample("week.csv"), "-o", name],
                                          stdout=log, env=environment(), timeout=60)
                self.assertEqual(done.returncode, 0)
                self.assertEqual(self.read("log"), "old\n" + WEEK)

    def test_are_no_place_for_a_database(self):
        with open(self.path("log"), "wb") as log:
            done = subprocess.run([*TOOL, "convert", self.sample("week.csv"), "-o", "/dev/stdout", "--format",
                                   "sqlite"], stdout=log, stderr=subprocess.PIPE, env=environment(), timeout=60)
        self.assertEqual(done.returncode, 3)
        self.assertIn(b"it isn't a regular file", done.stderr)
        self.assertEqual(self.read("log"), "")

    def test_may_be_pipes(self):
        for name in self.NAMES:
            self.assertEqual(self.succeed("convert", self.sample("week.csv"), "-o", name).out, WEEK)

    def test_do_not_take_rows_and_rejects_at_once(self):
        for output in ("-", "/dev/stdout"):
            self.fail_with(2, "convert", self.sample("junk.csv"), "-o", output, "--rejects",
                           "/dev/fd/1")

    def test_are_not_the_file_that_is_read(self):
        path = self.sample("week.csv")
        for name in ("-", "/dev/stdout"):
            with self.subTest(name), open(path, "ab") as again:
                done = subprocess.run([*TOOL, "convert", path, "-o", name], stdout=again,
                                      stderr=subprocess.PIPE, env=environment(), timeout=60)
                self.assertEqual(done.returncode, 2, done.stderr)
        with open(path, "rb") as f:
            self.assertEqual(f.read(), SAMPLES["week.csv"].content())

    def closed(self, number, *command):
        done = subprocess.run(["sh", "-c", f'exec "$@" {number}>&-', "sh", *TOOL, *command],
                              stdout=subprocess.PIPE, stderr=subprocess.PIPE, env=environment(), timeout=60)
        return done.returncode, done.stderr.decode()

    def test_that_are_closed_are_a_fault_where_they_are_needed(self):
        path = self.sample("week.csv")
        for command in (["convert", path], ["inspect", path], ["raw", path], ["--help"],
                        ["convert", "--help"], ["--version"]):
            with self.subTest(command):
                status, err = self.closed(1, *command)
                self.assertEqual(status, 3, err)
                self.assertIn("standard output can't be written: it is closed", err)

    def test_that_are_closed_are_never_taken_for_a_file(self):
        path = self.sample("junk.csv")
        for number in (1, 2):
            with self.subTest(number):
                status, _ = self.closed(number, "convert", path, "-o", self.path("out.csv"))
                self.assertEqual(status, 0)
                rows = self.read("out.csv")
                self.assertEqual(rows, self.succeed("convert", path).out)
                os.remove(self.path("out.csv"))

    @unittest.skipUnless(os.path.exists("/dev/full"), "no device that is always full")
    def test_that_are_full_are_a_fault_of_the_help(self):
        for command in (["--help"], ["convert", "--help"], ["--version"]):
            with self.subTest(command), open("/dev/full", "wb") as full:
                done = subprocess.run([*TOOL, *command], stdout=full, stderr=subprocess.PIPE,
                                      env=environment(), timeout=60)
                self.assertEqual(done.returncode, 3)
                self.assertIn(b"No space left on device", done.stderr)


class Readers(ToolTest):
    def head(self, *command):
        """The status and errors of a command whose output nobody reads after its beginning."""
        tool = subprocess.Popen([*TOOL, *command], stdout=subprocess.PIPE, stderr=subprocess.PIPE,
                                env=environment())
        tool.stdout.read(10)
        tool.stdout.close()
        err = tool.stderr.read().decode()
        tool.stderr.close()
        return tool.wait(120), err

    def test_that_go_early_get_no_claim_of_a_commit(self):
        big = self.file("big.csv", minutes_text(30_000))
        status, err = self.head("convert", big)
        self.assertEqual(status, 0, err)
        self.assertTrue(err.endswith("result=rollback\n"), err)
        self.assertEqual(err.count("result="), 1)
        for word in ("tabulex:", "warning:", "commit"):
            self.assertNotIn(word, err)

    def test_that_go_early_end_the_other_files_too(self):
        big = self.file("big.csv", minutes_text(30_000))
        status, err = self.head("convert", big, self.sample("week.csv"))
        self.assertEqual(status, 0, err)
        self.assertEqual(err.count("result="), 2, "of the file, and of the call")

    def test_that_go_early_save_no_environment(self):
        env = self.file("my.env", "")
        big = self.file("big.csv", minutes_text(30_000))
        self.assertEqual(self.head("convert", big, "--environment", env, "--save-environment")[0], 0)
        self.assertEqual(self.read("my.env"), "")


class Modes(ToolTest):
    def mode(self, name):
        return stat.S_IMODE(os.stat(self.path(name)).st_mode)

    def convert(self, out, umask=0o022, **options):
        return self.run_tool("convert", self.sample("week.csv"), "-o", self.path(out),
                             preexec_fn=lambda: os.umask(umask), **options)

    def test_of_new_files_heed_the_mask(self):
        for name in ("a.csv", "a.db", "a.jsonl"):
            for mask, mode in ((0o022, 0o644), (0o077, 0o600), (0o002, 0o664)):
                with self.subTest(name=name, mask=mask):
                    self.assertEqual(self.convert(name, mask).status, 0)
                    self.assertEqual(self.mode(name), mode)
                    os.remove(self.path(name))

    def test_of_replaced_files_are_kept_but_for_the_special_bits(self):
        for old, new in ((0o600, 0o600), (0o664, 0o664), (0o6755, 0o755), (0o222, 0o222)):
            with self.subTest(oct(old)):
                os.chmod(self.file("out.csv", "old"), old)
                self.assertEqual(self.convert("out.csv").status, 0)
                self.assertEqual(self.mode("out.csv"), new)
                os.remove(self.path("out.csv"))

    def test_let_nobody_else_open_what_is_being_made(self):
        for name in ("out.csv", "out.db"):
            big = self.file("big.csv", minutes_text(30_000))
            tool = subprocess.Popen([*TOOL, "convert", "-q", big, "-o", self.path(name)], env=environment(),
                                    preexec_fn=lambda: os.umask(0))
            modes = []
            while tool.poll() is None:
                try:
                    modes.append(self.mode(name + ".0.part"))
                except FileNotFoundError:
                    pass
            self.assertEqual(tool.returncode, 0)
            self.assertEqual(modes[0], 0o600)
            self.assertGreater(modes.count(0o600), len(modes) / 2)  # not the moment of the commit
            self.assertEqual(self.mode(name), 0o666)

    def test_without_writing_keep_the_file(self):
        for name in ("out.csv", "out.db"):
            with self.subTest(name):
                self.assertEqual(self.convert(name).status, 0)
                os.chmod(self.path(name), 0o444)
                with open(self.path(name), "rb") as f:
                    old = f.read()
                result = self.convert(name)
                self.assertEqual(result.status, 3)
                self.assertIn("the file is read-only", result.err)
                self.assertTrue(result.summary().endswith("result=refused"))
                self.fail_with(3, "convert", "-n", self.sample("week.csv"), "-o", self.path(name))
                with open(self.path(name), "rb") as f:
                    self.assertEqual(f.read(), old)
                os.chmod(self.path(name), 0o644)
        self.assert_entries("week.csv", "out.csv", "out.db")


class Links(ToolTest):
    def test_in_a_ring_are_refused(self):
        os.symlink("b.csv", self.path("a.csv"))
        os.symlink("a.csv", self.path("b.csv"))
        for option in ("-o", "--rejects"):
            result = self.fail_with(3, "convert", self.sample("week.csv"), option, self.path("a.csv"))
            self.assertIn(os.strerror(errno.ELOOP), result.err)

    def test_stay_and_lead_to_the_new_rows(self):
        os.makedirs(self.path("far/away"))
        os.symlink("far/away", self.path("near"))
        for old in (True, False):
            with self.subTest(old):
                if old:
                    self.file("far/up.csv", "old")
                os.symlink("../up.csv", self.path("far/away/link.csv"))
                self.succeed("convert", self.sample("week.csv"), "-o", self.path("near/link.csv"))
                self.assertTrue(os.path.islink(self.path("far/away/link.csv")))
                self.assertEqual(self.read("far/up.csv"), WEEK)
                self.assertEqual(os.listdir(self.path("far/away")), ["link.csv"])
                os.remove(self.path("far/away/link.csv"))
                os.remove(self.path("far/up.csv"))

    def test_do_not_hide_a_log_that_is_the_input_or_an_output(self):
        path = self.sample("junk.csv")
        os.symlink(path, self.path("link"))
        os.link(path, self.path("hard"))
        for name in ("junk.csv", "link", "hard"):
            for command in ("convert", "inspect", "raw"):
                with self.subTest((name, command)):
                    err = self.fail_with(2, command, path, "--report-log", self.path(name)).err
                    self.assertIn("--report-log needs a file of its own", err)
        for options in (["-o", self.path("out.csv")], ["--rejects", self.path("out.csv")],
                        ["--report", self.path("out.csv")]):
            self.fail_with(2, "convert", path, *options, "--report-log", self.path("./out.csv"))
        for name in ("junk.csv", "link", "hard"):
            self.fail_with(2, "convert", path, "--report", self.path(name))
        self.fail_with(2, "convert", path, "--report", "-", "-o", "/dev/stdout")
        with open(path, "rb") as f:
            self.assertEqual(f.read(), SAMPLES["junk.csv"].content())


class Leftovers(ToolTest):
    def test_of_a_killed_run_are_taken_over(self):
        self.file("out.csv.0.part", "left behind")
        self.succeed("convert", self.sample("week.csv"), "-o", self.path("out.csv"))
        self.assertEqual(self.read("out.csv"), WEEK)
        self.assert_entries("week.csv", "out.csv")

    def test_are_no_links(self):
        os.symlink(self.file("precious", "kept"), self.path("out.csv.0.part"))
        self.succeed("convert", self.sample("week.csv"), "-o", self.path("out.csv"))
        self.assertEqual(self.read("precious"), "kept")
        self.assertEqual(self.read("out.csv"), WEEK)

    def test_of_a_run_that_goes_on_are_let_alone(self):
        tool = subprocess.Popen([*TOOL, "convert", "-q", self.file("big.csv", minutes_text(60_000)), "-o",
                                 self.path("out.csv")], env=environment())
        while not os.path.exists(self.path("out.csv.0.part")) and tool.poll() is None:
            time.sleep(0.005)
        tool.send_signal(signal.SIGSTOP)
        self.succeed("convert", self.sample("week.csv"), "-o", self.path("out.csv"))
        self.assertEqual(self.read("out.csv"), WEEK)
        tool.send_signal(signal.SIGCONT)
        self.assertEqual(tool.wait(60), 0)
        self.assertEqual(self.read("out.csv").count("\n"), 60_001)

    def test_never_have_the_name_of_the_output(self):
        """A run is killed at random moments, and the next one finds its place."""
        big = self.file("big.csv", minutes_text(30_000))
        random.seed(14)
        for name in ("out.csv", "out.db"):
            start = time.monotonic()
            self.succeed("convert", big, "-o", self.path(name))
            took = time.monotonic() - start
            with open(self.path(name), "rb") as f:
                whole = f.read()
            os.remove(self.path(name))
            killed = 0
            for _ in range(10):
                tool = subprocess.Popen([*TOOL, "convert", "-q", big, "-o", self.path(name)],
                                        env=environment())
                time.sleep(random.uniform(0, took))
                tool.kill()
                killed += tool.wait(60) == -signal.SIGKILL
                if os.path.exists(self.path(name)):
                    with open(self.path(name), "rb") as f:
                        self.assertEqual(f.read(), whole)
                    os.remove(self.path(name))
            self.assertGreater(killed, 0)
            self.succeed("convert", big, "-o", self.path(name))
            with open(self.path(name), "rb") as f:
                self.assertEqual(f.read(), whole)
            os.remove(self.path(name))
            self.assert_entries("big.csv")


class Disks(ToolTest):
    def test_that_are_full_leave_nothing(self):
        big = self.file("big.csv", minutes_text(40_000))
        self.sample("week.csv")
        for name in ("out.csv", "out.jsonl", "out.db"):
            with self.subTest(name):
                status, out, err = self.run_on_small_disk(self.path("week.csv"), "convert", big, "-o", name)
                self.assertEqual(status, 3, err)
                self.assertRegex(err, "No space left on device|disk is full")
                self.assertIn("result=rollback", err)
                self.assertEqual(out.split(), ["unchanged"])  # the input, and no output

    def run_read_only(self, *args):
        script = ('mkdir -p "$0/disk" && mount -t tmpfs none "$0/disk" && cp "$0/week.csv" "$0/disk" && '
                  'mount -o remount,ro "$0/disk" || exit 99; cd "$0/disk"; "$@"; status=$?; ls; exit $status')
        try:
            done = subprocess.run(["unshare", "--mount", "--map-root-user", "sh", "-c", script, self.folder,
                                   *TOOL, *args], env=environment(), stdin=subprocess.DEVNULL, timeout=60,
                                  stdout=subprocess.PIPE, stderr=subprocess.PIPE)
        except FileNotFoundError:
            self.skipTest("no command unshare")
        if done.returncode == 99 or done.stderr.startswith(b"unshare:"):
            self.skipTest("no file system can be mounted")
        return done.returncode, done.stdout.decode(), done.stderr.decode()

    def test_that_cannot_be_written_are_told_before_the_run(self):
        self.sample("week.csv")
        for options in (["-o", "out.csv"], ["-o", "out.db"], ["--rejects", "bad.csv"], ["-o", "week2/"]):
            with self.subTest(options):
                status, out, err = self.run_read_only("convert", "week.csv", *options)
                self.assertEqual(status, 3, err)
                self.assertIn("Read-only file system" if options[1] != "week2/" else "can't be written", err)
                self.assertIn("result=refused", err)
                self.assertEqual(out.split(), ["week.csv"])


class Environments(ToolTest):
    def test_that_cannot_be_saved_are_told_before_the_run(self):
        env = self.file("my.env", "")
        os.chmod(env, 0o444)
        for options in ([], ["-n"]):
            result = self.fail_with(3, "convert", self.sample("week.csv"), "-o", self.path("out.csv"),
                                    "--environment", env, "--save-environment", *options)
            self.assertIn("'" + env + "' can't be written: the file is read-only", result.err)
            self.assertTrue(result.summary().endswith("result=refused"))
        self.assert_entries("week.csv", "my.env")

    def test_are_no_output(self):
        env = self.file("my.env", "")
        for options in (["-o", env, "--format", "csv"], ["--rejects", env]):
            self.fail_with(2, "convert", self.sample("week.csv"), "--environment", env, "--save-environment",
                           *options)
        self.assertEqual(self.read("my.env"), "")

    def test_leave_nothing_of_a_trial(self):
        env = self.file("my.env", "")
        self.succeed("convert", "-n", self.sample("week.csv"), "--environment", env, "--save-environment")
        self.assertEqual(self.read("my.env"), "")
        self.assert_entries("week.csv", "my.env")


class Trials(ToolTest):
    def test_write_the_rejects_that_were_asked_for(self):
        path = self.sample("junk.csv")
        self.succeed("convert", path, "-o", self.path("out.csv"), "--rejects", self.path("real.csv"))
        os.remove(self.path("out.csv"))
        self.succeed("convert", "-n", path, "-o", self.path("out.csv"), "--rejects", self.path("r.csv"))
        self.assertEqual(self.read("r.csv"), self.read("real.csv"))
        self.assertGreater(self.read("r.csv").count("\n"), 1)
        self.assert_entries("junk.csv", "real.csv", "r.csv")


if __name__ == "__main__":
    unittest.main()
