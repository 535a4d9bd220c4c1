// The shapes stand in a table, the narrow ones first; the first that fits is the answer.
#include "tools/tabulex/explain/DateTexts.h"

#include <regex>
#include <utility>
#include <vector>

namespace tabulex {

namespace {

struct ShapeRow
{
    const char* pszPattern; // over the whole text, in any case
    DateShape shape;
};

using enum DateShapeKind;

constexpr std::string_view kConvertColumn =
    "turn that column into a date and a time, such as 2024-01-31 and 14:30:00, before converting";
constexpr std::string_view kSplitColumn =
    "put the date and the time into two columns before converting";
constexpr std::string_view kRewriteDate = "write the dates as 2024-01-31 before converting";

// Names in angle brackets stand for patterns.
constexpr std::pair<const char*, const char*> kParts[] = {
    {"<year>", "(?:19|20)[0-9]{2}"},
    {"<month>", "(?:0[1-9]|1[0-2])"},
    {"<day>", "(?:0[1-9]|[12][0-9]|3[01])"},
    {"<clock>", "[0-9]{1,2}:[0-9]{1,2}(?::[0-9]{1,2}(?:[.,][0-9]+)?)?"},
    {"<date>", "[0-9]{1,4}[-/._] ?[0-9]{1,2}[-/._] ?[0-9]{1,4}"},
    {"<word>", "(?:jan|feb|mar|apr|may|jun|jul|aug|sep|oct|nov|dec)[a-z]*"},
    {"<before>", "(?:1[0-8][0-9]{2}|2[1-9][0-9]{2}|20[89][0-9]|[3-9][0-9]{3})"},
};

const ShapeRow kShapes[] = {
    {"[-?*]*|n\\.?/?a\\.?|nan|null|none|nil|missing",
     {NoDate, "it holds no date", "remove or mend that line"}},
    {"<year><month><day>[0-9]{2}",
     {Moment, "it looks like a date and an hour run together, which aren't read", kSplitColumn}},
    {"<year><month><day>[0-9]{4}(?:[0-9]{2}(?:[.]?[0-9]{1,6})?)?",
     {Moment, "it looks like a date and a time run together, which aren't read", kSplitColumn}},
    {"1[0-9]{9}(?:[.][0-9]+)?|[2-9][0-9]{8}",
     {Moment, "it looks like seconds since 1970, which aren't read", kConvertColumn}},
    {"1[0-9]{12}(?:[.][0-9]+)?",
     {Moment, "it looks like milliseconds since 1970, which aren't read", kConvertColumn}},
    {"1[0-9]{15}",
     {Moment, "it looks like microseconds since 1970, which aren't read", kConvertColumn}},
    {"1[0-9]{18}",
     {Moment, "it looks like nanoseconds since 1970, which aren't read", kConvertColumn}},
    {"[34][0-9]{4}(?:[.,][0-9]+)?",
     {Moment, "it may be a day number of a spreadsheet, which isn't read", kRewriteDate}},
    {"[0-9]{4}-?[0-9]{2}-?[0-9]{2}T[0-9:]+(?:[.,][0-9]+)?(?:Z|[-+][0-9:]+)",
     {Moment,
      "date and time stand in one cell, joined by a T and with an offset from UTC, which "
      "isn't read",
      kSplitColumn}},
    {"[0-9]{4}-?[0-9]{2}-?[0-9]{2}T[0-9:]+(?:[.,][0-9]+)?",
     {Moment, "date and time stand in one cell, joined by a T, which isn't read", kSplitColumn}},
    {"<date>T", {DateOnly, "a T stands behind the date, which isn't read", kRewriteDate}},
    {"<date> +<clock> ?(?:Z|UTC|GMT|[-+][0-9]{2}:?[0-9]{2})",
     {DateAndTime, "date and time stand in one cell, with an offset from UTC, which isn't read",
      kSplitColumn}},
    {"(?:<date>|[0-9]{8}) +<clock>(?: ?[ap][.]?m[.]?)?",
     {DateAndTime, "date and time stand in one cell, which isn't read while a blank is no divider",
      kSplitColumn}},
    {"<date> +[0-9]{1,2}[- ]?(?:[ap]m|h)",
     {DateAndTime, "date and hour stand in one cell, which isn't read", kSplitColumn}},
    {"(?:<date>|[0-9]{8})[-_:;]<clock>",
     {Moment, "date and time are joined into one text, which isn't read", kSplitColumn}},
    {"(?:mon|tue|wed|thu|fri|sat|sun)[a-z]*[., ]+.*[0-9].*",
     {DateOnly, "it begins with the name of a day, which isn't read", kRewriteDate}},
    {"<word>[-/. ]?(?:19|20)?[0-9]{2}|<year>[-/. ]?<word>",
     {DateOnly, "it has a month and a year and no day", kRewriteDate}},
    {"<word>[-/. ][0-9]{1,2},?|[0-9]{1,2}[-/. ]<word>",
     {DateOnly, "it has a month and a day and no year", kRewriteDate}},
    {".*<word>.*[0-9].*|.*[0-9].*<word>.*",
     {DateOnly, "the month stands as a word in a form that isn't read", kRewriteDate}},
    {"<clock> ?(?:[ap][.]?m[.]?)?",
     {TimeOnly, "it is a time and no date", "add a column with the date"}},
    {"[0-9]{1,2}[-/.][0-9]{1,2}", {DateOnly, "it has no year", kRewriteDate}},
    {"<before>[-/._ ][0-9]{1,2}[-/._ ][0-9]{1,2}|[0-9]{1,2}[-/._ ][0-9]{1,2}[-/._ ]<before>|"
     "<before><month><day>",
     {DateOnly, "its year lies outside of 1900 to 2079, which is what can be delivered",
      "leave such lines out"}},
    {"<year>(?:[-/._ ]?Q[1-4])?|Q[1-4][-/._ ]?<year>",
     {DateOnly, "it has a year alone or a quarter, and no day", kRewriteDate}},
    {"<year>[-/._]?<month>|<month>[-/._]<year>",
     {DateOnly, "it has a year and a month and no day", kRewriteDate}},
    {"<date>",
     {DateOnly, "its parts and the signs between them are in no order that is known",
      kRewriteDate}},
    {"[^0-9]*[0-9]{4}[^-/._:0-9]+[0-9]{1,2}[^-/._:0-9]+[0-9]{1,2}[^0-9]*",
     {DateOnly, "it has words or signs between its parts that aren't read", kRewriteDate}},
};

std::string Expanded(std::string pattern)
{
    for (const auto& [pszName, pszPattern] : kParts)
        for (std::size_t n; (n = pattern.find(pszName)) != std::string::npos;)
            pattern.replace(n, std::char_traits<char>::length(pszName), pszPattern);
    return pattern;
}

std::vector<std::regex> CompiledShapes()
{
    std::vector<std::regex> patterns;
    for (const ShapeRow& row : kShapes)
        patterns.emplace_back(Expanded(row.pszPattern), std::regex::icase | std::regex::ECMAScript);
    return patterns;
}

constexpr std::size_t kMostShaped = 60; // no date is longer

} // namespace

const DateShape* DateShapeOf(const std::string& text)
{
    static const std::vector<std::regex> patterns = CompiledShapes();
    if (text.size() > kMostShaped)
        return nullptr;
    for (std::size_t i = 0; i < patterns.size(); ++i)
        if (std::regex_match(text, patterns[i]))
            return &kShapes[i].shape;
    return nullptr;
}

} // namespace tabulex
