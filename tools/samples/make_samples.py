#!/usr/bin/env python3
"""Makes small quote files in many layouts, and knows what they hold.

    make_samples.py FOLDER          all of them
    make_samples.py --kept FOLDER   the dozen that is kept in samples/

The files are the same on every run. As a module: `all_samples()` gives Sample objects, whose
`content()` is the file's bytes and whose `rows` are the records, the earliest first."""
import argparse
import dataclasses
import datetime as dt
import os
import random
import sys

SEED = 20031225
MONTHS = "jan feb mar apr may jun jul aug sep oct nov dec".split()


@dataclasses.dataclass
class Sample:
    name: str
    columns: list                  # type names in file order; None is a column without a type
    rows: list                     # dicts: type name to date, time, number or text
    date_template: str = "*y/*m/*d"
    time_template: str = "*h:*m:*s"
    divider: str = ","
    header: bool = True
    descending: bool = False
    encoding: str = "cp1252"
    newline: str = "\n"
    final_newline: bool = True
    preamble: tuple = ()           # lines before the header
    junk: dict = dataclasses.field(default_factory=dict)  # line in the file, from 1: its text
    resolution: int = 0            # the component's id, 0 to 7
    size: int = 0
    kept: bool = False

    def lines(self):
        rows = reversed(self.rows) if self.descending else self.rows
        lines = list(self.preamble)
        if self.header:
            lines.append(self.divider.join(c or "Remark" for c in self.columns))
        lines += [self.divider.join(self.cell(c, row) for c in self.columns) for row in rows]
        for at in sorted(self.junk):
            lines.insert(at - 1, self.junk[at])
        return lines

    def content(self):
        text = self.newline.join(self.lines()) + (self.newline if self.final_newline else "")
        return text.encode(self.encoding)

    def cell(self, column, row):
        if column is None:
            return "note"
        value = row[column]
        if column == "Date":
            return DATE_TEXTS[self.date_template](value)
        if column == "Time":
            return TIME_TEXTS[self.time_template](value)
        return f"{value:.2f}" if isinstance(value, float) else str(value)

    def write(self, folder):
        path = os.path.join(folder, self.name)
        with open(path, "wb") as f:
            f.write(self.content())
        return path


def _mmm(d):
    return MONTHS[d.month - 1].capitalize()


# The text of a date or time by each template.
DATE_TEXTS = {
    "*y/*m/*d": lambda d: f"{d:%Y/%m/%d}",
    "*m/*d/*y": lambda d: f"{d:%m/%d/%Y}",
    "yyyymmdd": lambda d: f"{d:%Y%m%d}",
    "yymmdd": lambda d: f"{d:%y%m%d}",
    "*d.*m.*y": lambda d: f"{d.day}.{d.month}.{d:%Y}",
    "*d/*m/*y": lambda d: f"{d:%d/%m/%Y}",
    "*dmmyyyy": lambda d: f"{d:%d%m%Y}",
    "*dmmyy": lambda d: f"{d:%d%m%y}",
    "ddmmy*": lambda d: f"{d:%d%m}{d.year % 10}",
    "*y-*m-*d": lambda d: f"{d:%Y-%m-%d}",
    "*y_*m_*d": lambda d: f"{d:%Y_%m_%d}",
    "*y *m *d": lambda d: f"{d:%Y %m %d}",
    "*d-*m-*y": lambda d: f"{d:%d-%m-%Y}",
    "*d_*m_*y": lambda d: f"{d:%d_%m_%Y}",
    "*d *m *y": lambda d: f"{d:%d %m %Y}",
    "*m-*d-*y": lambda d: f"{d:%m-%d-%Y}",
    "*m_*d_*y": lambda d: f"{d:%m_%d_%Y}",
    "*m *d *y": lambda d: f"{d:%m %d %Y}",
    "*dmmmyy": lambda d: f"{d.day}{_mmm(d)}{d:%y}",
    "*dmmmyyyy": lambda d: f"{d.day}{_mmm(d)}{d:%Y}",
    "*d mmm *y": lambda d: f"{d.day} {_mmm(d)} {d:%Y}",
    "*d-mmm-*y": lambda d: f"{d.day}-{_mmm(d)}-{d:%Y}",
    "*d_mmm_*y": lambda d: f"{d.day}_{_mmm(d)}_{d:%Y}",
    "mmm,*d *y": lambda d: f"{_mmm(d)},{d.day} {d:%Y}",
    "mmm_*d_*y": lambda d: f"{_mmm(d)}_{d.day}_{d:%Y}",
}


def _half_day(t):
    return (t.hour % 12 or 12), ("pm" if t.hour >= 12 else "am")


