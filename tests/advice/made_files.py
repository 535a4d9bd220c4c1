"""Quote files in the dialects of many vendors, made from a seed, with the rows that a person reads in them.

A file is a series of bars, days or trades, written by choices that are drawn one by one: language and words of the
headings, order of the columns, form of the moment, numbers, divider, quotes, lines around the table, side columns,
symbols, missing marks. `make(seed)` gives the same file for the same seed, whatever was made before."""
import datetime as D
import random

ENGLISH = {"date": ["Date", "DATE", "date", "Trade Date", "<DATE>"], "time": ["Time", "TIME", "<TIME>", "time"],
           "moment": ["Date", "Datetime", "Timestamp", "Date Time", "time", ""], "open": ["Open", "OPEN", "<OPEN>", "open", "Open Price", "o"],
           "high": ["High", "HIGH", "<HIGH>", "high", "High Price", "h"], "low": ["Low", "LOW", "<LOW>", "low", "Low Price", "l"],
           "close": ["Close", "CLOSE", "<CLOSE>", "close", "Close Price", "c"], "price": ["Price", "Last", "price", "<LAST>", "Trade Price", "Price"],
           "volume": ["Volume", "VOLUME", "<VOL>", "volume", "Vol.", "v"], "symbol": ["Symbol", "Ticker", "<TICKER>", "symbol", "Sym", "Instrument"]}
WORDS = {
    "de": ("Datum", "Uhrzeit", "Eröffnung", "Hoch", "Tief", "Schlusskurs", "Volumen", "Kürzel", "Kurs"),
    "fr": ("Date", "Heure", "Ouverture", "Plus haut", "Plus bas", "Clôture", "Volume", "Ticker", "Cours"),
    "es": ("Fecha", "Hora", "Apertura", "Máximo", "Mínimo", "Cierre", "Volumen", "Símbolo", "Precio"),
    "pt": ("Data", "Hora", "Abertura", "Máxima", "Mínima", "Fechamento", "Volume", "Código", "Preço"),
    "it": ("Data", "Ora", "Apertura", "Massimo", "Minimo", "Chiusura", "Volume", "Simbolo", "Prezzo"),
    "nl": ("Datum", "Tijd", "Opening", "Hoog", "Laag", "Slot", "Volume", "Fonds", "Koers"),
    "pl": ("Data", "Czas", "Otwarcie", "Najwyższy", "Najniższy", "Zamknięcie", "Wolumen", "Nazwa", "Cena"),
    "ru": ("Дата", "Время", "Открытие", "Максимум", "Минимум", "Закрытие", "Объем", "Тикер", "Цена"),
    "tr": ("Tarih", "Saat", "Açılış", "Yüksek", "Düşük", "Kapanış", "Hacim", "Sembol", "Fiyat"),
    "zh": ("日期", "时间", "开盘价", "最高价", "最低价", "收盘价", "成交量", "代码", "价格"),
    "ja": ("日付", "時刻", "始値", "高値", "安値", "終値", "出来高", "銘柄コード", "価格"),
}
KEYS = ("date", "time", "open", "high", "low", "close", "volume", "symbol", "price")
MONTHS = ["Jan", "Feb", "Mar", "Apr", "May", "Jun", "Jul", "Aug", "Sep", "Oct", "Nov", "Dec"]
DAYS = ["Mon", "Tue", "Wed", "Thu", "Fri", "Sat", "Sun"]
SIDES = {"Adj Close": lambda r, row: row["close"] * .97 if "close" in row else row["price"] * .97,
         "VWAP": lambda r, row: sum(row[k] for k in ("high", "low")) / 2 if "high" in row else row["price"],
         "Turnover": lambda r, row: row.get("volume", 1) * row.get("close", row.get("price", 1)),
         "Change %": lambda r, row: r.uniform(-3, 3), "SMA 20": lambda r, row: row.get("close", row.get("price", 1)) * r.uniform(.98, 1.02),
         "Dividends": lambda r, row: 0.0, "Prev Close": lambda r, row: row.get("open", row.get("price", 1))}


