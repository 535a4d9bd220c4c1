// The layouts of the quote files that are made: a row of a table each.
#pragma once

#include <cstdint>
#include <span>

namespace bench {

// How far a record is from the one before; a day has only those of its session.
enum class QuoteClock : std::uint8_t
{
    Ticks,
    Minutes,
    Days
};

enum class QuoteForm : std::uint8_t
{
    Plain,
    Descending,
    TwoByte // low byte first, with a mark
};

struct QuoteLayout
{
    const char* szName;
    const char* szHeader;
    const char* szRow; // names in braces are those of QuoteFile::Append
    QuoteClock clock = QuoteClock::Minutes;
    QuoteForm form = QuoteForm::Plain;
    std::uint64_t nRowsOfSymbol = 0; // at least; 0: no symbols
    const char* szSymbol = "";       // a symbol's first characters
    char cMark = '.';
    unsigned nDecimals = 2;
};

// Those with a hand-written reader first.
std::span<const QuoteLayout> QuoteLayouts();

} // namespace bench
