"""Reads the documents' tables and sections, and runs the tool that they tell of."""
import os
import re
import subprocess

ROOT = os.path.normpath(os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", ".."))


def read(path):
    with open(os.path.join(ROOT, path), encoding="utf-8") as file:
        return file.read()


def cells(line):
    """The cells of a table's row; \\| is a bar within one."""
    return [cell.strip().replace("\\|", "|") for cell in re.split(r"(?<!\\)\|", line)[1:-1]]


def rows(text):
    """The rows of all tables of a text, without heads and rules."""
    lines = text.splitlines()
    for i, line in enumerate(lines):
        is_rule = re.fullmatch(r"\|[-|]+\|", line)
        is_head = i + 1 < len(lines) and re.fullmatch(r"\|[-|]+\|", lines[i + 1])
        if line.startswith("|") and not is_rule and not is_head:
            yield cells(line)


def rows_below(text, head):
    """The rows of all tables that have this head."""
    for table in re.findall(rf"^{re.escape(head)}\n\|[-|]+\|\n((?:\|.*\n)+)", text, re.M):
        yield from (cells(line) for line in table.splitlines())


def sections(text, level):
    """What stands under each heading of a level, up to the next of that level or above."""
    parts = re.split(rf"^(#{{1,{level}}}) (.+)$", text, flags=re.M)
    return {heading: part for marks, heading, part in zip(parts[1::3], parts[2::3], parts[3::3])
            if len(marks) == level}


def run(*command):
    done = subprocess.run(command, capture_output=True, text=True, timeout=60,
                          env=dict(os.environ, LC_ALL="C"))
    return done.returncode, done.stdout.strip()