def moments(r, kind, n):
    at = D.datetime(r.randint(1995, 2024), r.randint(1, 12), r.randint(1, 28))
    if kind == "day":
        for _ in range(n):
            at += D.timedelta(days=1)
            while at.weekday() > 4:
                at += D.timedelta(days=1)
            yield at
    elif kind == "week":
        at -= D.timedelta(days=at.weekday())
        for i in range(n):
            yield at + D.timedelta(days=7 * i)
    elif kind == "tick":
        at += D.timedelta(hours=9, minutes=30)
        for _ in range(n):
            at += D.timedelta(seconds=r.choice([0, 1, 1, 2, 5, 30]))
            yield at
    else:
        at += D.timedelta(hours=9, minutes=30)
        for i in range(n):
            yield at
            at += D.timedelta(minutes=kind)
            if at.hour >= 17:
                at = D.datetime(at.year, at.month, at.day, 9, 30) + D.timedelta(days=3 if at.weekday() == 4 else 1)


def series(r, kind, n, digits, fraction):
    price = r.choice([1.1, 25, 140, 1300, 21000] if digits >= 4 else [25, 140, 1300, 21000])
    rows = []
    for at in moments(r, kind, n):
        step = price * .01
        if kind == "tick":
            price = round(max(price + r.uniform(-step, step) / 5, step), digits)
            row = {"moment": at, "price": price}
        else:
            opened = price
            closed = round(max(opened + r.uniform(-step, step), step), digits)
            high = round(max(opened, closed) + r.uniform(0, step), digits)
            low = round(min(opened, closed) - r.uniform(0, step) * .9, digits)
            row = {"moment": at, "open": opened, "high": high, "low": low, "close": closed}
            price = closed
        row["volume"] = round(r.uniform(1, 5000), fraction) if fraction else r.randint(1, 5000000)
        rows.append(row)
    return rows


