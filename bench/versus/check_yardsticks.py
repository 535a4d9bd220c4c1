#!/usr/bin/env python3
"""check_yardsticks.py FOLDER: that the readers written by hand read what the tool reads.

For each layout with a reader: as many rows, and the same sum over all cells, up to what the order
of adding changes. FOLDER holds tabulex, make_quotes and yardstick."""
import csv
import datetime
import io
import os
import subprocess
import sys
import tempfile

ROWS = 123_456  # several pages and symbols, and no whole number of batches
FIRST_DAY = datetime.date(1970, 1, 1)


def output_of(*command):
    return subprocess.run(command, check=True, capture_output=True, text=True).stdout


def value(name, cell):
    if name == "Date":
        return (datetime.date.fromisoformat(cell) - FIRST_DAY).days
    if name == "Time":
        time = datetime.time.fromisoformat(cell)
        return (time.hour * 60 + time.minute) / 1440 + (time.second + time.microsecond / 1e6) / 86400
    return len(cell) if name == "Symbol" else float(cell)


def main():
    folder = sys.argv[1]
    program = lambda name: os.path.join(folder, name)
    failed = 0
    with tempfile.TemporaryDirectory() as made:
        for layout in output_of(program("yardstick")).split():
            path = os.path.join(made, layout)
            output_of(program("make_quotes"), layout, str(ROWS), path)
            rows = list(csv.DictReader(io.StringIO(output_of(program("tabulex"), "convert", "-q", path))))
            want = sum(value(name, cell) for row in rows for name, cell in row.items())
            count, found = output_of(program("yardstick"), layout, path).split()
            same = len(rows) == ROWS == int(count) and abs(float(found) - want) < 1e-9 * want
            failed += not same
            print(f"{layout}: {'same' if same else 'other'}, {len(rows)} rows, {want} / {count} rows, {found}")
    return 1 if failed else 0


if __name__ == "__main__":
    sys.exit(main())
