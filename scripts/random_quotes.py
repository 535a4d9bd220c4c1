"""Random quote files: layouts out of the sample maker's parts, cells written in other ways, and lines
that are damaged. The same number and seed give the same file.

A file begins well enough for its layout to be found, most of the time; what comes after is as odd
as files get. `random_file(number, seed)` gives its bytes and the options that it is converted with."""
import dataclasses
import datetime as dt
import os
import random
import re
import sys

sys.path.insert(0, os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", "tools",
                                "samples"))
import make_samples  # noqa: E402
from make_samples import BAR, DATE_TEXTS, TIME_TEXTS, Sample  # noqa: E402

WHOLE = ["Volume", "Up Volume", "Down Volume", "Unchanged Volume", "Up Ticks", "Down Ticks",
         "Unchanged Ticks", "Total Ticks"]
DIVIDERS = ",,,,;;\t|: "
ALPHABET = list(b"00112345678999  \t,,.;:|/-+'\"()[]amPMjeF\x7f\x01\x00\xe9\xff\x81\n")
# How far a record is from the one before, by the resolution that says so.
STEPS = {"Days": dt.timedelta(days=1), "Weeks": dt.timedelta(days=7),
         "Minutes|1": dt.timedelta(minutes=1), "Minutes|5": dt.timedelta(minutes=5),
         "Seconds|1": dt.timedelta(seconds=1)}

# Options, each with what it needs of a file; most files have none.
OPTIONS = [
    (["--bar-end-time"], lambda s: "Time" in s.columns),
    (["--price-multiplier", "100"], lambda s: True),
    (["--volume-multiplier", "1/10"], lambda s: "Volume" in s.columns),
    (["--from", "2003-01-15"], lambda s: True),
    (["--to", "2003-01-20 12:00:00"], lambda s: True),
    (["--portion", "3:40"], lambda s: True),
    (["--symbol", "AB"], lambda s: "Symbol" in s.columns),
    (["--dividers", ",;"], lambda s: s.divider in ",;"),
    (["--code-page", "932"], lambda s: True),
    (["--whole-file"], lambda s: True),
    (["--on-error", "stop"], lambda s: True),
]


def plain_price(value, random_):
    return f"{value:.2f}"


def any_price(value, random_):
    """A decimal text of a value near this one, in one of the forms that texts of numbers have."""
    decimals = random_.choice((0, 1, 2, 3, 5, 8, 14, 17, 25))
    text = f"{value:.{decimals}f}"
    kind = random_.randrange(12)
    if kind == 0:
        return "+" + text
    if kind == 1:
        return "-" + text
    if kind == 2:
        return text.lstrip("0") + ("" if "." in text else ".")
    if kind == 3:
        return "000" + text
    if kind == 4:
        return f"{value:.{random_.randrange(8)}e}"
    if kind == 5:
        return str(random_.randrange(10 ** random_.randrange(1, 30)))
    if kind == 6:
        digits = str(random_.randrange(10 ** random_.randrange(1, 24)))
        at = random_.randrange(len(digits) + 1)
        return digits[:at] + "." + digits[at:]
    if kind == 7:
        return random_.choice(("", ".", "-", "+", "-.", "0", "-0", "0.", ".0", "1e400", "1,5"))
    return text


def any_whole(value, random_):
    text = str(value)
    kind = random_.randrange(12)
    if kind == 0:
        return text + "." + "0" * random_.randrange(4)
    if kind == 1:
        return random_.choice("+-") + text
    if kind == 2:
        return "0" * random_.randrange(20) + text
    if kind == 3:
        return str(random_.randrange(10 ** random_.randrange(1, 25)))
    if kind == 4:
        return random_.choice(("", "0", "-0", "1.5", "9223372036854775807", "9223372036854775808",
                               "-9223372036854775808", "1e3", " "))
    return text


@dataclasses.dataclass
class RandomSample(Sample):
    """A sample whose cells are written in other ways, at a rate of its own."""
    chance: random.Random = None
    step: str = ""
    odd: float = 0        # share of cells of another form
    quotes: float = 0     # share of cells in quotes
    blanks: float = 0     # share of cells with blanks around
    mark: str = "."
    late: bool = False    # midnight is 24:00 of the day before

    def cell(self, column, row):
        text = self.text(column, row)
        if self.chance.random() < self.blanks:
            text = self.chance.choice((" {}", "{} ", "  {}", "{}\t", " {} ")).format(text)
        if self.chance.random() < self.quotes:
            text = self.chance.choice(('"{}"', "'{}'", "({})", "[{}]", '"{}')).format(text)
        return text

    def text(self, column, row):
        odd = self.chance.random() < self.odd
        if column == "Time" and odd:
            return self.chance.choice(("24:00", "2400", "00:00:00", "23:59:59", "12:00 PM", "25:00",
                                       "09:30:00.5", "93000", "0:0", ""))
        if column == "Date" and odd:
            return self.chance.choice(("20030230", "1/1/1900", "31.12.2079", "2003-01-13", "", "x",
                                       "13-Jan-2003", "13-jAN-03", "1/13/03"))
        if isinstance(row.get(column), float):
            write = any_price if odd else plain_price
            return write(row[column], self.chance).replace(".", self.mark)
        if isinstance(row.get(column), int) and odd:
            return any_whole(row[column], self.chance)
        midnight = self.late and row["Time"] == dt.time()
        if midnight and column == "Date":
            return super().cell(column, {"Date": row["Date"] - dt.timedelta(days=1)})
        text = super().cell(column, row)
        return re.sub("^00?", "24", text) if midnight and column == "Time" else text


