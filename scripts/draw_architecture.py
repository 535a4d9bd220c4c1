#!/usr/bin/env python3
"""Draws docs/architecture.svg: the layers, the steps of a detection and of a
conversion, the threads of a session, and the locks. The layers are those of the table in
docs/architecture.md, the rest is below. Run it after a change of either:

    scripts/draw_architecture.py
"""
import itertools
import os
import re
import textwrap
from xml.sax.saxutils import escape

DOCS = os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", "docs")

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
}

# What a layer is painted in; all others are "base".
LAYER_FILLS = {"hosts": "host", "component": "front", "front": "front", "UI": "front",
               "dialog": "front", "windows": "front",
               "contract": "front", "data": "logic", "parsing": "logic", "files": "logic"}

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

# (step, what it does, fill)
CONVERSION = [
    ("line", "the worker's next position of this run, kept as text", "worker"),
    ("batch", "1000 lines, or what is left at the end", "worker"),
    ("checks", "date, symbol, order and step, date range", "worker"),
    ("fields", "values by type and template, scaled", "worker"),
    ("array", "column by record; bad lines leave no gap", "worker"),
    ("PutRecords", "to the session, with all locks left: dates as days, times as milliseconds",
     "worker"),
    ("DataChanged", "the host's sink, while the file's worker waits", "host"),
    ("Commit, Rollback", "once a session, and then the sink is let go of", "host"),
]

# The threads of a session, left to right: (name, fill).
LANES = [
    ("the file's worker, one a file", "worker"),
    ("the host's thread", "host"),
    ("the symbols' thread, one a process", "worker"),
]

# (lane, row, name, what it does)
PARTIES = [
    (0, 0, "run", "a data parser's clone steps through the file; runs of a file take turns"),
    (0, 1, "session's object", "a private front object: puts batches into the host's form"),
    (0, 2, "progress box", "shows figures and bad lines, and waits for the user's answer"),
    (1, 0, "front object", "the host's: lists, choices, its own data parser; starts and ends sessions"),
    (1, 1, "sink window", "its messages, one at a time while the host pumps, are calls of the sink"),
    (1, 2, "progress window", "shows itself on the host's view; a button is the answer"),
    (2, 0, "enumerator", "walks on a clone that parses nothing, one after the other"),
    (2, 1, "events proxy", "sends each symbol as it is"),
]

# From party to party, by (lane, row): (from, to, words in lines)
HOPS = [
    ((1, 0), (0, 0), ["DoConvert:", "clone, queue"]),
    ((1, 0), (2, 0), ["DoEnum-", "Symbols"]),
    ((0, 0), (0, 1), ["PutRecords, EndTransaction"]),
    ((0, 1), (0, 2), ["DoProgress, OnError2"]),
    ((0, 1), (1, 1), ["sent: batch,", "error, end"]),
    ((0, 2), (1, 2), ["sent: figures,", "questions"]),
    ((2, 0), (2, 1), ["PutRecords, EndTransaction"]),
    ((2, 1), (1, 1), ["sent: symbol,", "end"]),
]

BESIDE = ("Beside these, parsers may be called from any thread, and an active object of LocalRPC runs its "
          "tasks on a thread of its own, or on the one that started it while that pumps.")

