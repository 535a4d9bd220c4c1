"""Runs the same calls with the native tool and with the one for Windows, each in a folder of
its own, and compares what they print, their statuses and the files that they leave.

    like_native.py NATIVE_TOOL RUNNER WINDOWS_TOOL KEPT_SAMPLES
"""
import concurrent.futures
import os
import shlex
import subprocess
import sys
import tempfile

import make_samples

SKIPPED = 77  # the status by which a test says so

CONVERSIONS = """
convert week.csv -o out.csv
convert week.csv -o out.jsonl
convert week.csv -o out.txt --format jsonl
convert symbols.csv --format jsonl
convert symbols.csv --symbol DEF
convert symbols.csv --symbol def
convert symbols-quoting.csv --format jsonl
convert long.csv --from 2003-01-14T00:00 --to 2003-01-14T00:02:00
convert long.csv --from 2033-01-01
convert descending.csv --from 2003-01-20 --to 2003-01-22 -v
convert long.csv --portion 7:9
convert minute-5.csv --resolution Minutes --size 10 --no-check
convert minute-5.csv --resolution 'Minutes|5' --bar-end-time
convert minute-5.csv --offer 2=Minutes
convert week.csv --price-multiplier 1/100 --volume-multiplier 1000
convert week.csv --lines-to-skip 3
convert week.csv --dividers , --column 6=none
convert date-06.csv --column 1=Date:*d/*m/*y --format jsonl
convert junk.csv -o out.csv --rejects bad.csv
convert junk.csv -o out.csv --rejects bad.csv --on-error stop
convert junk.csv --max-errors 2
convert junk.csv -n --quiet
convert tick.csv week.csv junk.csv -o new/
convert week.csv missing.csv tick.csv
convert date-01.csv date-02.csv -o new/ --format jsonl --rejects bad.csv
convert week.csv --environment mine.env --save-environment -o out.csv --column 1=Date:*y-*d-*m
convert gbk-symbol.csv --encoding gbk
convert gbk-symbol.csv --encoding 936 -o out.jsonl
"""

READINGS = """
inspect week.csv
inspect --no-count tick.csv week.csv
inspect --color always junk.csv
inspect --json --environment mine.env week.csv
inspect --json --encoding gbk gbk-symbol.csv
inspect --lang zh descending.csv
preview junk.csv --from 103 --count 4
preview symbols.csv --symbol DEF --from 10 --count 4
preview long.csv --count 2000
preview gbk-symbol.csv --encoding gbk
preview week.csv --column 6=none
check minute-5.csv week.csv descending.csv
check week.csv --size 9
check junk.csv --from 2003-03-02 --to 2003-03-01
raw two-byte.txt
raw junk.csv --from 103 --count 4
raw junk.csv --last
raw crlf.csv --count-only
symbols symbols.csv symbols-quoting.csv
symbols week.csv
environment mine.env
environment mine.env other.env
template Date *y/*m/*d 01/02/03
template Date *d-mmm-*y 25-Dec-03
template Date *y/*m/*d 31/02/99 --json
template Time *h:*mtt@pm 12:30am
template Time *h:*m 24:60 --lang zh
template Price *i.*f 1,5 --json
template Volume *i 12.5
template Symbol * 'A B,C'
template Open *i 1
"""

REFUSALS = """

--help
--version
inspect --help
convert --help
symbols --help
environment --help
inspct week.csv
convert --form csv week.csv
convert week.csv --format jsnl
convert week.csv --max-errors -1
convert week.csv --column x
convert week.csv --encoding martian
convert week.csv --offer 2=A,4=A
convert week.csv --replace
convert week.csv -o week.csv
convert week.csv --rejects -
convert week.csv tick.csv -o out.csv
convert week.csv -o missing/out.csv
convert week.csv --price-multiplier 7
convert week.csv --symbol ABC
convert nothing.txt
convert nothing.txt --lang zh
convert nothing.txt --no-check
check nothing.txt missing.csv folder
inspect missing.csv
inspect folder
inspect --json empty.txt
raw --last empty.txt
preview binary.bin
environment missing.env
environment week.csv
template Dat x y
template Date '' 1
/inspect week.csv
inspect /help
"""

