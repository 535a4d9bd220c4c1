#!/usr/bin/env python3
"""Draws docs/architecture.svg: the layers, the road of a detection, the road of a
conversion, and who runs and locks what. Run it after a change of the tables below:

    scripts/draw_architecture.py
"""
import os
import textwrap
from xml.sax.saxutils import escape

WIDTH = 1000
MARGIN = 20
FONT = 13
LINE = 17  # height of a line of text

INK, SOFT, LINE_INK = "#1b1f24", "#57606a", "#8c959f"
FILLS = {
    "host": "#ddf4ff",
    "front": "#d8f3dc",
    "logic": "#fff3c4",
    "base": "#eef0f2",
    "worker": "#ffe1cc",
    "sink": "#ddf4ff",
}

# Highest first; a row's boxes stand side by side. (folder, what it holds, fill)
LAYERS = [
    [("tools/tabulex, examples/host", "hosts: through the public interfaces only", "host")],
    [("component/", "object map, exported entries: the shared library", "front")],
    [("src/ data parser", "one file joined to one record parser; runs in batches", "logic")],
    [("src/ record parsing", "templates, columns, inference of layout and resolution", "logic"),
     ("src/ file access", "paged file, line index, a worker a file, pool", "logic")],
    [("datetime/", "the calendar value", "base"),
     ("Simples/", "texts in two languages", "base"),
     ("module/", "counting, factories, dispatch by number", "base")],
    [("interfaces/", "what a host calls and what a sink implements", "front"),
     ("diagnostics/", "assertions and traces that stay live", "base")],
    [("platform/", "component values; code pages, files, threads", "base")],
]

DETECTION = [
    ("open", "the pool gives the file a worker, or joins one at work"),
    ("first record", "by number, through the line index"),
    ("dividers", "the strongest of tab | ; , blank :"),
    ("header or not", "runs of header lines are passed; the last names columns"),
    ("columns", "type and template a column, tested on 10 lines and the last"),
    ("refinement", "types put right by values, without a header"),
    ("resolution", "steps of up to 100 dates; weeks, days, minutes, ticks, bars"),
    ("range", "first and last date; inverted if the last is earlier"),
]

CONVERSION = [
    ("position", "the worker's next step of this run"),
    ("line", "read by number, kept as text"),
    ("batch", "1000 lines, or what is left at the end"),
    ("checks", "date, symbol, order and step, date range"),
    ("fields", "values by type and template, scaled"),
    ("array", "column by record; bad lines leave no gap"),
    ("PutRecords", "to the sink, with all locks left"),
    ("EndTransaction", "once a run: it went well or not"),
]

# (thread, what it runs, fill)
THREADS = [
    ("any thread of the host", "creates objects, puts the file name, starts and aborts runs, "
     "reads records by number; a call returns when its work is done, a run when it is queued",
     "sink"),
    ("one worker a file", "indexes up to 32767 lines ahead, then sleeps; steps the runs of its "
     "file in turn, one record each; calls the sink", "worker"),
]

# (lock, what it guards and what may be held with it)
LOCKS = [
    ("data parser", "one each, recursive: held while records are parsed and in OnError2, left "
     "before PutRecords"),
    ("record parser", "one each: layout, templates, current record; a detection enters the data "
     "parser with it held"),
    ("file", "one each: pages, index, requests; left between strides"),
    ("pool", "two, one for the open files and one for the threads; never both"),
    ("proxies", "one a process: transactions and back links; nothing is taken under it, except "
     "what Cancel takes"),
]


