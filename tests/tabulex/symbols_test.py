"""The symbols of a file: each once, in the order of the records."""
import signal
import subprocess
import unittest

from tool import TOOL, ToolTest, environment

HEADER = "Symbol,Date,Time,Open,High,Low,Close,Volume\n"


def bars(symbol, count):
    return "".join(f"{symbol},1990-01-01,{m // 60:02}:{m % 60:02}:00,10.5,10.75,10.25,10.5,{m}\n"
                   for m in range(count))


class Symbols(ToolTest):
    def test_are_listed_once_each_in_order(self):
        path = self.file("a.csv", HEADER + bars("MSFT", 30) + bars("IBM", 20) + bars("MSFT", 5))
        self.assertEqual(self.succeed("symbols", path).out, "MSFT\nIBM\n")

    def test_of_several_files_come_file_by_file(self):
        one = self.file("a.csv", HEADER + bars("A", 30))
        two = self.file("b.csv", HEADER + bars("B", 30))
        self.assertEqual(self.succeed("symbols", one, two).out, "A\nB\n")

    def test_need_a_column(self):
        result = self.run_tool("symbols", self.sample("long.csv"))
        self.assertEqual((result.status, result.out), (1, ""))
        self.assertIn("the file has no Symbol column", result.err)

    def test_of_a_file_that_is_not_there(self):
        self.fail_with(3, "symbols", self.path("none.csv"))

    def test_end_quietly_when_nobody_reads_on(self):
        path = self.file("a.csv", HEADER + "".join(bars(f"S{n}", 3) for n in range(3000)))
        done = subprocess.run(f"{' '.join(TOOL)} symbols {path} | head -2", shell=True, text=True,
                              capture_output=True, env=environment(), timeout=60)
        self.assertEqual((done.stdout, done.stderr), ("S0\nS1\n", ""))


class Interrupts(ToolTest):
    def test_end_the_list(self):
        path = self.file("a.csv", HEADER + "".join(bars(f"S{n}", 100) for n in range(3000)))
        tool = subprocess.Popen([*TOOL, "symbols", path], stdout=subprocess.PIPE,
                                stderr=subprocess.PIPE, env=environment())
        self.assertEqual(tool.stdout.readline(), b"S0\n")
        tool.send_signal(signal.SIGINT)
        tool.stdout.read()
        self.assertEqual(tool.wait(60), 130)
        self.assertEqual(tool.stderr.read(), b"")
        tool.stdout.close()
        tool.stderr.close()


if __name__ == "__main__":
    unittest.main()