TIME_TEXTS = {
    "*hmm": lambda t: f"{t.hour}{t:%M}",
    "*hmmss": lambda t: f"{t.hour}{t:%M%S}",
    "*h:mm": lambda t: f"{t.hour}:{t:%M}",
    "*h:*m": lambda t: f"{t.hour}:{t.minute}",
    "*h:*m:*s": lambda t: f"{t:%H:%M:%S}",
    "*h:*mtt@pm": lambda t: "{}:{:02}{}".format(_half_day(t)[0], t.minute, _half_day(t)[1]),
    "*h:*m:*stt@pm": lambda t: "{}:{:02}:{:02}{}".format(_half_day(t)[0], t.minute, t.second,
                                                         _half_day(t)[1]),
    "*h:*m tt@pm": lambda t: "{}:{:02} {}".format(_half_day(t)[0], t.minute, _half_day(t)[1]),
    "*h:*m:*s tt@pm": lambda t: "{}:{:02}:{:02} {}".format(_half_day(t)[0], t.minute, t.second,
                                                           _half_day(t)[1]),
    # the digits after the point are whole milliseconds
    "*h:*m:*s.*f": lambda t: f"{t:%H:%M:%S}.{t.microsecond // 1000}",
}

BAR = ["Open", "High", "Low", "Close"]


class Market:
    """A price that moves at random, the seed being the sample's name."""

    def __init__(self, name):
        self.random = random.Random(f"{SEED} {name}")
        self.price = self.random.randint(9000, 19000)  # hundredths

    def bar(self):
        step = lambda: self.random.randint(1, 60)
        open_ = self.price
        close = open_ + self.random.randint(-50, 50)
        high, low = max(open_, close) + step(), min(open_, close) - step()
        self.price = close
        cells = dict(zip(BAR, (v / 100 for v in (open_, high, low, close))))
        return {**cells, "Volume": self.random.randint(100_000, 999_999)}

    def trade(self):
        self.price += self.random.randint(-50, 50)
        return {"Price": self.price / 100, "Volume": self.random.randint(100_000, 999_999)}


def bars(name, start, step, count, symbol=None):
    """Bars one step apart, the first of them at `start`."""
    market = Market(f"{name} {symbol}")
    rows = []
    for i in range(count):
        at = start + i * step
        row = {"Date": at.date(), "Time": at.time(), **market.bar()}
        rows.append({"Symbol": symbol, **row} if symbol else row)
    return rows


def trades(name, start, count):
    market = Market(name)
    rows, at = [], start
    for _ in range(count):
        rows.append({"Date": at.date(), "Time": at.time(), **market.trade()})
        at += dt.timedelta(milliseconds=market.random.choice((0, 5, 250, 3000)))
    return rows


def days(name, start, count, symbol=None):
    return bars(name, dt.datetime.combine(start, dt.time()), dt.timedelta(days=1), count, symbol)


def minutes(name, count, size=1, start=dt.datetime(2003, 1, 13, 9, 30)):
    return bars(name, start, dt.timedelta(minutes=size), count)


DAY = ["Date", *BAR, "Volume"]
INTRADAY = ["Date", "Time", *BAR, "Volume"]
TICK = ["Date", "Time", "Price", "Volume"]

# Years in which no template that is tried before its own can read a text.
YEARS = {"*dmmyy": 1999, "ddmmy*": 2009}


def date_samples():
    for i, template in enumerate(DATE_TEXTS):
        name = f"date-{i + 1:02}.csv"
        start = dt.date(YEARS.get(template, 2003), 1, 13)
        blank = " " in template
        columns = ["Symbol", *DAY] if blank else DAY  # a blank before a comma divides
        yield Sample(name, columns, days(name, start, 18, "ABC" if blank else None),
                     date_template=template, divider=";" if "," in template else ",",
                     resolution=6, size=1, kept=template in ("*dmmmyyyy", "*d/*m/*y"))


def time_samples():
    for i, template in enumerate(TIME_TEXTS):
        name = f"time-{i + 1:02}.csv"
        if template == "*h:*m:*s.*f":
            yield Sample(name, TICK, trades(name, dt.datetime(2003, 1, 13, 9, 30, 15, 5000), 30),
                         time_template=template, resolution=1, size=1, kept=True)
            continue
        rows = minutes(name, 30, 7, dt.datetime(2003, 1, 13, 10, 1))
        if " " in template:
            rows = [{"Symbol": "ABC", **row} for row in rows]
        columns = ["Symbol", *INTRADAY] if " " in template else INTRADAY
        yield Sample(name, columns, rows, time_template=template, resolution=5, size=7,
                     kept=template == "*h:*mtt@pm")


