// Recipe: what is done to the lines of a quote file so that they can be read without doubt.
//
// A recipe is plain data. Cells are cut out of a line and brought into one notation: decimals with
// a point, dates as yyyy-mm-dd, times as HH:MM:SS.mmm, a semicolon between cells. A step that finds
// nothing to do changes nothing. A clean line ends ahead of the first number that has no value or
// can't be read, and behind a moment that can't be read, which stays as it is: whoever reads the
// line reports it, and a line that is too short never changes what is made of the other lines.
//
// There are two kinds of recipes. Without `takes` all cells stay where they are, but Date and Time
// stand in the place of the moment's first column, and a symbol of all rows stands first. So does
// the line that names the columns, the last one ahead of the first row. With `takes` the clean
// lines have a heading with the engine's own words, the symbol first, then Date and Time, then the
// cells that are taken, in their order. What isn't taken is left out, and so is what stands ahead
// of the first row. A row is a line whose moment can be read, or each of whose number cells.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace tabulex::intake {

// A cell of a line as it stands in the file, or one piece of it where the column is split.
struct Source
{
    std::uint32_t nColumn = 1; // from 1
    std::uint32_t nPiece = 0;  // from 1; 0 for the whole cell

    bool operator==(const Source&) const = default;
};

// Several cells are joined, with a blank between.
using Sources = std::vector<Source>;

enum class Decimal : std::uint8_t
{
    Point,
    Comma
};

// What may stand between groups of three digits.
enum class Thousands : std::uint8_t
{
    None,
    Comma,
    Point,
    Blank, // also the unbroken and the thin one
    Apostrophe
};

// How numbers are written beyond their digits.
struct Numbers
{
    Decimal decimal = Decimal::Point;
    Thousands thousands = Thousands::None;
    bool bSuffix = false;   // 1.5K, 2M, 3B, 4T
    bool bPercent = false;  // -0.74%, which is -0.74
    bool bExponent = false; // 1.2e+06
    bool bCurrency = false; // $1.50, 1.50 EUR; (1.50) for -1.50

    bool operator==(const Numbers&) const = default;
};

// How a date is written. Names of months, two digits of a year, any dividers, none at all, and
// day names are read under each of the orders.
enum class DateForm : std::uint8_t
{
    None, // no date in the cell; Recipe::date gives it
    YearMonthDay,
    YearDayMonth,
    DayMonthYear,
    MonthDayYear,
    YearMonth, // of which the first day is meant
    MonthYear,
    EpochSeconds, // since 1970-01-01, perhaps with a fraction
    EpochMilliseconds,
    EpochMicroseconds,
    EpochNanoseconds,
    SerialDays // since 1899-12-30, with the time as a fraction
};

// How a time of day is written, after the date or in a cell of its own. Without one a time in the
// cell isn't looked at.
enum class ClockForm : std::uint8_t
{
    None,
    Any,                      // 9:30, 09:30:15.25, 9:30 PM, 093015, and nothing for midnight
    HoursMinutes,             // digits alone: 930, and 5 for 00:05
    HoursMinutesSeconds,      // 93015, and 30 for 00:00:30
    HoursMinutesMilliseconds, // 93015250
    SecondsOfDay,
    MillisecondsOfDay
};

// Where the moment of a row stands. What is finer than a millisecond is cut off.
struct Moment
{
    Sources from;
    DateForm date = DateForm::YearMonthDay;
    ClockForm clock = ClockForm::None; // anything else makes a Time column

    bool operator==(const Moment&) const = default;
};

// Clocks of one zone become those of another. A cell with an offset of its own is read by that.
// Without zones an offset isn't looked at, and the clock stays as it was written.
struct Zones
{
    std::string sFrom; // name in the zone database, or kOwnOffset
    std::string sTo;

    bool operator==(const Zones&) const = default;
};

// For Zones::sFrom: each cell has an offset, and one without isn't read.
inline constexpr const char* kOwnOffset = "offset";

