#!/usr/bin/env python3
"""draw_before_after.py TABULEX [OUT]: what comes in and what comes out, for the README.

Converts samples/export.txt with the tool TABULEX and draws the file beside what was printed and
written, as an SVG to OUT (docs/before-after.svg). The result depends on nothing but the tool, so
it can be compared.
"""
import html
import os
import subprocess
import sys
import tempfile
import textwrap

ROOT = os.path.dirname(os.path.dirname(os.path.abspath(__file__)))
SAMPLE, OUT = "export.txt", "bars.csv"
LEFT, RIGHT = 54, 84  # characters in a line of each panel
CELL, LINE, EDGE = 7.2, 17, 14
PAPER, INK, FAINT = "#1c1c1c", "#d0d0d0", "#808080"
COLOURS = {"$": "#ffffff", "warning:": "#f9a825", "lines=": "#81c784", "batches=": "#81c784",
           SAMPLE + ":": "#ef9a9a", "...": FAINT}


def run(*command, folder):
    done = subprocess.run(command, cwd=folder, capture_output=True, text=True,
                          env=dict(os.environ, LC_ALL="C.UTF-8"))
    return done.returncode, done.stdout, done.stderr


def cut(lines, first, last):
    return [*lines[:first], "...", *lines[-last:]]


def before(text):
    lines = text.splitlines()
    return [f"$ cat {SAMPLE}", *lines[:9], "...", *lines[102:105], *cut(lines[105:], 0, 2)]


def after(tool, folder):
    status, _, said = run(tool, "convert", SAMPLE, "-o", OUT, folder=folder)
    if status:
        raise SystemExit(f"the conversion ended with status {status}: {said}")
    lines = [f"$ tabulex convert {SAMPLE} -o {OUT}"]
    for line in said.splitlines():
        lines += textwrap.wrap(line, RIGHT, subsequent_indent="    ")
    with open(os.path.join(folder, OUT), encoding="utf-8") as file:
        rows = file.read().splitlines()
    return [*lines, f"$ cat {OUT}", *cut(rows, 5, 3)]


def colour_of(line, last):
    if line.startswith("    "):
        return last
    return next((colour for begin, colour in COLOURS.items() if line.startswith(begin)), INK)


def panel(x, lines):
    colour = INK
    for row, line in enumerate(lines):
        colour = colour_of(line, colour)
        yield (f'<text x="{x}" y="{EDGE + LINE * (row + 1)}" fill="{colour}" '
               f'textLength="{len(line) * CELL:.1f}">{html.escape(line)}</text>')


def draw(tool):
    with open(os.path.join(ROOT, "samples", SAMPLE), encoding="ascii") as file:
        text = file.read()
    with tempfile.TemporaryDirectory() as folder:
        with open(os.path.join(folder, SAMPLE), "w", encoding="ascii") as file:
            file.write(text)
        right = after(os.path.abspath(tool), folder)
    left = before(text)
    middle = 2 * EDGE + LEFT * CELL
    width, height = middle + RIGHT * CELL + 2 * EDGE, LINE * (max(len(left), len(right)) + 1) + EDGE
    return "\n".join([
        f'<svg xmlns="http://www.w3.org/2000/svg" viewBox="0 0 {width:.0f} {height}" '
        f'width="{width:.0f}" height="{height}" font-family="monospace" font-size="12" '
        'xml:space="preserve">',
        f'<rect width="{width:.0f}" height="{height}" rx="6" fill="{PAPER}"/>',
        f'<line x1="{middle:.0f}" y1="{EDGE}" x2="{middle:.0f}" y2="{height - EDGE}" '
        f'stroke="{FAINT}"/>',
        *panel(EDGE, left), *panel(middle + EDGE, right), "</svg>", ""])


def main():
    out = sys.argv[2] if len(sys.argv) > 2 else os.path.join(ROOT, "docs/before-after.svg")
    with open(out, "w", encoding="utf-8") as file:
        file.write(draw(sys.argv[1]))


if __name__ == "__main__":
    main()
