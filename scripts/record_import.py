#!/usr/bin/python3
"""record_import.py TABULEX [OUT]: records an import in the terminal for the docs.

Drives the tool TABULEX through the import of a generated sample, in a terminal that is kept in
memory, and writes its screens as an animated SVG to OUT (docs/import-dialog.svg). Needs
python3-pyte. The result depends on nothing but the tool, so it can be compared.
"""
import html
import os
import shutil
import sys
import tempfile

import pyte

ROOT = os.path.dirname(os.path.dirname(os.path.abspath(__file__)))
sys.path += [os.path.join(ROOT, "tests/tabulex"), os.path.join(ROOT, "tools/samples")]

import make_samples  # noqa: E402
from terminal import Terminal  # noqa: E402

COLUMNS, ROWS = 100, 30
CELL_WIDTH, CELL_HEIGHT = 8, 17
COLOURS = {"black": "#1c1c1c", "red": "#c62828", "green": "#2e7d32", "brown": "#f9a825",
           "blue": "#1565c0", "magenta": "#8e24aa", "cyan": "#4dd0e1", "white": "#e0e0e0",
           "default": None}
BACKGROUND, TEXT = "#1c1c1c", "#d0d0d0"
# In the place of the folder in which the recording runs, whose name is as long.
SHOWN_FOLDER = "/home/me/files"

# Seconds for which a screen stays, what is done before it, and what is said below it.
SCENES = [
    (2.5, [], "tabulex import: choose a file"),
    (3.0, ["down", "enter"], "Enter opens it: dividers, columns and bar size are found"),
    (3.0, ["4", "h"], "h: the type of a column"),
    (3.0, ["enter"], "dates and times have templates"),
    (1.5, ["escape", "escape"], "Esc goes back"),
    (3.5, ["3", *["tab"] * 7, *"20030113100000"], "a range is typed; # marks what it takes"),
    (3.0, ["f4"], "F4: the dividers"),
    (1.5, ["escape"], "Esc goes back"),
]


def colour_of(name, other):
    return COLOURS.get(name, "#" + name) or other


def cells_of(screen, row):
    """Runs of cells that look the same: column, text, colours, bold."""
    runs = []
    for column in range(screen.columns):
        cell = screen.buffer[row][column]
        ink, paper = colour_of(cell.fg, TEXT), colour_of(cell.bg, BACKGROUND)
        if cell.reverse:
            ink, paper = paper, ink
        look = (ink, paper, cell.bold)
        if runs and runs[-1][2] == look:
            runs[-1][1] += cell.data
        else:
            runs.append([column, cell.data, look])
    return runs


def draw(screen, caption, folder):
    parts = []
    for row in range(screen.lines):
        for column, text, (ink, paper, bold) in cells_of(screen, row):
            x, y = column * CELL_WIDTH, row * CELL_HEIGHT
            if paper != BACKGROUND:
                parts.append(f'<rect x="{x}" y="{y}" width="{len(text) * CELL_WIDTH}" '
                             f'height="{CELL_HEIGHT}" fill="{paper}"/>')
            if text.strip():
                weight = ' font-weight="bold"' if bold else ""
                parts.append(f'<text x="{x}" y="{y + 13}" fill="{ink}"{weight} '
                             f'textLength="{len(text) * CELL_WIDTH}">{html.escape(text.replace(folder, SHOWN_FOLDER))}</text>')
    parts.append(f'<text x="{CELL_WIDTH}" y="{ROWS * CELL_HEIGHT + 20}" fill="#ffffff">'
                 f"{html.escape(caption)}</text>")
    return "\n".join(parts)


def animate(frames):
    """Each frame is opaque for its share of the whole, one after the other."""
    total = sum(seconds for seconds, _ in frames)
    width, height = COLUMNS * CELL_WIDTH, ROWS * CELL_HEIGHT + 30
    lines = [f'<svg xmlns="http://www.w3.org/2000/svg" viewBox="0 0 {width} {height}" '
             f'width="{width}" height="{height}" font-family="monospace" font-size="13" '
             'xml:space="preserve">',
             f'<rect width="{width}" height="{height}" fill="{BACKGROUND}"/>']
    at = 0.0
    for seconds, picture in frames:
        begin, end = at / total, (at + seconds) / total
        at += seconds
        times = f"0;{begin:.4f};{end:.4f}" if begin else f"0;{end:.4f}"
        values = "0;1;0" if begin else "1;0"
        first = "1" if not begin else "0"
        lines.append(f'<g opacity="{first}"><animate attributeName="opacity" calcMode="discrete" '
                     f'dur="{total}s" repeatCount="indefinite" keyTimes="{times}" '
                     f'values="{values}"/>\n{picture}\n</g>')
    return "\n".join(lines) + "\n</svg>\n"


def after_the_dialog(text):
    """The user's own screen, which the terminal in memory doesn't keep."""
    screen = pyte.Screen(COLUMNS, ROWS)
    pyte.Stream(screen).feed("$ tabulex import quotes -o clean.csv\r\n" + text)
    return screen


def record(tool, folder):
    quotes = os.path.join(folder, "quotes")
    os.mkdir(quotes)
    for sample in make_samples.all_samples():
        if sample.name in ("minute-5.csv", "tick.csv", "week.csv"):
            sample.write(quotes)
    for name in os.listdir(quotes):
        os.utime(os.path.join(quotes, name), (1577880000, 1577880000))
    env = {"TERM": "xterm-256color", "LC_ALL": "C.UTF-8", "TZ": "UTC", "PATH": os.environ["PATH"]}
    terminal = Terminal([tool, "import", "quotes", "-o", "clean.csv", "--lang", "en"], COLUMNS,
                        ROWS, env, folder)
    frames = []
    try:
        terminal.wait_for("Choose a file")
        for seconds, keys, caption in SCENES:
            terminal.send(*keys)
            terminal.settle(quiet=0.3)
            frames.append((seconds, draw(terminal.screen, caption, folder)))
        terminal.send("f10")
        status = terminal.end()
        if status:
            raise SystemExit(f"the import ended with status {status}")
        frames.append((4.0, draw(after_the_dialog(terminal.after()),
                                 "F10: checked, converted, committed", folder)))
    finally:
        terminal.close()
    return animate(frames)


def main():
    tool = os.path.abspath(sys.argv[1])
    out = sys.argv[2] if len(sys.argv) > 2 else os.path.join(ROOT, "docs/import-dialog.svg")
    folder = tempfile.mkdtemp(prefix="q", dir="/tmp")
    assert len(folder) == len(SHOWN_FOLDER)
    try:
        picture = record(tool, folder)
    finally:
        shutil.rmtree(folder)
    with open(out, "w", encoding="utf-8") as file:
        file.write(picture)


if __name__ == "__main__":
    main()
