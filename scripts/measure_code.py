#!/usr/bin/env python3
"""measure_code.py [--list]: the house's figures, and the marks that they must keep.

Counts functions by length, the lines of classes, the share of comments and the
files of each folder, over the sources that git knows. Prints a line for each figure
and, for each mark that isn't kept, the places. With --list also the places closest to
the marks. Ends with status 1 where a mark isn't kept.

How it counts: the tree is formatted by clang-format, so a function's body starts with a
brace on a line of its own (or is one line), and ends with the brace at the same
indentation. A function is as long as its body, without the two braces. A body that is
one table (a single statement, or one call or case a row) is not bound by the longest mark.
A class is as long as its definition; a share of comments is that of the lines that aren't
blank, and a line with a comment after its code counts.
"""

import collections
import os
import re
import subprocess
import sys

ROOT = os.path.dirname(os.path.dirname(os.path.abspath(__file__)))
TEST_FOLDERS = ("bench/", "fuzz/", "tests/", "examples/")

SHORT_FUNCTION = 20
SHORT_SHARE = 95.0
LONGEST_FUNCTION = 60
LONGEST_CLASS = 150
HEADER_COMMENTS = 30.0
SOURCE_COMMENTS = 8.0
FILES_OF_A_FOLDER = 40

# What opens a brace on a line of its own and is no function.
TYPE = re.compile(r"^\s*(template\b.*>\s*)?(typedef\s+)?(class|struct|union|enum|namespace)\b")
LABEL = re.compile(r"^\s*(public|protected|private|case .*|default):$")
CLASS = re.compile(r"^(\s*)(class|struct) (\w+)[^;]*$")
ROW = re.compile(r"^\s*[{\"}]|^\s*\w[\w:.]*\(.*\);?$|^\s*(case\b.*|return\b.*;)$")

Function = collections.namedtuple("Function", "path line name length table")


def sources():
    names = subprocess.run(["git", "ls-files", "*.h", "*.hpp", "*.cpp"], cwd=ROOT, check=True,
                           capture_output=True, text=True).stdout.split()
    return [name for name in names if os.path.exists(os.path.join(ROOT, name))]


def read(path):
    with open(os.path.join(ROOT, path), encoding="utf-8") as file:
        return file.read().split("\n")


def head_of(lines, brace):
    """The number of the first line of what the brace on line `brace` opens."""
    indent = len(lines[brace]) - len(lines[brace].lstrip())
    at = brace
    while at > 0:
        before = lines[at - 1]
        inner = len(before) - len(before.lstrip())
        if not before.strip() or before.strip().startswith(("//", "#")) or inner < indent:
            break
        if LABEL.match(before) or before.rstrip().endswith((";", "}")):
            break
        at -= 1
    return at


def is_table(body):
    rows = sum(1 for text in body if ROW.match(text))
    statements = sum(1 for text in body if text.endswith(";"))
    return rows >= 0.8 * len(body) or statements <= 3


def functions_of(path, lines):
    at = 0
    while at < len(lines):
        line = lines[at]
        if line.strip() != "{":
            at += 1
            continue
        head = head_of(lines, at)
        if head == at or any(TYPE.match(text) for text in lines[head:at]) or \
                lines[at - 1].endswith("="):
            at += 1
            continue
        closing = line.replace("{", "}")
        end = next((n for n in range(at + 1, len(lines))
                    if lines[n] == closing or lines[n].startswith(closing + ";")), len(lines))
        body = [text for text in lines[at + 1:end] if text.strip()]
        name = " ".join(text.strip() for text in lines[head:at])
        name = re.sub(r"\(.*", "", re.sub(r"template <.*?> ", "", name)).split(" ")[-1]
        yield Function(path, head + 1, name, end - at - 1, is_table(body))
        at = end + 1


def one_line_functions(lines):
    """How many bodies stand on the line of their head."""
    return sum(1 for text in lines if re.match(r"^\s+[^/#].*\) ?(const|noexcept|override| )*"
                                               r"\{.*\}$", text) and " = " not in text)


def share_of_comments(paths):
    comments = all_lines = 0
    for path in paths:
        for text in read(path):
            bare = text.strip()
            all_lines += bool(bare)
            comments += bare.startswith(("//", "/*")) or " // " in bare
    return 100.0 * comments / max(all_lines, 1)


class Report:
    def __init__(self):
        self.broken = False

    def figure(self, what, value, mark, kept, places=()):
        self.broken = self.broken or not kept
        print(f"{'ok ' if kept else 'NOT'} {what}: {value} (mark: {mark})")
        if not kept:
            for place in places:
                print("      " + place)


def measure_functions(report, names, listing):
    found, short_ones = [], 0
    for path in names:
        lines = read(path)
        found += functions_of(path, lines)
        short_ones += one_line_functions(lines)
    longer = sorted((f for f in found if f.length > SHORT_FUNCTION), key=lambda f: -f.length)
    count = len(found) + short_ones
    share = 100.0 * (count - len(longer)) / count
    show = [f"{f.path}:{f.line} {f.name}: {f.length}{' (table)' if f.table else ''}"
            for f in longer]
    report.figure(f"functions of at most {SHORT_FUNCTION} lines", f"{share:.1f} % of {count}",
                  f"at least {SHORT_SHARE:.0f} %", share >= SHORT_SHARE, show)
    too_long = [text for f, text in zip(longer, show)
                if f.length > LONGEST_FUNCTION and not f.table]
    report.figure(f"functions above {LONGEST_FUNCTION} lines", len(too_long), "none but tables",
                  not too_long, too_long)
    if listing:
        print("\n".join("      " + text for text in show))


def classes_of(path, lines):
    for at, text in enumerate(lines):
        match = CLASS.match(text)
        if match:
            end = next((n for n in range(at, len(lines)) if lines[n].startswith(match[1] + "}")),
                       at)
            yield end - at + 1, f"{path}:{at + 1} {match[3]}"


def measure_classes(report, headers):
    found = sorted((entry for path in headers for entry in classes_of(path, read(path))),
                   reverse=True)
    too_long = [f"{place}: {n}" for n, place in found if n > LONGEST_CLASS]
    report.figure("longest class", f"{found[0][0]} lines, {found[0][1]}",
                  f"at most {LONGEST_CLASS}", not too_long, too_long)


def measure_folders(report):
    files = subprocess.run(["git", "ls-files"], cwd=ROOT, check=True, capture_output=True,
                           text=True).stdout.split("\n")
    count = collections.Counter(os.path.dirname(path) for path in files if path)
    too_many = [f"{folder}: {n}" for folder, n in count.items() if n > FILES_OF_A_FOLDER]
    most = count.most_common(1)[0]
    report.figure("most files in a folder", f"{most[1]} in {most[0]}",
                  f"at most {FILES_OF_A_FOLDER}", not too_many, too_many)


def main():
    listing = "--list" in sys.argv[1:]
    own = [name for name in sources() if not name.startswith(TEST_FOLDERS)]
    headers = [name for name in own if name.endswith((".h", ".hpp"))]
    report = Report()
    measure_functions(report, own, listing)
    measure_classes(report, headers)
    for what, paths, mark in (("headers", headers, HEADER_COMMENTS),
                              ("sources", [n for n in own if n.endswith(".cpp")],
                               SOURCE_COMMENTS)):
        share = share_of_comments(paths)
        report.figure(f"comments in {what}", f"{share:.1f} % of their lines",
                      f"at least {mark:.0f} %", share >= mark)
    measure_folders(report)
    return 1 if report.broken else 0


if __name__ == "__main__":
    sys.exit(main())
