"""Completions: each has every option of every command, and the shells accept them."""
import os
import re
import shutil
import subprocess
import unittest

from tool import ToolTest

SHARE = os.environ["TABULEX_SHARE"]
BASH = os.path.join(SHARE, "bash-completion/completions/tabulex")
ZSH = os.path.join(SHARE, "zsh/site-functions/_tabulex")
TYPES = ["Symbol", "Date", "Time", "Open", "High", "Low", "Close", "Price", "Volume",
         r"Up\ Volume", r"Down\ Volume", r"Unchanged\ Volume", r"Total\ Volume", r"Up\ Ticks",
         r"Down\ Ticks", r"Unchanged\ Ticks", r"Total\ Ticks", r"Open\ Interest", "none", "unknown"]
FISH = os.path.join(SHARE, "fish/vendor_completions.d/tabulex.fish")


def read(path):
    with open(path, encoding="utf-8") as file:
        return file.read()


def shell(*command, **options):
    done = subprocess.run(command, stdout=subprocess.PIPE, stderr=subprocess.PIPE, text=True,
                          timeout=60, **options)
    if done.returncode or done.stderr:
        raise AssertionError(f"{command}: status {done.returncode}\n{done.stdout}{done.stderr}")
    return done.stdout


def needs(name):
    return unittest.skipUnless(shutil.which(name), f"no {name}")


class CompletionTest(ToolTest):
    def help_options(self):
        """All names of the options that the help of each command shows; "" is the tool itself."""
        overview = self.succeed("--help").out
        names = re.findall(r"^  (\w+)  ", overview.split("Commands:")[1].split("\n\n")[0], re.M)
        self.assertIn("convert", names)
        options = {}
        for name in ["", *names]:
            out = self.succeed(*name.split(), "--help").out
            found = re.findall(r"^  (?:(-\w),)?(--[a-z][a-z-]*)(?= |$)", out, re.M)
            options[name] = {word for pair in found for word in pair if word}
            self.assertLess({"--help", "-h", "--quiet"}, options[name])
        return options


class Bash(CompletionTest):
    def complete(self, *words):
        script = (f'source {BASH}; complete -p tabulex > /dev/null; COMP_WORDS=("$@");'
                  ' COMP_CWORD=$(($# - 1)); _tabulex; printf "%s\\n" "${COMPREPLY[@]}"')
        return shell("bash", "-c", script, "bash", "tabulex", *words, cwd=self.folder).split("\n")[:-1]

    def test_accepts_the_script(self):
        shell("bash", "-n", BASH)

    def test_offers_every_option_of_every_command(self):
        for command, options in self.help_options().items():
            with self.subTest(command):
                self.assertEqual(set(self.complete(*command.split(), "-")), options)

    def test_offers_what_may_follow(self):
        self.file("some file.csv", "")
        commands = [name for name in self.help_options() if name]
        cases = [(["conv"], ["convert"]), ([""], commands), (["--lang", "zh", "ch"], ["check"]),
                 (["convert", "--dry"], ["--dry-run"]),
                 (["convert", "--format", ""], ["csv", "jsonl", "sqlite"]),
                 (["convert", "--format", "=", "j"], ["jsonl"]),
                 (["convert", "--format", "="], ["csv", "jsonl", "sqlite"]),
                 (["inspect", "--color", "a"], ["auto", "always"]),
                 (["convert", "some"], ["some file.csv"]),
                 (["convert", "-o", "some"], ["some file.csv"]),
                 (["convert", "x", "--rejects", ""], ["some file.csv"]),
                 (["inspect", "--resolution", "T"], ["Ticks", "Tick\\ Bars"]),
                 (["inspect", "--encoding", "w"], ["windows-1252", "windows-1251"]),
                 (["convert", "--price-multiplier", "=", "1/100"],
                  ["1/100", "1/1000", "1/10000", "1/100000", "1/1000000"]),
                 (["convert", "--column", "3", "=", "Open"], ["Open", "Open\\ Interest"]),
                 (["convert", "--column", "=", "3", "=", "n"], ["none"]),
                 (["convert", "--column", "3", "="], TYPES), (["convert", "--column", "3"], [""]),
                 (["convert", "--size", ""], [""]), (["template", "some"], [""])]
        for words, offered in cases:
            with self.subTest(words):
                self.assertEqual(self.complete(*words), offered)


    def test_offers_what_is_taken(self):
        self.file("x.csv", "Date,Open,High,Low,Close\n2003-01-01,1,1,1,1\n2003-01-02,1,1,1,1\n")
        options = {name: self.complete("convert", name, "")
                   for name in ("--encoding", "--resolution", "--price-multiplier")}
        options["--column"] = ["5=" + name for name in self.complete("convert", "--column", "5", "=")]
        for option, values in options.items():
            for value in values:
                with self.subTest(f"{option} {value}"):
                    done = self.run_tool("convert", "--dry-run", option, value.replace("\\", ""),
                                         "x.csv")
                    self.assertNotEqual(done.status, 2, done.err)


class Zsh(CompletionTest):
    def test_has_every_option_of_every_command(self):
        text = read(ZSH)
        cases = dict(re.findall(r"^    (\w+)\)\n(.*?);;$", text, re.M | re.S))
        cases[""] = text.split("_arguments -C")[1].split("'1:command")[0]
        for command, options in self.help_options().items():
            with self.subTest(command):
                found = re.findall(r"^        '\*?(--[a-z-]+)=?\[", cases[command], re.M)
                for pair in re.findall(r"^        '\((-\w --[a-z-]+)\)'", cases[command], re.M):
                    found += pair.split()
                self.assertEqual(set(found), options)

    @needs("zsh")
    def test_accepts_the_script(self):
        shell("zsh", "-n", ZSH)


class Fish(CompletionTest):
    def test_has_every_option_of_every_command(self):
        lines = read(FISH).splitlines()
        for command, options in self.help_options().items():
            with self.subTest(command):
                condition = f"'__fish_seen_subcommand_from {command}'" if command else \
                    "__fish_use_subcommand"
                found = set()
                for line in lines:
                    if line.startswith(f"complete -c tabulex -n {condition} "):
                        found |= {"--" + name for name in re.findall(r" -l ([a-z-]+)", line)}
                        found |= {"-" + name for name in re.findall(r" -s (\w)", line)}
                self.assertEqual(found, options)

    @needs("fish")
    def test_accepts_the_script_and_completes(self):
        for words, offered in (("conv", ["convert"]), ("convert --form", ["--format"]),
                               ("convert --format ", ["csv", "jsonl", "sqlite"]),
                               ("convert --resolution Tick", ["Tick Bars", "Ticks"]),
                               ("convert --column 3=Lo", ["3=Low"])):
            with self.subTest(words):
                out = shell("fish", "--no-config", "-c",
                            f"source {FISH}; complete -C 'tabulex {words}'")
                self.assertEqual([line.split("\t")[0] for line in out.splitlines()], offered)


if __name__ == "__main__":
    unittest.main()