// Cells that are taken under a heading; the engine's own word where it is to read them.
struct Take
{
    Sources from;
    std::string sHeading;

    bool operator==(const Take&) const = default;
};

// A cell is cut wherever the text stands in it.
struct Split
{
    std::uint32_t nColumn = 1;
    std::string sAt;

    bool operator==(const Split&) const = default;
};

// Values of a heading are multiplied by a power of ten, so that their fractions become whole.
// What is left of a fraction then is rounded, half away from zero.
struct Scale
{
    std::string sHeading;
    std::uint32_t nDigits = 0; // at most kMostScale

    bool operator==(const Scale&) const = default;
};

inline constexpr std::uint32_t kMostScale = 12;

// Lines that are left out: they become blank, or aren't written where rows are sorted.
struct LinesOut
{
    std::uint64_t nFirst = 0;          // of the file
    std::string sUpTo;                 // those ahead of the first line that holds the text
    std::string sStopAt;               // that line, and all behind
    std::vector<std::string> comments; // that begin with one of these
    bool bNoDate = false;              // whose moment can't be read
    bool bNoValues = false;            // none of whose numbers can be read

    bool operator==(const LinesOut&) const = default;
};

enum class Order : std::uint8_t
{
    AsRead,
    Moment,
    SymbolAndMoment
};

// How a line is cut into cells.
struct Cells
{
    // Between cells. A blank stands for any number of blanks and tabs; 0 for the one of tab, '|',
    // ';', ',' and blank that most of the first kDividerLines lines have.
    char cDivider = 0;
    // Cells may stand between quotation marks, as in RFC 4180. Nothing divides there, a pair of
    // marks is one, and a line end is a blank: the first of the lines holds the row, the others
    // become blank. A mark that isn't closed within kMostJoinedLines quotes nothing.
    bool bQuotes = false;
    std::vector<Split> splits;

    bool operator==(const Cells&) const = default;
};

inline constexpr std::uint32_t kMostJoinedLines = 16;
inline constexpr std::size_t kDividerLines = 32;

struct CalendarDate
{
    std::uint16_t nYear = 0;
    std::uint8_t nMonth = 0; // from 1
    std::uint8_t nDay = 0;   // from 1

    bool operator==(const CalendarDate&) const = default;
};

struct Recipe
{
    LinesOut linesOut;
    Cells cells;
    Numbers numbers;
    // Texts that stand for no value, such as "-9999". A cell of a number that is empty or has no
    // digit stands for none in any recipe.
    std::vector<std::string> missing;
    std::vector<std::uint32_t> drops; // columns that are left out, from 1; only without `takes`
    std::vector<Take> takes;
    std::optional<Moment> moment;
    std::optional<CalendarDate> date; // of a file that has times alone
    std::optional<Zones> zones;
    // Language of month names, such as "pl", where a name means different months; empty for
    // English first, and then any other.
    std::string sLanguage;
    std::string sSymbol; // of all rows, in a Symbol column; empty for none
    std::vector<Scale> scales;
    Order order = Order::AsRead;

    bool operator==(const Recipe&) const = default;

    // Nothing is to be done, and the file can be read as it stands.
    bool IsEmpty() const { return *this == Recipe(); }
    // Whether the clean lines have a heading of the recipe.
    bool HasHeading() const { return !takes.empty(); }
};

// Why a recipe can't be done, in one sentence that names the option; empty if it can. Steps that
// contradict each other, a zone or a language that isn't known, a scale that is too big.
std::string FaultIn(const Recipe& recipe);

// The words of the heading in their order: Symbol, Date, Time, and those of the takes. Empty for a
// recipe without one. The engine's column n is the n-th of them.
std::vector<std::string> HeadingOf(const Recipe& recipe);

// The column of the file that a cell of a clean line comes from, the first one where it comes from
// several. Both count from 1; 0 for one that the recipe gives.
std::uint32_t ColumnBehind(const Recipe& recipe, std::uint32_t nCell);

} // namespace tabulex::intake
