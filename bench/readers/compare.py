#!/usr/bin/env python3
"""What the tool, pandas, DuckDB and the sqlite3 shell read in the samples by themselves.

    compare.py TOOL [NODE_MODULES]

Each reader gets every sample with its defaults; pandas is told to look for the divider, and to take
a column for dates or times where all of it can be parsed. A reader that isn't there is left out.

right    every record is there, with its moment and numbers; lines that are no records were reported
text     the same, but a date or a time is text: it is left to the person to say what it means
refused  an error, or a status other than 0, and no rows
wrong    anything else: values that the file doesn't hold, rows lost or added, columns not found

Samples with fractions of a second are left out: what `.5` means there is a matter of taste."""
import csv
import json
import os
import re
import shutil
import subprocess
import sys
import tempfile

HERE = os.path.dirname(os.path.abspath(__file__))
sys.path.insert(0, os.path.join(HERE, "..", "..", "tools", "samples"))
import make_samples  # noqa: E402

VERDICTS = ("right", "text", "refused", "wrong")


def moment_in(cell):
    """A date, a time or both, in the forms that typed columns are printed in; None for others."""
    found = re.fullmatch(r"(\d{4}-\d\d-\d\d)?[ T]?(\d\d:\d\d:\d\d)?(\.0+)?", cell)
    if not found or not (found[1] or found[2]):
        return None
    return found[1], found[2] if found[2] != "00:00:00" or not found[1] else None


def wanted(sample, row):
    """The cells of a record as (kind, value) in the order of the file."""
    for column in sample.columns:
        if column in ("Date", "Time"):
            yield "moment", str(row[column])
        elif column == "Symbol":
            yield "text", row[column]
        else:
            yield "number", float(row[column])


def cell_verdict(kind, value, cell):
    cell = str(cell)
    if kind == "moment":
        found = moment_in(cell)
        return "right" if found and value in found else "wrong" if found else "text"
    if kind == "number":
        try:
            return "right" if float(cell) == value else "wrong"
        except ValueError:
            return "wrong"
    return "right" if cell == value else "wrong"


def verdict(sample, table):
    if table is None:
        return "refused"
    rows = list(reversed(sample.rows)) if sample.descending else sample.rows
    for order in (rows, sample.rows):  # a reader may turn a file that runs backwards
        worst = "right" if len(table) == len(order) else "wrong"
        for row, cells in zip(order, table):
            want = list(wanted(sample, row))
            if len(cells) != len(want):
                return "wrong"
            found = {cell_verdict(*w, cell) for w, cell in zip(want, cells)}
            worst = max(worst, *found, key=VERDICTS.index)
        if worst != "wrong":
            return worst
    return "wrong"


def read_with_tool(tool, samples, folder):
    for sample, path in samples:
        encoding = ["--encoding", "gbk"] if sample.encoding == "gbk" else []
        done = subprocess.run([tool, "convert", "-q", *encoding, path], capture_output=True, text=True)
        rows = list(csv.reader(done.stdout.splitlines()))
        order = [rows[0].index(c) for c in sample.columns] if rows else []
        yield [[row[at] for at in order] for row in rows[1:]] or None


def lines_of_json(command):
    done = subprocess.run(command, capture_output=True, text=True, check=True)
    for line in done.stdout.splitlines():
        found = json.loads(line)
        yield None if "fault" in found else found["rows"]


def read_with_duckdb(modules, samples, folder):
    script = os.path.join(folder, "duckdb_tables.mjs")
    shutil.copy(os.path.join(HERE, "duckdb_tables.mjs"), script)
    os.symlink(os.path.abspath(modules), os.path.join(folder, "node_modules"))
    return lines_of_json(["node", script, *(path for _, path in samples)])


def read_with_pandas(python, samples, folder):
    return lines_of_json([python, os.path.join(HERE, "pandas_tables.py"), *(p for _, p in samples)])


def read_with_sqlite(shell, samples, folder):
    for i, (sample, path) in enumerate(samples):
        script = [".mode csv", f".import '{path}' t", ".headers off", "select * from t;"]
        done = subprocess.run([shell, ":memory:"], input="\n".join(script).encode(), capture_output=True)
        text = done.stdout.decode("utf-8", "replace")
        yield None if done.returncode else list(csv.reader(text.splitlines()))


def readers(tool, modules):
    yield "tabulex", read_with_tool, tool
    has_pandas = subprocess.run(["/usr/bin/python3", "-c", "import pandas"], capture_output=True)
    if has_pandas.returncode == 0:
        yield "pandas", read_with_pandas, "/usr/bin/python3"
    if modules and shutil.which("node"):
        yield "DuckDB", read_with_duckdb, modules
    if shutil.which("sqlite3"):
        yield "sqlite3 shell", read_with_sqlite, "sqlite3"


def main():
    tool, modules = (sys.argv[1:] + [None])[:2]
    with tempfile.TemporaryDirectory() as folder:
        samples = [(sample, sample.write(folder)) for sample in make_samples.all_samples()
                   if sample.time_template != "*h:*m:*s.*f"]
        print(f"{len(samples)} samples | " + " | ".join(VERDICTS))
        for name, read, program in readers(tool, modules):
            found = {v: [] for v in VERDICTS}
            for (sample, _), table in zip(samples, read(program, samples, folder), strict=True):
                found[verdict(sample, table)].append(sample.name)
            print(f"{name} | " + " | ".join(str(len(found[v])) for v in VERDICTS))
            if os.environ.get("NAMES"):
                print(found)


if __name__ == "__main__":
    main()
