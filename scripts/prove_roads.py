#!/usr/bin/env python3
"""Converts random files (random_quotes.py) with a build that reads each plain line in both ways, and
looks for runs that end where the two differ.

    prove_roads.py TOOL [--files N] [--first N] [--seed N] [--keep FOLDER]

TOOL is the tabulex of a build with -DTABULEX_BOTH_ROADS=ON. A file whose run ends by a signal, by a
sanitizer's report, or with a status that no file may give, is kept and its command is printed. Ends
with status 1 for any, and where so few rows were delivered that little was compared."""
import argparse
import concurrent.futures
import os
import re
import shlex
import subprocess
import sys
import tempfile

import random_quotes

SANITIZER_STATUS = 99
SANITIZERS = {name: f"exitcode={SANITIZER_STATUS}:" + os.environ.get(name, "")
              for name in ("ASAN_OPTIONS", "UBSAN_OPTIONS")}
ENVIRONMENT = dict(os.environ, LC_ALL="C.UTF-8", **SANITIZERS)
LEAST_ROWS = 50  # delivered, a file, on average
ENDS = re.compile(rb"delivered=(\d+) skipped=(\d+) result=")


def convert(tool, path, options):
    command = [tool, "convert", "--lang", "en", "-n", "--no-check", "--max-errors", "1000000",
               *options, path]
    done = subprocess.run(command, capture_output=True, env=ENVIRONMENT, timeout=120)
    return command, done


def try_file(tool, number, seed, keep):
    """Delivered rows, rows that were not, and what went wrong, if anything."""
    content, options = random_quotes.random_file(number, seed)
    with tempfile.NamedTemporaryFile(suffix=".txt") as file:
        file.write(content)
        file.flush()
        command, done = convert(tool, file.name, options)
    if done.returncode in (0, 1):  # 1: the data stand against it
        ends = ENDS.search(done.stderr)
        return (int(ends[1]), int(ends[2]), None) if ends else (0, 0, None)
    path = os.path.join(keep, f"roads-{seed}-{number}.txt")
    with open(path, "wb") as file:
        file.write(content)
    said = done.stderr.decode("utf-8", "replace").strip()
    return 0, 0, f"{shlex.join([*command[:-1], path])}\nstatus {done.returncode}: {said[-800:]}"


def main():
    parser = argparse.ArgumentParser(description=__doc__,
                                     formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("tool")
    parser.add_argument("--files", type=int, default=20_000)
    parser.add_argument("--first", type=int, default=0, help="number of the first file")
    parser.add_argument("--seed", type=int, default=1)
    parser.add_argument("--keep", default=".", help="folder for files that show a fault")
    options = parser.parse_args()
    numbers = range(options.first, options.first + options.files)
    with concurrent.futures.ThreadPoolExecutor(os.cpu_count()) as pool:
        results = list(pool.map(
            lambda n: try_file(options.tool, n, options.seed, options.keep), numbers))
    faults = [fault for _, _, fault in results if fault]
    delivered = sum(rows for rows, _, _ in results)
    lost = sum(rows for _, rows, _ in results)
    without = sum(rows == 0 for rows, _, _ in results)
    print(*faults, sep="\n")
    print(f"{len(results)} files of seed {options.seed}: {delivered} rows delivered, {lost} not, "
          f"{without} files without a row, {len(faults)} with a fault")
    if delivered < LEAST_ROWS * len(results):
        print("too few rows were delivered for the comparison to say anything")
        return 1
    return 1 if faults else 0


if __name__ == "__main__":
    sys.exit(main())