class Drawing:
    def __init__(self):
        self.parts = []

    def text(self, x, y, words, *, size=FONT, weight="normal", fill=INK, anchor="start"):
        self.parts.append(f'<text x="{x:g}" y="{y:g}" font-size="{size}" font-weight="{weight}" '
                          f'fill="{fill}" text-anchor="{anchor}">{escape(words)}</text>')

    def wrapped(self, x, y, words, width, **style):
        """Text in lines that fit a width in pixels; the y below it."""
        for line in textwrap.wrap(words, max(8, int(width / (FONT * 0.52)))):
            self.text(x, y, line, **style)
            y += LINE
        return y

    def box(self, x, y, width, height, fill):
        self.parts.append(f'<rect x="{x:g}" y="{y:g}" width="{width:g}" height="{height:g}" rx="6" '
                          f'fill="{FILLS[fill]}" stroke="{LINE_INK}"/>')

    def arrow(self, x1, y1, x2, y2):
        self.parts.append(f'<line x1="{x1:g}" y1="{y1:g}" x2="{x2:g}" y2="{y2:g}" '
                          f'stroke="{SOFT}" stroke-width="1.5" marker-end="url(#head)"/>')

    def heading(self, y, words, note):
        self.text(MARGIN, y, words, size=17, weight="bold")
        self.text(WIDTH - MARGIN, y, note, fill=SOFT, anchor="end")
        return y + 14

    def svg(self, height):
        head = (f'<svg xmlns="http://www.w3.org/2000/svg" width="{WIDTH}" height="{height:g}" '
                f'viewBox="0 0 {WIDTH} {height:g}" font-family="Helvetica, Arial, sans-serif">\n'
                '<title>Layers, data flow and threads of TabulexConverter</title>\n'
                f'<defs><marker id="head" markerWidth="8" markerHeight="8" refX="7" refY="4" '
                f'orient="auto"><path d="M0,0 L8,4 L0,8 z" fill="{SOFT}"/></marker></defs>\n'
                f'<rect width="{WIDTH}" height="{height:g}" fill="#ffffff"/>\n')
        return head + "\n".join(self.parts) + "\n</svg>\n"


def draw_layers(drawing, y):
    y = drawing.heading(y, "Layers", "a layer includes only what lies below it")
    for row in LAYERS:
        gap = 10
        width = (WIDTH - 2 * MARGIN - gap * (len(row) - 1)) / len(row)
        for i, (name, holds, fill) in enumerate(row):
            x = MARGIN + i * (width + gap)
            drawing.box(x, y, width, 44, fill)
            drawing.text(x + 12, y + 18, name, weight="bold")
            drawing.text(x + 12, y + 36, holds, fill=SOFT)
        y += 52
    return y


def draw_road(drawing, y, heading, note, steps, fill_of):
    """Steps as two rows of boxes, read like lines of text."""
    y = drawing.heading(y, heading, note)
    columns, gap, height = (len(steps) + 1) // 2, 24, 84
    width = (WIDTH - 2 * MARGIN - gap * (columns - 1)) / columns
    for i, (name, does) in enumerate(steps):
        row, column = divmod(i, columns)
        x, top = MARGIN + column * (width + gap), y + row * (height + 26)
        drawing.box(x, top, width, height, fill_of(i))
        drawing.text(x + 12, top + 20, f"{i + 1}  {name}", weight="bold")
        drawing.wrapped(x + 12, top + 40, does, width - 24, fill=SOFT)
        if column:
            drawing.arrow(x - gap + 2, top + height / 2, x - 2, top + height / 2)
        elif row:
            bend = top - 13
            end = MARGIN + (columns - 1) * (width + gap) + width / 2
            drawing.parts.append(f'<path d="M{end:g},{bend - 13:g} V{bend:g} H{x + width / 2:g} '
                                 f'V{top - 2:g}" fill="none" stroke="{SOFT}" stroke-width="1.5" '
                                 'marker-end="url(#head)"/>')
    return y + 2 * height + 26


def draw_threads(drawing, y):
    y = drawing.heading(y, "Threads and locks", "all locks are left before a sink gets a batch")
    half = (WIDTH - 2 * MARGIN - 20) / 2
    top = y
    for name, runs, fill in THREADS:
        drawing.box(MARGIN, top, half, 92, fill)
        drawing.text(MARGIN + 12, top + 20, name, weight="bold")
        drawing.wrapped(MARGIN + 12, top + 40, runs, half - 24, fill=SOFT)
        top += 102
    x, low = MARGIN + half + 20, y
    for name, guards in LOCKS:
        drawing.text(x, low + 16, name, weight="bold")
        low = drawing.wrapped(x + 105, low + 16, guards, half - 105, fill=SOFT) - 8
    return max(top, low + 8)


def draw():
    drawing = Drawing()
    y = draw_layers(drawing, 32) + 28
    y = draw_road(drawing, y, "What happens when a file name is put", "on the caller's thread",
                  DETECTION, lambda i: "logic") + 36
    y = draw_road(drawing, y, "A conversion", "on the file's worker; steps 7 and 8 are the sink's",
                  CONVERSION, lambda i: "sink" if i >= 6 else "worker") + 36
    y = draw_threads(drawing, y)
    return drawing.svg(y + 10)


def main():
    docs = os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", "docs")
    with open(os.path.join(docs, "architecture.svg"), "w", encoding="utf-8") as out:
        out.write(draw())


if __name__ == "__main__":
    main()