class Writer:
    def __init__(self, r, kind):
        self.r, self.kind = r, kind
        self.language = r.choice(["en"] * 8 + list(WORDS))
        self.header = r.random() < .85 or self.language != "en"
        self.comma = self.language in ("de", "fr", "es", "pt", "it", "nl", "pl", "ru", "tr") and r.random() < .5
        self.divider = r.choice(";;\t") if self.comma and r.random() < .7 else r.choice(",,,,;\t|")
        self.quotes = r.choice(["all"] + ["none"] * 4)
        self.thousands = r.random() < .12
        self.suffix = r.random() < .07
        if (self.comma or self.thousands) and self.divider == ",":
            self.quotes = "all"
        self.side = r.sample(sorted(SIDES), r.choice([0, 0, 0, 1, 2])) if self.header and self.language == "en" else []
        self.style = r.randrange(6)
        self.pick_moment()

    def pick_moment(self):
        r, intraday = self.r, self.kind not in ("day", "week")
        dates = ["%Y-%m-%d", "%Y/%m/%d", "%Y%m%d", "%d.%m.%Y", "%Y.%m.%d", "%d-%b-%Y", "%d-%b-%y", "%b %d, %Y", "%d/%m/%Y", "%m/%d/%Y", "%d %B %Y",
                 "%a %d %b %Y"]
        if not intraday:
            dates += ["parts"] if self.header and self.language == "en" else []
        if self.language in ("zh", "ja"):
            dates = ["%Y-%m-%d", "%Y/%m/%d", "%Y%m%d", "%Y年%m月%d日"]
        elif self.language != "en":
            dates = ["%Y-%m-%d", "%d.%m.%Y", "%d/%m/%Y", "%d-%m-%Y", "%Y%m%d"]
        self.date = r.choice(dates)
        self.unpadded = r.random() < .2
        self.time, self.joined = None, None
        if intraday:
            times = ["%H:%M:%S", "%H:%M:%S", "%H%M%S", "%I:%M:%S %p", "%H:%M:%S.000"] + (["%H:%M", "%H%M"] if self.kind != "tick" else [])
            self.time = r.choice(times)
            self.joined = r.choice([None, None, " ", " ", "T", "  "])
            if self.joined == "T":
                self.date, self.time = "%Y-%m-%d", "%H:%M:%S" + r.choice(["", "Z", "+00:00", ".000"])
            if r.random() < .1:
                self.date = r.choice(["epoch", "epoch-ms"])
                self.joined = " "
        elif r.random() < .1 and self.date != "parts":
            self.joined, self.time = " ", r.choice(["%H:%M:%S", "%H:%M"])
        if self.date.find(",") >= 0 and self.divider == ",":
            self.quotes = "all"
        if self.divider == " " or (self.divider == "|" and self.date == "parts"):
            self.divider = ","

    def moment_cells(self, at):
        if self.date == "epoch":
            return [str(int(at.replace(tzinfo=D.timezone.utc).timestamp()))]
        if self.date == "epoch-ms":
            return [str(int(at.replace(tzinfo=D.timezone.utc).timestamp()) * 1000)]
        if self.date == "parts":
            return [str(at.year), str(at.month), str(at.day)]
        text = self.date.replace("%b", MONTHS[at.month - 1]).replace("%a", DAYS[at.weekday()])
        text = at.strftime(text)
        if self.unpadded and self.date[2] in "/-." and "b" not in self.date:
            text = self.date[2].join(str(int(x)) for x in text.split(self.date[2]))
        if self.time is None:
            return [text]
        clock = at.strftime(self.time)
        return [text + self.joined + clock] if self.joined else [text, clock]

    def number(self, value, whole=False, decimals=2):
        text = f"{value:.{decimals}f}" if not whole else str(value)
        head, _, tail = text.partition(".")
        if self.thousands:
            sign, digits = ("-", head[1:]) if head.startswith("-") else ("", head)
            mark = ("." if self.style % 2 else " ") if self.comma else ","
            groups = []
            while len(digits) > 3:
                groups.insert(0, digits[-3:])
                digits = digits[:-3]
            head = sign + mark.join([digits] + groups)
        return head + (("," if self.comma else ".") + tail if tail else "")

    def heading(self, key):
        if self.language != "en":
            return WORDS[self.language][KEYS.index("date" if key == "moment" else key)]
        return ENGLISH[key][self.style % len(ENGLISH[key])]

    def cell(self, text):
        return f'"{text}"' if self.quotes == "all" else text

    def line(self, cells):
        return self.divider.join(self.cell(c) for c in cells)