def damaged(line, random_):
    """A line with a byte changed, a field lost or won, or made long."""
    kind = random_.randrange(9)
    at = random_.randrange(len(line) + 1)
    if kind == 0:
        return line[:at] + line[at + 1:]
    if kind == 1:
        return line[:at] + bytes([random_.choice(ALPHABET)]) + line[at:]
    if kind == 2:
        return line[:at]
    if kind == 3:
        return line + random_.choice((b",", b" ", b";1", b"x", b",,,")) * random_.randrange(1, 9)
    if kind == 4:
        return line + b",more" * random_.randrange(80, 130)  # about where a record is cut
    if kind == 5:
        return random_.choice((b"", b" ", b",,,,", b"-", b"\t"))
    return line[:at] + bytes([random_.choice(ALPHABET)]) + line[at + 1:]


def rows_of(name, random_, step, symbols):
    count = random_.choice((3, 12, 40, 40, 40, 120, 120, 400, 1100, 2300))
    start = dt.datetime(2003, 1, 13, *random_.choice(((9, 30), (9, 30), (23, 40))))
    if step == "Ticks":
        return make_samples.trades(name, start, count)
    if step in ("Days", "Weeks"):
        start = dt.datetime(random_.choice((1903, 1999, 2003, 2019)), 1, 13)
    return [row for symbol in symbols or [None]
            for row in make_samples.bars(name, start, STEPS[step], count, symbol)]


def columns_of(random_, step, symbols):
    columns = ["Symbol"] if symbols else []
    columns += ["Date"] if step in ("Days", "Weeks") else ["Date", "Time"]
    columns += ["Price"] if step == "Ticks" else random_.choice((BAR, BAR, BAR, ["Close"]))
    if random_.random() < 0.8:
        columns.append("Volume")
    if step != "Ticks" and random_.random() < 0.3:
        columns += random_.sample(WHOLE[1:], random_.randrange(1, 5))
    if random_.random() < 0.1:
        columns.insert(random_.randrange(1, len(columns) + 1), None)
    return columns


def sample_of(name, random_):
    step = random_.choice(("Ticks", *STEPS, "Minutes|1", "Minutes|1"))
    symbols = random_.choice((None, None, ["ABC"], ["AB", "C D", "EFG"], ["\xd6l", "Z.1"]))
    if step == "Ticks":
        symbols = None
    rows = rows_of(name, random_, step, symbols)
    for row in rows:
        row.update({column: random_.randrange(100_000) for column in WHOLE[1:]})
    divider = random_.choice(DIVIDERS)
    # Texts that a layout's divider would cut are left to a few files.
    fits = lambda text: random_.random() < 0.03 or divider not in text
    date = random_.choice([k for k, text in DATE_TEXTS.items() if fits(text(rows[0]["Date"]))])
    times = [k for k, text in TIME_TEXTS.items() if fits(text(rows[0]["Time"]))]
    rate = lambda *some: random_.choice((0, 0, 0, *some))
    return RandomSample(
        name, columns_of(random_, step, symbols), rows, date_template=date,
        time_template=random_.choice(times or ["*hmm"]), divider=divider,
        header=random_.random() < 0.8, descending=random_.random() < 0.2,
        encoding=random_.choice(("latin-1",) * 8 + ("utf-16-le", "utf-16")),
        newline=random_.choice(("\n", "\n", "\n", "\r\n", "\r")),
        final_newline=random_.random() < 0.8,
        preamble=random_.choice(((),) * 15 + (("Source,Example", "Currency,EUR"),)),
        chance=random_, step=step, odd=rate(0.002, 0.02, 0.2), quotes=rate(0.01, 1),
        blanks=rate(0.01, 0.3), mark="," if divider != "," and random_.random() < 0.2 else ".",
        late=random_.random() < 0.5)


def random_file(number, seed):
    """The bytes of a file, and the options of `convert`."""
    random_ = random.Random(f"{seed} {number}")
    sample = sample_of(f"{seed}-{number}", random_)
    newline = sample.newline.encode()
    share = random_.choice((0, 0, 0.01, 0.1, 0.6))
    calm = dataclasses.replace(sample, odd=0, blanks=0, quotes=int(sample.quotes == 1)).lines()
    lines = [line.encode("latin-1") for line in sample.lines()]
    lines = [damaged(line, random_) if random_.random() < share else line for line in lines]
    # The layout is found in the first lines, and the last one ends a run.
    begin = random_.choice((0, 32, 32, 32, 105, 105))
    for i in (*range(min(begin, len(lines))), *([len(lines) - 1] if begin else [])):
        lines[i] = calm[i].encode("latin-1")
    if random_.random() < 0.1 and len(lines) > 8:
        i, k = random_.randrange(4, len(lines)), random_.randrange(4, len(lines))
        lines[i], lines[k] = lines[k], lines[i]
    content = newline.join(lines) + (newline if sample.final_newline else b"")
    options = [option for option, suits in OPTIONS if random_.random() < 0.05 and suits(sample)]
    if random_.random() < 0.8:
        options.append(["--resolution", sample.step])
    return (content.decode("latin-1").encode(sample.encoding),
            [word for option in options for word in option])
