"""Ctrl-C, a request to terminate and a terminal that goes, at any moment of a conversion."""
import os
import pty
import signal
import subprocess
import time
import unittest

from tool import TOOL, ToolTest, environment, minutes_text


def wait_until(condition, seconds=60):
    deadline = time.time() + seconds
    while not condition():
        if time.time() > deadline:
            raise AssertionError("nothing happened")
        time.sleep(0.02)


class Interrupts(ToolTest):
    def begun(self):
        return any(name.startswith("out.csv.") for name in os.listdir(self.folder))

    def test_roll_back_and_leave_nothing(self):
        self.file("big.csv", minutes_text(400_000))
        for number in (signal.SIGINT, signal.SIGTERM, signal.SIGHUP):
            with self.subTest(number):
                tool = subprocess.Popen([*TOOL, "convert", self.path("big.csv"), "-q",
                                         "-o", self.path("out.csv"), "--rejects",
                                         self.path("rejects.csv")],
                                        stderr=subprocess.DEVNULL, env=environment())
                wait_until(self.begun)
                tool.send_signal(number)
                self.assertEqual(tool.wait(60), 128 + number)
                self.assert_entries("big.csv")

    def test_of_databases_and_commands_without_output_have_the_same_status(self):
        big = self.file("big.csv", minutes_text(400_000))
        for number in (signal.SIGTERM, signal.SIGHUP):
            tool = subprocess.Popen([*TOOL, "convert", big, "-q", "-o", self.path("out.db")],
                                    stderr=subprocess.DEVNULL, env=environment())
            wait_until(lambda: os.path.exists(self.path("out.db.0.part")))
            tool.send_signal(number)
            self.assertEqual(tool.wait(60), 128 + number)
            self.assert_entries("big.csv")
            tool = subprocess.Popen([*TOOL, "raw", big], stdout=subprocess.PIPE, env=environment())
            tool.stdout.read(1)
            tool.send_signal(number)
            self.assertEqual(tool.wait(60), 128 + number)
            tool.stdout.close()

    def test_that_were_to_be_ignored_stay_ignored(self):
        path = self.file("big.csv", minutes_text(100_000))
        for number in (signal.SIGHUP, signal.SIGINT):
            with self.subTest(number):
                tool = subprocess.Popen([*TOOL, "convert", path, "-q", "-o", self.path("out.csv")],
                                        env=environment(),
                                        preexec_fn=lambda n=number: signal.signal(n, signal.SIG_IGN))
                wait_until(self.begun)
                tool.send_signal(number)
                self.assertEqual(tool.wait(60), 0)
                self.assertEqual(self.read("out.csv").count("\n"), 100_001)
                os.remove(self.path("out.csv"))

    def test_of_a_terminal_that_goes_may_come_twice(self):
        tool = subprocess.Popen([*TOOL, "convert", self.file("big.csv", minutes_text(400_000)), "-q", "-o",
                                 self.path("out.csv")], env=environment())
        wait_until(self.begun)
        tool.send_signal(signal.SIGSTOP)
        tool.send_signal(signal.SIGHUP)
        tool.send_signal(signal.SIGCONT)
        time.sleep(0.002)
        tool.send_signal(signal.SIGHUP)
        self.assertEqual(tool.wait(60), 129)
        self.assert_entries("big.csv")

    def test_end_the_program_at_once_the_second_time(self):
        # Nobody reads the pipe, so the tool waits in a write and can't roll back.
        tool = subprocess.Popen([*TOOL, "convert", self.file("big.csv", minutes_text(100_000))],
                                stdout=subprocess.PIPE, stderr=subprocess.DEVNULL,
                                env=environment())
        self.addCleanup(tool.stdout.close)
        self.wait_until_it_hangs(tool.pid)
        tool.send_signal(signal.SIGINT)
        time.sleep(0.3)
        self.assertIsNone(tool.poll())
        tool.send_signal(signal.SIGINT)
        self.assertEqual(tool.wait(60), 130)

    @staticmethod
    def wait_until_it_hangs(pid):
        """Until one of its threads writes to standard output."""
        def system_call_of(task):
            with open(f"/proc/{pid}/task/{task}/syscall", encoding="ascii") as f:
                return f.read().split()

        def writes_to_standard_output():
            return any(system_call_of(task)[:2] == ["1", "0x1"] for task in os.listdir(f"/proc/{pid}/task"))

        try:
            wait_until(writes_to_standard_output)
        except OSError:  # a system may not allow this
            time.sleep(2)

    def test_are_heard_while_a_question_stands(self):
        main, terminal = pty.openpty()
        tool = subprocess.Popen([*TOOL, "convert", self.sample("junk.csv"), "--on-error", "ask",
                                 "-o", self.path("out.csv")],
                                stdin=terminal, stderr=subprocess.PIPE, env=environment())
        os.close(terminal)
        self.addCleanup(os.close, main)
        wait_until(self.begun)
        time.sleep(0.5)
        tool.send_signal(signal.SIGINT)
        self.assertEqual(tool.wait(60), 130)
        self.assertTrue(tool.stderr.read().decode().endswith("result=rollback\n"))
        tool.stderr.close()
        self.assert_entries("junk.csv")


if __name__ == "__main__":
    unittest.main()
