// HeadingWords: what the heading of a column says, in the languages of those who publish quotes.
//
// Case, accents, quotes, angle brackets and punctuation don't matter, nor do words that only
// say more of the same, such as a currency or "price" behind "open". A heading that holds words
// of two fields, or none that is known, says nothing.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace tabulex {

enum class Meaning
{
    Unknown,
    Symbol,
    Date,
    Time,
    Moment, // date and time in one
    Open,
    High,
    Low,
    Close,
    Price,
    Volume,
    UpVolume,
    DownVolume,
    UnchangedVolume,
    TickVolume, // trades counted as a volume
    UpTicks,
    DownTicks,
    UnchangedTicks,
    Trades,
    OpenInterest,
    Other // a known word for what has no type: bid, turnover, an indicator
};

// The heading is UTF-8.
Meaning MeaningOf(std::string_view heading);

// How far the heading is from the plainest word for its meaning: 0 for that word itself, as "Close"
// is, more for one that comes later in the table or has words besides. For choosing among headings
// of one meaning.
unsigned DistanceOf(std::string_view heading);

// Whether it says that its values were changed for dividends and splits.
bool IsAdjusted(std::string_view heading);

// Whether a column of that meaning may be taken for the type, an id of the component.
bool Agrees(Meaning meaning, unsigned uiType);

// The type that is meant; kNoType for Unknown and Other.
unsigned TypeOfMeaning(Meaning meaning);

// The words of a heading, in small letters without accents.
std::vector<std::string> HeadingTokens(std::string_view heading);

} // namespace tabulex
