#!/usr/bin/env python3
"""The tool beside what reads or writes the same files otherwise, as a table of ratios.

    versus.py FOLDER [--rows N] [--rounds N] [--only GROUP,...] [--json FILE] [--exe TABULEX.EXE]

FOLDER holds the built programs: tabulex, make_quotes, yardstick, and bench_tabulex for `index`.

bars      `convert -n` of minute bars / a hand-written reader, / DuckDB's typed scan
csv       `convert` to CSV / DuckDB's copy, on one core and on all
sqlite    `convert` to SQLite / `.import` of the sqlite3 shell
readers   `convert -n` of other layouts / a hand-written reader of each
forms     `convert -n` of a form of the minute bars / the minute bars
index     finding all lines / a count of newlines with memchr
wine      tabulex.exe under Wine / tabulex, `convert -n`
layouts   no ratio: nanoseconds a row of many layouts, to be named in --only

DuckDB is the npm package @duckdb/node-api in $NODE_MODULES."""
import argparse
import json
import os
import re
import shutil
import statistics
import subprocess
import sys
import tempfile

import measure
from measure import Pair

HERE = os.path.dirname(os.path.abspath(__file__))
WITH_WINE = os.path.join(HERE, "..", "..", "scripts", "wine", "with-wine.sh")
GROUPS = ("bars", "csv", "sqlite", "readers", "forms", "index", "wine")

# What a layout needs to be read; and those that are minute bars read with an option.
OPTIONS = {"pages-932": ["--code-page", "932"]}
MINUTES_WITH = {"bar-ends": ["--bar-end-time"]}


class Bench:
    """The programs, the files that were made, and what is left out."""

    def __init__(self, options, folder):
        self.options, self.folder = options, folder
        self.rows, self.rounds = options.rows, options.rounds
        self.outputs = [self.path(name) for name in ("a.csv", "b.csv", "a.db", "b.db")]

    def path(self, name):
        return os.path.join(self.folder, name)

    def program(self, name):
        return os.path.join(self.options.folder, name)

    def quotes(self, layout, rows=None):
        """The path of a file in that layout, made once, of which the tool reads every row."""
        rows = rows or self.rows
        path = self.path(f"{layout}-{rows}")
        if not os.path.exists(path):
            subprocess.run([self.program("make_quotes"), layout, str(rows), path], check=True)
            said = subprocess.run([*self.convert(layout), path], capture_output=True).stderr
            if f"delivered={rows} ".encode() not in said:
                sys.exit(f"not all rows of {layout} were read: {said.decode()[-300:]}")
        return path

    def drop(self, *kept):
        for name in os.listdir(self.folder):
            if name.rsplit("-", 1)[0] not in kept and os.path.isfile(self.path(name)):
                os.remove(self.path(name))

    def convert(self, layout):
        return [self.program("tabulex"), "convert", "-n", *OPTIONS.get(layout, [])]

    def scan(self, layout):
        return [*self.convert(layout), "-q", self.quotes(layout)]

    def by_hand(self, layout):
        return [self.program("yardstick"), layout, self.quotes(layout)]

    def duckdb(self):
        """The command's beginning; None where it isn't installed."""
        modules = os.environ.get("NODE_MODULES", "node_modules")
        if not shutil.which("node") or not os.path.isdir(os.path.join(modules, "@duckdb")):
            print("left out: DuckDB (no node with @duckdb/node-api in $NODE_MODULES)")
            return None
        folder = self.path("duckdb")  # node looks for packages beside the script
        if not os.path.exists(folder):
            os.mkdir(folder)
            os.symlink(os.path.abspath(modules), os.path.join(folder, "node_modules"))
            shutil.copy(os.path.join(HERE, "duckdb_quotes.mjs"), folder)
        return ["node", os.path.join(folder, "duckdb_quotes.mjs")]


# ---- groups: each gives the pairs that can be measured here

def bars(bench):
    scan = bench.scan("minutes")
    yield Pair("minute bars / hand-written reader", scan, bench.by_hand("minutes"), 2.5)
    if duckdb := bench.duckdb():
        yield Pair("minute bars / DuckDB's typed scan", scan, [*duckdb, "scan", "1", scan[-1]], 0.6)


def csv(bench):
    data = bench.quotes("minutes")
    ours = [bench.program("tabulex"), "convert", "-q", "-o", bench.outputs[0], data]
    if duckdb := bench.duckdb():
        copy = lambda threads: [*duckdb, "copy", str(threads), data, bench.outputs[1]]
        yield Pair("to CSV / DuckDB's copy, one core", ours, copy(1), 0.4)
        yield Pair("to CSV / DuckDB's copy, all cores", ours, copy(os.cpu_count()), 0.6, free=True)


def sqlite(bench):
    data = bench.quotes("minutes")
    if not shutil.which("sqlite3"):
        print("left out: sqlite3")
        return
    ours = [bench.program("tabulex"), "convert", "-q", "-o", bench.outputs[2], data]
    theirs = ["sqlite3", bench.outputs[3], ".mode csv", f".import {data} t"]
    yield Pair("to SQLite / .import of its shell", ours, theirs, 0.9, free=True)


def readers(bench):
    for layout in measure.output_of(bench.program("yardstick")).split():
        if layout != "minutes":
            yield Pair(f"{layout} / hand-written reader", bench.scan(layout),
                       bench.by_hand(layout), 3)