def make(seed):
    """The file's bytes, and the truth: rows as (moment, {name: value or None}, symbol or None), and what they hold."""
    r = random.Random(seed)
    kind = r.choice(["day", "day", "day", "week", "tick", 1, 1, 5, 15, 60])
    n = r.choice([12, 40, 40, 120, 300])
    digits, fraction = r.choice([2, 2, 3, 4]), r.choice([0, 0, 0, 2, 8])
    w = Writer(r, kind)
    if w.suffix or w.thousands:
        fraction = 0
    symbols = r.sample(["AAPL", "MSFT", "ES", "EUR/USD", "BRK.B", "005930"], r.choice([1, 2, 3])) if r.random() < .25 else []
    if not w.header:
        symbols = [s for s in symbols if s != "005930"]
    blocks = r.random() < .5
    rows = []
    for symbol in symbols or [None]:
        part = series(random.Random(seed * 7 + len(rows)), kind, n, digits, fraction)
        rows.append([(row, symbol) for row in part])
    if blocks or len(rows) == 1:
        rows = [x for part in rows for x in part]
    else:
        rows = [x for group in zip(*rows) for x in group]
        rows.sort(key=lambda x: x[0]["moment"])
    if r.random() < .25 and (len(symbols) < 2):
        rows.reverse()
    columns = ["price"] if kind == "tick" else r.choice([["open", "high", "low", "close"]] * 6 + [["close", "open", "high", "low"], ["high", "low", "open", "close"]])
    if not w.header and kind != "tick":
        columns = ["open", "high", "low", "close"]
    has_volume = r.random() < .85
    missing = r.choice(["-", "null", "N/A", ""]) if r.random() < .15 else None
    names, sample = [], w.moment_cells(rows[0][0]["moment"])
    first = r.random() < .5
    decimals = digits
    truth, lines = [], []
    for i, (row, symbol) in enumerate(rows):
        values = {c: row[c] for c in columns}
        cells = [w.number(row[c], decimals=decimals) for c in columns]
        if missing is not None and i > 10 and r.random() < .02:
            k = r.randrange(len(columns))
            cells[k] = missing
            values[columns[k]] = None
        if has_volume:
            volume = row["volume"]
            if w.suffix:
                text = w.number(volume / 1000, decimals=2) + "K"
                volume = round(round(volume / 1000, 2) * 1000)
            else:
                text = w.number(volume, not fraction, fraction)
            cells.append(text)
            values["volume"] = volume
        cells += [w.number(SIDES[s](r, row), decimals=2) for s in w.side]
        stamp = w.moment_cells(row["moment"])
        mark = [symbol] if symbol else []
        lines.append(w.line(mark + stamp + cells if first else stamp + mark + cells))
        at = row["moment"] if not (w.time and "%S" not in w.time and w.date not in ("epoch", "epoch-ms")) else row["moment"].replace(second=0)
        truth.append((at, values, symbol))
    if w.header:
        stamp = ["Year", "Month", "Day"] if w.date == "parts" else [w.heading("moment")] if len(sample) == 1 else [w.heading("date"), w.heading("time")]
        names = [w.heading(c) for c in columns] + ([w.heading("volume")] if has_volume else []) + w.side
        mark = [w.heading("symbol")] if symbols else []
        if mark + stamp == [""] and w.divider == "\t":
            stamp = ["Date"]
        lines.insert(0, w.line(mark + stamp + names if first else stamp + mark + names))
    before = r.choice([[]] * 5 + [["Historical prices"], ["Source: https://example.org", ""], ["# exported 2024-05-01 12:00", "# all prices in USD"]]) if w.header else []
    after = r.choice([[]] * 6 + [["", "End of file"], ["All rights reserved."]])
    text = "\n".join(before + lines + after) + ("\n" if r.random() < .7 else "")
    if r.random() < .4:
        text = text.replace("\n", "\r\n")
    codec = "utf-8"
    if r.random() < .15:
        codec = {"zh": "gbk", "ja": "shift_jis", "ru": "windows-1251", "pl": "windows-1250", "tr": "windows-1254"}.get(w.language, r.choice(["utf-8-sig", "utf-16"]))
    try:
        raw = text.encode(codec)
    except UnicodeEncodeError:
        raw = text.encode("utf-8")
    ambiguous = w.date in ("%d/%m/%Y", "%m/%d/%Y") and w.language == "en" and not w.comma and all(t[0].day <= 12 for t in truth) and any(t[0].day != t[0].month for t in truth)
    return raw, {"rows": truth, "intraday": kind not in ("day", "week"), "ambiguous": ambiguous, "symbols": len(symbols),
                 "about": f"{kind} {w.language} {w.date} {w.time} {w.joined!r} div={w.divider!r} quotes={w.quotes} comma={w.comma} "
                          f"thousands={w.thousands} suffix={w.suffix} header={w.header} columns={columns} fraction={fraction} side={w.side} "
                          f"symbols={symbols} blocks={blocks} missing={missing!r} codec={codec}"}
