#!/usr/bin/env python3
"""How many made files a tool imports right by its own advice: judge_made_files.py TOOL [--seeds FROM:TO] [-v]

right     every row is there, or reported as bad where a value lacks, with the right moment, values and symbol
refused   nothing was delivered, and the status says so; right for a file whose dates nothing decides
wrong     anything else; silent where the status is 0 and no line begins with "warning:"

Exit 0 where at least --least percent are right and none is wrong in silence."""
import argparse
import collections
import csv
import datetime as D
import os
import re
import subprocess
import sys
import tempfile

sys.path.insert(0, os.path.dirname(os.path.abspath(__file__)))
import made_files  # noqa: E402

NAMES = {"open": ("Open",), "high": ("High",), "low": ("Low",), "close": ("Close", "Price"), "price": ("Price", "Close"), "volume": ("Volume",)}


def near(a, b):
    return abs(a - b) <= 1e-9 * max(1, abs(a), abs(b))


def cell(row, at, names):
    for name in names:
        if name in at:
            return row[at[name]]
    return None


def is_row(row, at, want, intraday):
    moment, values, symbol = want
    day, clock = row[at["Date"]], row[at["Time"]] if "Time" in at else "00:00:00"
    stamp = D.datetime.fromisoformat(f"{day}T{clock}")
    if not intraday:
        stamp = stamp.replace(hour=0, minute=0, second=0)
    if stamp != moment:
        return False
    for key, value in values.items():
        text = cell(row, at, NAMES[key])
        if text is None or value is None or not near(float(text), value):
            return False
    return symbol is None or "Symbol" not in at or row[at["Symbol"]] == symbol


def judge(status, errors, table, truth):
    warned = status != 0 or any(e.startswith("warning:") for e in errors)
    if len(table) < 2:
        return ("refused" if status else "wrong"), warned, ""
    at = {name: i for i, name in enumerate(table[0])}
    sides = [c for c in table[0] if c not in ("Date", "Time", "Symbol", "Open", "High", "Low", "Close", "Price", "Volume")]
    if sides or (truth["symbols"] > 1 and "Symbol" not in at):
        return "wrong", warned, f"columns {table[0]}"
    by_moment = collections.defaultdict(list)
    for want in truth["rows"]:
        by_moment[(want[0].date().isoformat())].append(want)
    left = sum(1 for w in truth["rows"] if None not in w[1].values())
    for row in table[1:]:
        wants = by_moment.get(row[at["Date"]], [])
        found = next((w for w in wants if is_row(row, at, w, truth["intraday"])), None)
        if found is None:
            return "wrong", warned, f"row {row}"
        wants.remove(found)
        left -= 1
    bad = sum(1 for e in errors if re.match(r".*:\d+: ", e))
    lacking = len(truth["rows"]) - sum(1 for w in truth["rows"] if None not in w[1].values())
    if left > 0 or bad < lacking:
        return "wrong", warned, f"{left} rows missing, {bad} reported, {lacking} lack a value"
    return ("wrong" if truth["ambiguous"] else "right"), warned, "ambiguous" if truth["ambiguous"] else ""


def main():
    p = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    p.add_argument("tool")
    p.add_argument("--seeds", default="0:100")
    p.add_argument("--least", type=float, default=97)
    p.add_argument("--keep", help="a folder for the files that aren't right")
    p.add_argument("-v", "--verbose", action="store_true")
    a = p.parse_args()
    first, last = (int(x) for x in a.seeds.split(":"))
    counts = collections.Counter()
    with tempfile.TemporaryDirectory() as folder:
        for seed in range(first, last):
            raw, truth = made_files.make(seed)
            path, out = os.path.join(folder, f"{seed}.csv"), os.path.join(folder, "out.csv")
            with open(path, "wb") as f:
                f.write(raw)
            if os.path.exists(out):
                os.remove(out)
            done = subprocess.run([a.tool, "convert", path, "--auto", "-o", out], capture_output=True, timeout=60)
            errors = done.stderr.decode("utf-8", "replace").splitlines()
            table = list(csv.reader(open(out, newline="", encoding="utf-8"))) if os.path.exists(out) else []
            verdict, warned, note = judge(done.returncode, errors, table, truth)
            good = verdict == "right" or (verdict == "refused" and truth["ambiguous"])
            counts["right" if good else verdict] += 1
            counts["silent"] += verdict == "wrong" and not warned
            if not good and a.keep:
                os.makedirs(a.keep, exist_ok=True)
                open(os.path.join(a.keep, f"{seed}.csv"), "wb").write(raw)
            if not good and a.verbose:
                print(f"{seed}: {verdict}{'' if warned else ' silent'}: {note}\n    {truth['about']}\n    {' / '.join(errors[:2])[:300]}")
    total = last - first
    print(", ".join(f"{k} {counts[k]}" for k in ("right", "refused", "wrong", "silent")) + f" of {total}")
    return 0 if counts["right"] * 100 >= a.least * total and not counts["silent"] else 1


if __name__ == "__main__":
    sys.exit(main())