def forms(bench):
    for layout, mark in (("descending", 1.3), ("symbols", 1.3), ("two-byte", 2)):
        yield Pair(f"{layout} / minute bars", bench.scan(layout), bench.scan("minutes"), mark)


def wine(bench):
    if not bench.options.exe or not shutil.which("wine"):
        print("left out: Wine (no --exe, or no wine)")
        return
    native = bench.scan("minutes")
    yield Pair("tabulex.exe under Wine / tabulex", ["wine", bench.options.exe, *native[1:]],
               native, 1.5, free=True)


# ---- what isn't a pair of commands

def index(bench):
    """The ratio of two benchmarks of one process."""
    program, out = bench.program("bench_tabulex"), bench.path("index.json")
    if not os.path.exists(program):
        print("left out: the index scan (no bench_tabulex)")
        return []
    measure.output_of(program, f"--rows={bench.rows}", "--benchmark_filter=IndexScan|MemchrCount",
                      f"--benchmark_repetitions={bench.rounds}",
                      "--benchmark_enable_random_interleaving=true", f"--benchmark_out={out}",
                      "--benchmark_out_format=json")
    with open(out, encoding="utf-8") as file:
        runs = [run for run in json.load(file)["benchmarks"] if run["run_type"] == "iteration"]
    ours, theirs = ([run["real_time"] / 1000 for run in runs if run["name"].startswith(name)]
                    for name in ("IndexScan", "MemchrCount"))
    ratios = [a / b for a, b in zip(ours, theirs)]
    return [measure.figure("line-index scan / memchr count", 1.5, ours, theirs, ratios)]


def layouts(bench):
    """Nanoseconds a row of each layout that there is a maker for, in the tool as a whole."""
    rows = min(bench.rows, 1_000_000)
    names = [*measure.output_of(bench.program("make_quotes")).split(), *MINUTES_WITH]
    commands = {name: [*bench.convert(name), "-q", *MINUTES_WITH.get(name, []),
                       bench.quotes("minutes" if name in MINUTES_WITH else name, rows)]
                for name in names}
    times = {name: [] for name in names}
    for _ in range(bench.rounds):
        for name, command in commands.items():
            times[name].append(measure.run_timed(command).seconds)
    result = {name: statistics.median(seconds) / rows * 1e9 for name, seconds in times.items()}
    print(f"{'layout':20}{'ns/row':>8}  / minutes")
    for name, nanoseconds in sorted(result.items(), key=lambda item: item[1]):
        print(f"{name:20}{nanoseconds:8.0f}{nanoseconds / result['minutes']:10.2f}", flush=True)
    return result


# ---- the table

def show(found):
    verdict = "" if found["ratio"] <= found["mark"] else "  above the mark"
    print(f"{found['name']:36}{found['ratio']:6.2f}  ({found['least']:.2f} to "
          f"{found['greatest']:.2f})  mark {found['mark']:<4} {found['ours']:6.2f} s / "
          f"{found['theirs']:.2f} s{verdict}", flush=True)
    return found


def figures_of(bench, group):
    if group == "index":
        yield from map(show, index(bench))
        return
    for pair in globals()[group](bench):
        yield show(measure.compare(pair, bench.rounds, bench.outputs))
    bench.drop("minutes")


def read_figures(path, about):
    """Those of an earlier run on the same day with the same rows and rounds are kept."""
    if path and os.path.exists(path):
        with open(path, encoding="utf-8") as file:
            found = json.load(file)
        if found["about"] == about:
            return found
    return {"about": about, "ratios": [], "layouts": {}}


def keep(figures, found):
    names = [figure["name"] for figure in figures["ratios"]]
    if found["name"] in names:
        figures["ratios"][names.index(found["name"])] = found
    else:
        figures["ratios"].append(found)


def arguments():
    parser = argparse.ArgumentParser(description=__doc__,
                                     formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("folder")
    parser.add_argument("--rows", type=int, default=5_000_000)
    parser.add_argument("--rounds", type=int, default=5)
    parser.add_argument("--only", default=",".join(GROUPS))
    parser.add_argument("--json", help="where the figures go, beside those of other groups")
    parser.add_argument("--exe", help="tabulex.exe")
    options = parser.parse_args()
    options.folder = os.path.abspath(options.folder)
    options.only = options.only.split(",")
    for group in set(options.only) - {*GROUPS, "layouts"}:
        parser.error(f"there is no group {group}")
    return options


def main():
    options = arguments()
    if "wine" in options.only and options.exe and "WITH_WINE" not in os.environ:
        os.execv(WITH_WINE, [WITH_WINE, sys.executable, *sys.argv])
    about = {**measure.machine(), "rows": options.rows, "rounds": options.rounds,
             "tool": measure.output_of(os.path.join(options.folder, "tabulex"), "--version").strip()}
    figures = read_figures(options.json, about)
    print(", ".join(f"{key} {value}" for key, value in about.items()))
    with tempfile.TemporaryDirectory() as folder:
        bench = Bench(options, folder)
        for group in options.only:
            if group == "layouts":
                figures["layouts"] = layouts(bench)
                continue
            for found in figures_of(bench, group):
                keep(figures, found)
    if options.json:
        with open(options.json, "w", encoding="utf-8") as file:
            json.dump(figures, file, indent=1)


if __name__ == "__main__":
    main()