# In the order in which they are taken. (lock, what it guards and what may be held with it)
LOCKS = [
    ("1  proxies", "one a process: transactions, and links back to parsers. Under it only what the "
     "Cancel of a transaction takes"),
    ("2  data parser", "one each, recursive: held while records are parsed and in OnError2, left "
     "before PutRecords and EndTransaction"),
    ("3  record parser", "one each, recursive: layout, templates, current record. Whoever needs "
     "both takes the data parser's first"),
    ("4  file", "one each: pages, index, requests; left between strides and while a consumer is "
     "called"),
    ("5  question", "one a progress box: held while the user is asked, which a run may do with its "
     "data parser's lock"),
    ("leaves", "the pool's two, never both; the list of enumerations; a progress box's state; the "
     "message queues. Nothing is called under them"),
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

    def lane(self, x, y, width, height, fill):
        self.parts.append(f'<rect x="{x:g}" y="{y:g}" width="{width:g}" height="{height:g}" rx="10" '
                          f'fill="{FILLS[fill]}" fill-opacity="0.35"/>')

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


def layers():
    """The rows of the document's table, as (level, name, folder, what it holds)."""
    with open(os.path.join(DOCS, "architecture.md"), encoding="utf-8") as page:
        rows = re.findall(r"^\| (\d+) \| (.+?) \| (.+?) \| (.+?) \|", page.read(), re.M)
    return [(level, name, folder.replace("`", ""), holds.replace("`", ""))
            for level, name, folder, holds in rows]


def draw_layers(drawing, y):
    y = drawing.heading(y, "Layers", "a layer includes only what lies below it")
    for _, row in itertools.groupby(layers(), key=lambda layer: layer[0]):
        row, gap = list(row), 10
        width = (WIDTH - 2 * MARGIN - gap * (len(row) - 1)) / len(row)
        height = 44 + (LINE if len(row) > 1 else 0)
        for i, (_, name, folder, holds) in enumerate(row):
            x = MARGIN + i * (width + gap)
            drawing.box(x, y, width, height, LAYER_FILLS.get(name, "base"))
            drawing.text(x + 12, y + 18, folder, weight="bold")
            drawing.wrapped(x + 12, y + 36, holds, width - 24, fill=SOFT)
        y += height + 8
    return y


def draw_steps(drawing, y, heading, note, steps):
    """Steps as two rows of boxes, read like lines of text."""
    y = drawing.heading(y, heading, note)
    columns, gap, height = (len(steps) + 1) // 2, 24, 84
    width = (WIDTH - 2 * MARGIN - gap * (columns - 1)) / columns
    for i, (name, does, fill) in enumerate(steps):
        row, column = divmod(i, columns)
        x, top = MARGIN + column * (width + gap), y + row * (height + 26)
        drawing.box(x, top, width, height, fill)
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


LANE_GAP, LANE_PAD = 104, 12
PARTY_HEIGHT, PARTY_GAP = 92, 34


def lane_width():
    return (WIDTH - 2 * MARGIN - LANE_GAP * (len(LANES) - 1)) / len(LANES)


def party_box(lane, row, y):
    x = MARGIN + lane * (lane_width() + LANE_GAP) + LANE_PAD
    return x, y + 34 + row * (PARTY_HEIGHT + PARTY_GAP), lane_width() - 2 * LANE_PAD


def draw_hop(drawing, y, start, end, words):
    x1, y1, width = party_box(*start, y)
    x2, y2, _ = party_box(*end, y)
    if start[0] == end[0]:  # down within a lane
        drawing.arrow(x1 + 24, y1 + PARTY_HEIGHT + 2, x1 + 24, y2 - 2)
        drawing.text(x1 + 34, y1 + PARTY_HEIGHT + 22, words[0], fill=SOFT)
        return
    to_right = end[0] > start[0]
    middle = y1 + PARTY_HEIGHT / 2 + 14
    near, far = (x1 + width + 2, x2 - 2) if to_right else (x1 - 2, x2 + width + 2)
    drawing.arrow(near, middle, far, middle)
    for i, line in enumerate(words):
        drawing.text((near + far) / 2, middle - 8 - LINE * (len(words) - 1 - i), line, fill=SOFT,
                     anchor="middle", size=12)


def draw_session(drawing, y):
    y = drawing.heading(y, "The threads of a session", "what is sent waits until it has been handled")
    rows = 1 + max(row for _, row, _, _ in PARTIES)
    height = 34 + rows * PARTY_HEIGHT + (rows - 1) * PARTY_GAP + LANE_PAD
    for i, (name, fill) in enumerate(LANES):
        x = MARGIN + i * (lane_width() + LANE_GAP)
        drawing.lane(x, y, lane_width(), height, fill)
        drawing.text(x + LANE_PAD, y + 22, name, fill=SOFT)
    for lane, row, name, does in PARTIES:
        x, top, width = party_box(lane, row, y)
        drawing.box(x, top, width, PARTY_HEIGHT, LANES[lane][1])
        drawing.text(x + 12, top + 20, name, weight="bold")
        drawing.wrapped(x + 12, top + 40, does, width - 24, fill=SOFT)
    for start, end, words in HOPS:
        draw_hop(drawing, y, start, end, words)
    return drawing.wrapped(MARGIN, y + height + 20, BESIDE, WIDTH - 2 * MARGIN, fill=SOFT) - 8


def draw_locks(drawing, y):
    y = drawing.heading(y, "Locks", "in the order in which they are taken; none is held in DataChanged")
    indent, low = 130, y
    for name, guards in LOCKS:
        drawing.text(MARGIN, low + 16, name, weight="bold")
        low = drawing.wrapped(MARGIN + indent, low + 16, guards, WIDTH - 2 * MARGIN - indent,
                              fill=SOFT) - 8
    return low + 8


def draw():
    drawing = Drawing()
    y = draw_layers(drawing, 32) + 28
    y = draw_steps(drawing, y, "What happens when a file name is put", "on the caller's thread",
                  [(name, does, "logic") for name, does in DETECTION]) + 36
    y = draw_steps(drawing, y, "A conversion", "steps 7 and 8 are on the host's thread",
                  CONVERSION) + 36
    y = draw_session(drawing, y) + 36
    y = draw_locks(drawing, y)
    return drawing.svg(y + 10)


def main():
    with open(os.path.join(DOCS, "architecture.svg"), "w", encoding="utf-8") as out:
        out.write(draw())


if __name__ == "__main__":
    main()