ENVIRONMENT = ("<ENVIRONMENT><TABULEXCONVERTOR_ENVIRONMENT><PATH>\"/quotes\"</PATH>"
               "</TABULEXCONVERTOR_ENVIRONMENT><RECORD_PARSER_ENVIRONMENT><TYPE><NAME>\"Date\""
               "</NAME><TEMPLATE>\"%s\"</TEMPLATE></TYPE></RECORD_PARSER_ENVIRONMENT>"
               "</ENVIRONMENT>")
FILES = {
    "nothing.txt": b"nothing of the kind\n",
    "empty.txt": b"",
    "binary.bin": bytes(range(128)) * 40,
    "mine.env": (ENVIRONMENT % "*y-*d-*m").encode(),
    "other.env": (ENVIRONMENT % "*m-*y-*d").encode(),
}


def calls(samples):
    names = [sample.name for sample in samples if sample.encoding != "gbk"]
    for command in (["inspect"], ["inspect", "--json"], ["check"], ["convert"],
                    ["convert", "-o", "new/"], ["convert", "-o", "new/", "--format", "jsonl"]):
        yield [*command, *names]
    for text in (CONVERSIONS, READINGS, REFUSALS):
        for line in text.splitlines()[1:]:
            yield shlex.split(line)


def content_of(folder):
    content = {}
    for place, _, names in os.walk(folder):
        for name in names:
            path = os.path.join(place, name)
            with open(path, "rb") as f:
                content[os.path.relpath(path, folder)] = f.read()
    return content


class Tool:
    """A tool, and the files that it is given."""

    def __init__(self, command, files):
        self.command, self.files = command, files

    def run(self, args):
        with tempfile.TemporaryDirectory(prefix="tabulex-like-native-") as folder:
            for name, content in self.files.items():
                with open(os.path.join(folder, name), "wb") as f:
                    f.write(content)
            os.mkdir(os.path.join(folder, "folder"))
            env = dict(os.environ, LC_ALL="C.UTF-8")
            done = subprocess.run([*self.command, *args], cwd=folder, env=env, timeout=120,
                                  stdin=subprocess.DEVNULL, capture_output=True)
            return {"status": done.returncode, "standard output": done.stdout,
                    "standard error": done.stderr, "files": content_of(folder)}


def kept_samples(folder):
    kept = {}
    for name in sorted(os.listdir(folder)):
        with open(os.path.join(folder, name), "rb") as f:
            kept[name] = f.read()
    return kept


def differences(args, native, windows):
    for what, want in native.items():
        have = windows[what]
        if have != want:
            yield f"tabulex {shlex.join(args)}: {what}\n  native:  {want}\n  windows: {have}"


def main(native, runner, windows, samples_folder):
    if not os.access(native, os.X_OK):
        print(f"'{native}' isn't there: build the native tool, or configure with "
              "TABULEX_NATIVE_TOOL as its path")
        return SKIPPED
    samples = list(make_samples.all_samples())
    files = {**FILES, **{sample.name: sample.content() for sample in samples},
             **kept_samples(samples_folder)}
    tools = Tool([native], files), Tool([runner, windows], files)
    all_calls = list(calls(samples))
    with concurrent.futures.ThreadPoolExecutor(os.cpu_count()) as pool:
        results = [list(pool.map(tool.run, all_calls)) for tool in tools]
    faults = [text for args, *pair in zip(all_calls, *results)
              for text in differences(args, *pair)]
    print("\n".join(faults))
    print(f"{len(all_calls)} calls, {len(faults)} differences")
    return 1 if faults or not all_calls else 0


if __name__ == "__main__":
    sys.exit(main(*sys.argv[1:]))
