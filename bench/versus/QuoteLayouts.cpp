#include "bench/versus/QuoteLayouts.h"

namespace bench {
namespace {

constexpr char kBars[] = "Date,Time,Open,High,Low,Close,Volume\n";
constexpr char kSymbolBars[] = "Symbol,Date,Time,Open,High,Low,Close,Volume\n";
constexpr char kMinutes[] =
    "{M:02}/{D:02}/{Y},{h:02}:{m:02},{open},{high},{low},{close},{volume}\n";
constexpr char kSymbolMinutes[] =
    "{symbol},{M:02}/{D:02}/{Y},{h:02}:{m:02},{open},{high},{low},{close},{volume}\n";

const QuoteLayout kLayouts[] = {
    {.szName = "minutes", .szHeader = kBars, .szRow = kMinutes},
    {.szName = "ticks",
     .szHeader = "Date,Time,Price,Volume\n",
     .szRow = "{M:02}/{D:02}/{Y},{h:02}:{m:02}:{s:02}.{f:03},{close},{volume}\n",
     .clock = QuoteClock::Ticks},
    {.szName = "days", // without symbols the calendar ends too soon
     .szHeader = "Symbol,Date,Open,High,Low,Close,Volume\n",
     .szRow = "{symbol},{D:02}-{Mon}-{Y},{open},{high},{low},{close},{volume}\n",
     .clock = QuoteClock::Days,
     .nRowsOfSymbol = 10'000},
    {.szName = "symbols",
     .szHeader = kSymbolBars,
     .szRow = kSymbolMinutes,
     .nRowsOfSymbol = 50'000},
    {.szName = "descending", .szHeader = kBars, .szRow = kMinutes, .form = QuoteForm::Descending},
    {.szName = "two-byte", .szHeader = kBars, .szRow = kMinutes, .form = QuoteForm::TwoByte},

    {.szName = "month-names",
     .szHeader = kBars,
     .szRow = "{D:02}-{Mon}-{y:02},{h:02}:{m:02},{open},{high},{low},{close},{volume}\n"},
    {.szName = "half-days",
     .szHeader = kBars,
     .szRow = "{M:02}/{D:02}/{Y},{h12}:{m:02} {half},{open},{high},{low},{close},{volume}\n"},
    {.szName = "semicolons",
     .szHeader = "Date;Time;Open;High;Low;Close;Volume\n",
     .szRow = "{D:02}.{M:02}.{Y};{h:02}:{m:02};{open};{high};{low};{close};{volume}\n",
     .cMark = ','},
    {.szName = "pages-1252",
     .szHeader = kSymbolBars,
     .szRow = kSymbolMinutes,
     .nRowsOfSymbol = 50'000,
     .szSymbol = "\xD6\xDC"},
    {.szName = "pages-932",
     .szHeader = kSymbolBars,
     .szRow = kSymbolMinutes,
     .nRowsOfSymbol = 50'000,
     .szSymbol = "\x93\xFA\x96\x7B"},
    {.szName = "pointed-volumes",
     .szHeader = kBars,
     .szRow = "{M:02}/{D:02}/{Y},{h:02}:{m:02},{open},{high},{low},{close},{volume}.0\n"},
    {.szName = "quoted",
     .szHeader = kBars,
     .szRow = "\"{M:02}/{D:02}/{Y}\",\"{h:02}:{m:02}\",\"{open}\",\"{high}\",\"{low}\",\"{close}\","
              "\"{volume}\"\n"},
    {.szName = "aligned",
     .szHeader = "Date Time Open High Low Close Volume\n",
     .szRow = "{M:02}/{D:02}/{Y} {h:02}:{m:02} {open:>9} {high:>9} {low:>9} {close:>9} "
              "{volume:>9}\n"},
    {.szName = "seconds",
     .szHeader = kBars,
     .szRow = "{Y}-{M:02}-{D:02},{h:02}:{m:02}:{s:02},{open},{high},{low},{close},{volume}\n"},
    {.szName = "digits",
     .szHeader = kBars,
     .szRow = "{Y}{M:02}{D:02},{h:02}{m:02},{open},{high},{low},{close},{volume}\n",
     .nDecimals = 5},
    {.szName = "carriage-returns",
     .szHeader = "Date,Time,Open,High,Low,Close,Volume\r\n",
     .szRow = "{M:02}/{D:02}/{Y},{h:02}:{m:02},{open},{high},{low},{close},{volume}\r\n"},
};

} // namespace

std::span<const QuoteLayout> QuoteLayouts()
{
    return kLayouts;
}

} // namespace bench
