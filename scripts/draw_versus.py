#!/usr/bin/env python3
"""draw_versus.py FIGURES [OUT]: the ratios of a run of bench/versus/versus.py, for the README.

FIGURES is what the run wrote with --json. Draws a bar for each ratio, as an SVG to OUT
(docs/pictures/versus.svg), with the machine and the date of the run. The axis is logarithmic, so
that twice as fast is as long as twice as slow; a tick in a bar's row is the ratio that is aimed at."""
import html
import json
import math
import os
import sys

ROOT = os.path.dirname(os.path.dirname(os.path.abspath(__file__)))
NAMES, AXIS, FIGURES = 262, 420, 190  # widths of the three columns
ROW, BAR, EDGE, HEAD, FOOT = 24, 13, 16, 56, 46
PAPER, INK, FAINT, LINE = "#1c1c1c", "#d0d0d0", "#9a9a9a", "#4a4a4a"
FASTER, SLOWER, MARK = "#81c784", "#f9a825", "#ffffff"


def text(x, y, words, colour=INK, anchor="start", size=13):
    return (f'<text x="{x:.1f}" y="{y:.1f}" fill="{colour}" text-anchor="{anchor}" '
            f'font-size="{size}">{html.escape(words)}</text>')


class Axis:
    """From ratios to places; both ends are powers of two."""

    def __init__(self, ratios):
        logs = [math.log2(value) for value in ratios]
        self.first, self.last = min(-1, math.floor(min(logs))), max(1, math.ceil(max(logs)))

    def __call__(self, ratio):
        share = (math.log2(ratio) - self.first) / (self.last - self.first)
        return EDGE + NAMES + share * AXIS

    def grid(self, bottom):
        for power in range(self.first, self.last + 1):
            x, name = self(2.0 ** power), f"{2 ** power}" if power >= 0 else f"1/{2 ** -power}"
            yield text(x, HEAD - 10, name, FAINT, "middle", 12)
            yield (f'<line x1="{x:.1f}" y1="{HEAD - 4}" x2="{x:.1f}" y2="{bottom}" '
                   f'stroke="{FAINT if power == 0 else LINE}"/>')


def row(axis, y, figure):
    ratio, middle = figure["ratio"], y + ROW / 2
    ends = sorted((axis(1), axis(ratio)))
    mark = axis(figure["mark"])
    yield text(EDGE + NAMES - 12, middle + 4.5, figure["name"], anchor="end")
    yield (f'<rect x="{ends[0]:.1f}" y="{middle - BAR / 2}" width="{ends[1] - ends[0]:.1f}" '
           f'height="{BAR}" fill="{FASTER if ratio <= 1 else SLOWER}"/>')
    yield (f'<line x1="{mark:.1f}" y1="{middle - 9}" x2="{mark:.1f}" y2="{middle + 9}" '
           f'stroke="{MARK}" stroke-width="2"/>')
    x = EDGE + NAMES + AXIS + 52
    yield text(x, middle + 4.5, f"{ratio:.2f}", anchor="end")
    yield text(x + 12, middle + 4.5, f"{figure['ours']:.2f} s / {figure['theirs']:.2f} s", FAINT)


def draw(run):
    figures, about = run["ratios"], run["about"]
    axis = Axis([value for f in figures for value in (f["ratio"], f["mark"])])
    bottom = HEAD + ROW * len(figures)
    width, height = 2 * EDGE + NAMES + AXIS + FIGURES, bottom + FOOT
    foot = (f"{about['processor']}, {about['cores']} cores, {about['system']}, {about['date']}",
            f"{about['tool']}; {about['rows']:,} rows, medians of {about['rounds']} rounds in turn")
    return "\n".join([
        f'<svg xmlns="http://www.w3.org/2000/svg" viewBox="0 0 {width} {height}" width="{width}" '
        f'height="{height}" font-family="sans-serif">',
        f'<rect width="{width}" height="{height}" rx="6" fill="{PAPER}"/>',
        text(EDGE, 24, "Time of the first / time of the second", size=15),
        text(EDGE + NAMES + AXIS, 24, "left of 1: less time; tick: the aim", FAINT, "end", 12),
        *axis.grid(bottom),
        *(part for i, f in enumerate(figures) for part in row(axis, HEAD + ROW * i, f)),
        *(text(EDGE, bottom + 20 + 16 * i, line, FAINT, size=12) for i, line in enumerate(foot)),
        "</svg>", ""])


def main():
    out = sys.argv[2] if len(sys.argv) > 2 else os.path.join(ROOT, "docs/pictures/versus.svg")
    with open(sys.argv[1], encoding="utf-8") as file:
        drawn = draw(json.load(file))
    with open(out, "w", encoding="utf-8") as file:
        file.write(drawn)


if __name__ == "__main__":
    main()
