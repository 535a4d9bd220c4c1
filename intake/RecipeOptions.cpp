// A row of the table reads and prints one option. Words of a choice are tables as well, which both
// directions go through.

#include "intake/RecipeOptions.h"

#include <algorithm>
#include <stdexcept>
#include <string_view>

#include "intake/OptionForms.h"

namespace tabulex::intake {

namespace {

using Values = std::vector<std::string>;

Values Some(const std::string& text)
{
    return text.empty() ? Values() : Values{text};
}

Values Number(std::uint64_t n)
{
    return n == 0 ? Values() : Values{std::to_string(n)};
}

Values Flag(bool bSet)
{
    return bSet ? Values{""} : Values();
}

std::string TextOf(const std::string& value)
{
    if (value.empty())
        throw std::invalid_argument("the text is empty");
    return value;
}

template <class Value, std::size_t N>
Values WordIf(const Choice<Value> (&choices)[N], Value value, Value usual)
{
    return value == usual ? Values() : Values{WordOf(choices, value)};
}

// What of the recipe is set by words that stand alone.
struct Mark
{
    const char* pszWord;
    bool& (*flag)(Recipe& recipe);
};

constexpr Mark kLeaveOut[] = {
    {"no-date", [](Recipe& r) -> bool& { return r.linesOut.bNoDate; }},
    {"no-values", [](Recipe& r) -> bool& { return r.linesOut.bNoValues; }}};
constexpr Mark kNotations[] = {
    {"suffix", [](Recipe& r) -> bool& { return r.numbers.bSuffix; }},
    {"percent", [](Recipe& r) -> bool& { return r.numbers.bPercent; }},
    {"exponent", [](Recipe& r) -> bool& { return r.numbers.bExponent; }},
    {"currency", [](Recipe& r) -> bool& { return r.numbers.bCurrency; }}};

void SetMark(std::span<const Mark> marks, Recipe& recipe, const std::string& value)
{
    std::string known;
    for (const Mark& mark : marks) {
        if (value == mark.pszWord) {
            mark.flag(recipe) = true;
            return;
        }
        known += (known.empty() ? "" : ", ") + std::string(mark.pszWord);
    }
    throw std::invalid_argument("'" + value + "' is not one of " + known);
}

Values MarksSet(std::span<const Mark> marks, Recipe recipe)
{
    Values values;
    for (const Mark& mark : marks)
        if (mark.flag(recipe))
            values.push_back(mark.pszWord);
    return values;
}

template <class Item>
Values Each(const std::vector<Item>& items, std::string (*print)(const Item&))
{
    Values values;
    for (const Item& item : items)
        values.push_back(print(item));
    return values;
}

// The order of the help is that of the steps.
constexpr RecipeOption kOptions[] = {
    {"--skip-lines", "N", "Leave out the first N lines of the file", false,
     [](Recipe& r, const std::string& v) { r.linesOut.nFirst = ReadCount(v); },
     [](const Recipe& r) { return Number(r.linesOut.nFirst); }},
    {"--skip-to", "TEXT", "Leave out lines up to the first that holds TEXT", false,
     [](Recipe& r, const std::string& v) { r.linesOut.sUpTo = TextOf(v); },
     [](const Recipe& r) { return Some(r.linesOut.sUpTo); }},
    {"--stop-at", "TEXT", "Leave out the first line that holds TEXT, and\nall behind it", false,
     [](Recipe& r, const std::string& v) { r.linesOut.sStopAt = TextOf(v); },
     [](const Recipe& r) { return Some(r.linesOut.sStopAt); }},
    {"--comment", "TEXT", "Leave out lines that begin with TEXT", true,
     [](Recipe& r, const std::string& v) { r.linesOut.comments.push_back(TextOf(v)); },
     [](const Recipe& r) { return r.linesOut.comments; }},
    {"--leave-out", "no-date|no-values", "Leave out rows that lack a date, or any value", true,
     [](Recipe& r, const std::string& v) { SetMark(kLeaveOut, r, v); },
     [](const Recipe& r) { return MarksSet(kLeaveOut, r); }},
    {"--separator", "CHAR",
     "What stands between cells: comma, semicolon, tab,\nbar, blank, colon, "
     "or a character",
     false, [](Recipe& r, const std::string& v) { r.cells.cDivider = ReadSeparator(v); },
     [](const Recipe& r) { return SeparatorText(r.cells.cDivider); }},
    {"--quotes", "", "Cells stand between quotation marks, where\nnothing divides", false,
     [](Recipe& r, const std::string&) { r.cells.bQuotes = true; },
     [](const Recipe& r) { return Flag(r.cells.bQuotes); }},
    {"--split", "N:TEXT", "Cut column N at TEXT into pieces N.1, N.2, ...", true,
     [](Recipe& r, const std::string& v) { r.cells.splits.push_back(ReadSplit(v)); },
     [](const Recipe& r) { return Each(r.cells.splits, SplitText); }},
    {"--decimal", "comma|point", "Mark in front of decimals (default: point)", false,
     [](Recipe& r, const std::string& v) { r.numbers.decimal = ReadChoice(kDecimals, v); },
     [](const Recipe& r) { return WordIf(kDecimals, r.numbers.decimal, Decimal::Point); }},
    {"--thousands", "comma|point|blank|apostrophe", "Mark between thousands", false,
     [](Recipe& r, const std::string& v) { r.numbers.thousands = ReadChoice(kThousands, v); },
     [](const Recipe& r) { return WordIf(kThousands, r.numbers.thousands, Thousands::None); }},
    {"--numbers", "suffix|percent|exponent|currency",
     "What numbers have beside digits: 1.5K, 2%, 1e6, $3", true,
     [](Recipe& r, const std::string& v) { SetMark(kNotations, r, v); },
     [](const Recipe& r) { return MarksSet(kNotations, r); }},
    {"--missing", "TEXT", "A number cell with TEXT has no value", true,
     [](Recipe& r, const std::string& v) { r.missing.push_back(TextOf(v)); },
     [](const Recipe& r) { return r.missing; }},
    {"--moment", "COLUMNS:FORM",
     "Date and time of a row: columns, such as 1 or\n1+2, and a form, "
     "such as dmy, ymd+time or\nepoch-ms+time",
     false, [](Recipe& r, const std::string& v) { r.moment = ReadMoment(v); },
     [](const Recipe& r) { return r.moment ? Values{MomentText(*r.moment)} : Values(); }},
    {"--date", "DATE", "Date of all rows, of a file that has times alone", false,
     [](Recipe& r, const std::string& v) { r.date = ReadDay(v); },
     [](const Recipe& r) { return r.date ? Values{DayText(*r.date)} : Values(); }},
    {"--time-zone", "FROM[:TO]",
     "Move times from a zone, such as Europe/Berlin or\noffset (that "
     "of each cell), to another or to UTC",
     false, [](Recipe& r, const std::string& v) { r.zones = ReadZones(v); },
     [](const Recipe& r) { return r.zones ? Values{ZonesText(*r.zones)} : Values(); }},
    {"--month-names", "LANGUAGE",
     "Language of month names, such as pl, where one\nmeans different "
     "months",
     false, [](Recipe& r, const std::string& v) { r.sLanguage = TextOf(v); },
     [](const Recipe& r) { return Some(r.sLanguage); }},
    {"--take", "COLUMNS=HEADING",
     "Take columns, such as 2 or 1+4, under a heading,\nsuch as Open; "
     "others are left out",
     true, [](Recipe& r, const std::string& v) { r.takes.push_back(ReadTake(v)); },
     [](const Recipe& r) { return Each(r.takes, TakeText); }},
    {"--drop", "N", "Leave out column N", true,
     [](Recipe& r, const std::string& v) { r.drops.push_back(ReadColumnNumber(v)); },
     [](const Recipe& r) {
         return Each<std::uint32_t>(r.drops,
                                    [](const std::uint32_t& n) { return std::to_string(n); });
     }},
    {"--symbol-name", "TEXT", "Give all rows a Symbol column with TEXT", false,
     [](Recipe& r, const std::string& v) { r.sSymbol = TextOf(v); },
     [](const Recipe& r) { return Some(r.sSymbol); }},
    {"--scale", "HEADING:N",
     "Multiply by N tens what stands under HEADING, so\nthat fractions "
     "become whole",
     true, [](Recipe& r, const std::string& v) { r.scales.push_back(ReadScale(v)); },
     [](const Recipe& r) { return Each(r.scales, ScaleText); }},
    {"--sort", "moment|symbol", "Sort rows by moment, or by symbol and moment", false,
     [](Recipe& r, const std::string& v) { r.order = ReadChoice(kOrders, v); },
     [](const Recipe& r) { return WordIf(kOrders, r.order, Order::AsRead); }},
};

} // namespace

std::span<const RecipeOption> RecipeOptions()
{
    return kOptions;
}

std::vector<std::pair<std::string, std::string>> OptionsOf(const Recipe& recipe)
{
    std::vector<std::pair<std::string, std::string>> options;
    for (const RecipeOption& option : kOptions)
        for (const std::string& value : option.print(recipe))
            options.emplace_back(option.pszName, value);
    return options;
}

Recipe RecipeFrom(std::span<const std::pair<std::string, std::string>> options)
{
    Recipe recipe;
    for (const auto& [name, value] : options) {
        const auto option =
            std::ranges::find(kOptions, std::string_view(name), [](const RecipeOption& row) {
                return std::string_view(row.pszName);
            });
        if (option == std::end(kOptions))
            throw std::invalid_argument(name + " is no option of a recipe");
        try {
            option->read(recipe, value);
        } catch (const std::invalid_argument& fault) {
            throw std::invalid_argument(name + ": " + fault.what());
        }
    }
    return recipe;
}

} // namespace tabulex::intake