def divider_samples():
    for word, divider in (("comma", ","), ("semicolon", ";"), ("bar", "|"), ("tab", "\t"),
                          ("blank", " ")):
        name = f"divider-{word}.txt"
        yield Sample(name, INTRADAY, minutes(name, 20), divider=divider, resolution=5, size=1,
                     kept=word in ("tab", "blank"))
    # A colon divides only if nothing else does, so neither dates nor times may have one.
    yield Sample("divider-colon.txt", DAY, days("divider-colon", dt.date(2003, 1, 13), 20),
                 date_template="yyyymmdd", divider=":", resolution=6, size=1)


def layout_samples():
    start = dt.date(2003, 1, 13)
    yield Sample("minute-5.csv", INTRADAY, minutes("minute-5", 40, 5), resolution=5, size=5,
                 kept=True)
    yield Sample("minute-no-header.csv", INTRADAY, minutes("minute-no-header", 40), header=False,
                 resolution=5, size=1)
    yield Sample("day-no-header.csv", DAY, days("day-no-header", start, 20), header=False,
                 resolution=6, size=1, kept=True)
    yield Sample("tick.csv", TICK, trades("tick", dt.datetime(2003, 1, 13, 9, 30), 40),
                 time_template="*h:*m:*s.*f", resolution=1, size=1)
    yield Sample("week.csv", DAY,
                 bars("week", dt.datetime(2003, 1, 13), dt.timedelta(days=7), 20),
                 resolution=7, size=1, kept=True)
    yield Sample("symbols.csv", ["Symbol", *DAY],
                 [row for s in ("ABC", "DEF", "GHI") for row in days("symbols", start, 12, s)],
                 resolution=6, size=1, kept=True)
    yield Sample("symbols-quoting.csv", ["Symbol", *DAY],
                 days("symbols-quoting", start, 12, "A,B"), divider=";", resolution=6, size=1)
    yield Sample("descending.csv", DAY, days("descending", start, 25), descending=True,
                 resolution=6, size=1, kept=True)
    yield Sample("descending-no-header.csv", DAY, days("descending-no-header", start, 25),
                 descending=True, header=False, resolution=6, size=1)
    yield Sample("two-byte.txt", INTRADAY, minutes("two-byte", 20), encoding="utf-16-le",
                 newline="\r\n", resolution=5, size=1)
    yield Sample("gbk-symbol.csv", ["Symbol", *DAY], days("gbk-symbol", start, 12, "股票"),
                 encoding="gbk", resolution=6, size=1, kept=True)
    yield Sample("crlf.csv", DAY, days("crlf", start, 20), newline="\r\n", resolution=6, size=1)
    yield Sample("no-final-newline.csv", DAY, days("no-final-newline", start, 20),
                 final_newline=False, resolution=6, size=1)
    yield Sample("preamble.csv", DAY, days("preamble", start, 20),
                 preamble=("Source,Example", "Currency,EUR"), resolution=6, size=1)
    # The resolution is found from the first hundred lines.
    yield Sample("junk.csv", DAY, days("junk", start, 130),
                 junk={105: "junk line", 110: "2003/01/30,x,1,1,1,1", 126: "--- end of page ---"},
                 resolution=6, size=1, kept=True)
    yield Sample("junk-descending.csv", DAY, days("junk-descending", start, 130), descending=True,
                 junk={105: "junk line", 118: "another one"}, resolution=6, size=1)
    yield Sample("long.csv", INTRADAY, minutes("long", 2500), resolution=5, size=1)
    yield Sample("one-thousand.csv", INTRADAY, minutes("one-thousand", 1000), resolution=5, size=1)


def export_sample():
    """What a person gets to see from a vendor; drawn in the README."""
    return Sample("export.txt", INTRADAY,
                  minutes("export", 140, 5, dt.datetime(2003, 2, 3, 9, 30)),
                  date_template="*d.*m.*y", time_template="*h:*mtt@pm", divider=";",
                  preamble=("Example Quotes;five-minute bars", "Currency;EUR"),
                  junk={104: "-- page 2 --"}, descending=True, resolution=5, size=5, kept=True)


def all_samples():
    for group in (date_samples, time_samples, divider_samples, layout_samples):
        yield from group()


def main():
    parser = argparse.ArgumentParser(description="Makes small quote files in many layouts.")
    parser.add_argument("--kept", action="store_true", help="only those that are kept in samples/")
    parser.add_argument("folder")
    args = parser.parse_args()
    os.makedirs(args.folder, exist_ok=True)
    for sample in (*all_samples(), export_sample()):
        if sample.kept or not args.kept:
            sample.write(args.folder)
    return 0


if __name__ == "__main__":
    sys.exit(main())
