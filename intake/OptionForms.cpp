#include "intake/OptionForms.h"

#include <charconv>
#include <chrono>
#include <cstdio>
#include <limits>
#include <string_view>

namespace tabulex::intake {

namespace {

constexpr Choice<char> kSeparators[] = {{"comma", ','}, {"semicolon", ';'}, {"tab", '\t'},
                                        {"bar", '|'},   {"blank", ' '},     {"colon", ':'}};

[[noreturn]] void Refuse(const std::string& value, const std::string& what)
{
    throw std::invalid_argument("'" + value + "' is not " + what);
}

template <class Number>
bool ReadWhole(std::string_view text, Number& number)
{
    const auto [pEnd, fault] = std::from_chars(text.data(), text.data() + text.size(), number);
    return fault == std::errc() && pEnd == text.data() + text.size() && !text.empty();
}

std::string PrintSources(const Sources& sources)
{
    std::string text;
    for (const Source& source : sources) {
        text += (text.empty() ? "" : "+") + std::to_string(source.nColumn);
        if (source.nPiece != 0)
            text += "." + std::to_string(source.nPiece);
    }
    return text;
}

bool ReadSource(std::string_view text, Source& source)
{
    const std::size_t nPoint = text.find('.');
    if (!ReadWhole(text.substr(0, nPoint), source.nColumn) || source.nColumn == 0)
        return false;
    return nPoint == std::string_view::npos ||
           (ReadWhole(text.substr(nPoint + 1), source.nPiece) && source.nPiece != 0);
}

Sources ReadSources(std::string_view text)
{
    Sources sources;
    while (true) {
        const std::size_t nEnd = text.find('+');
        if (!ReadSource(text.substr(0, nEnd), sources.emplace_back()))
            Refuse(std::string(text), "a column from 1, or several as in 1+2");
        if (nEnd == std::string_view::npos)
            return sources;
        text.remove_prefix(nEnd + 1);
    }
}

// The place of a mark that must stand within the text.
std::size_t RequireMark(const std::string& value, char cMark, const char* pszForm)
{
    const std::size_t n = value.find(cMark);
    if (n == std::string::npos || n == 0 || n + 1 == value.size())
        Refuse(value, pszForm);
    return n;
}

} // namespace

std::uint64_t ReadCount(const std::string& value)
{
    std::uint64_t n = 0;
    if (!ReadWhole(value, n))
        Refuse(value, "a whole number");
    return n;
}

std::uint32_t ReadColumnNumber(const std::string& value)
{
    std::uint32_t n = 0;
    if (!ReadWhole(value, n) || n == 0)
        Refuse(value, "a column from 1");
    return n;
}

char ReadSeparator(const std::string& value)
{
    for (const auto& choice : kSeparators)
        if (value == choice.pszWord)
            return choice.value;
    const bool bOne = value.size() == 1 && static_cast<unsigned char>(value[0]) < 0x80 &&
                      value[0] != '"' && value[0] >= ' ';
    return bOne ? value[0] : ReadChoice(kSeparators, value);
}

std::vector<std::string> SeparatorText(char cDivider)
{
    if (cDivider == 0)
        return {};
    const std::string word = WordOf(kSeparators, cDivider);
    return {word.empty() ? std::string(1, cDivider) : word};
}

Split ReadSplit(const std::string& value)
{
    const std::size_t n = RequireMark(value, ':', "of the form N:TEXT");
    return {ReadColumnNumber(value.substr(0, n)), value.substr(n + 1)};
}

std::string SplitText(const Split& split)
{
    return std::to_string(split.nColumn) + ":" + split.sAt;
}

Moment ReadMoment(const std::string& value)
{
    const std::size_t n = RequireMark(value, ':', "of the form COLUMNS:FORM");
    Moment moment;
    moment.from = ReadSources(std::string_view(value).substr(0, n));
    const std::string form = value.substr(n + 1);
    const std::size_t nPlus = form.find('+');
    if (const auto clock = FindChoice(kClockForms, form)) {
        moment.date = DateForm::None;
        moment.clock = *clock;
        return moment;
    }
    moment.date = ReadChoice(kDateForms, form.substr(0, nPlus));
    if (nPlus != std::string::npos)
        moment.clock = ReadChoice(kClockForms, form.substr(nPlus + 1));
    return moment;
}

std::string MomentText(const Moment& moment)
{
    const std::string date = WordOf(kDateForms, moment.date);
    const std::string clock = WordOf(kClockForms, moment.clock);
    return PrintSources(moment.from) + ":" + date + (date.empty() || clock.empty() ? "" : "+") +
           clock;
}

Take ReadTake(const std::string& value)
{
    const std::size_t n = RequireMark(value, '=', "of the form COLUMNS=HEADING");
    return {ReadSources(std::string_view(value).substr(0, n)), value.substr(n + 1)};
}

std::string TakeText(const Take& take)
{
    return PrintSources(take.from) + "=" + take.sHeading;
}

Scale ReadScale(const std::string& value)
{
    const std::size_t n = RequireMark(value, ':', "of the form HEADING:N");
    Scale scale{value.substr(0, n), 0};
    if (!ReadWhole(std::string_view(value).substr(n + 1), scale.nDigits))
        Refuse(value.substr(n + 1), "a number of digits");
    return scale;
}

std::string ScaleText(const Scale& scale)
{
    return scale.sHeading + ":" + std::to_string(scale.nDigits);
}

Zones ReadZones(const std::string& value)
{
    const std::size_t n = value.find(':');
    Zones zones{value.substr(0, n), n == std::string::npos ? "UTC" : value.substr(n + 1)};
    if (zones.sFrom.empty() || zones.sTo.empty())
        Refuse(value, "of the form FROM or FROM:TO");
    return zones;
}

std::string ZonesText(const Zones& zones)
{
    return zones.sFrom + ":" + zones.sTo;
}

CalendarDate ReadDay(const std::string& value)
{
    const std::string_view text = value;
    unsigned y = 0, m = 0, d = 0;
    const bool bForm = text.size() == 10 && text[4] == '-' && text[7] == '-' &&
                       ReadWhole(text.substr(0, 4), y) && ReadWhole(text.substr(5, 2), m) &&
                       ReadWhole(text.substr(8, 2), d);
    const std::chrono::year_month_day day{std::chrono::year(static_cast<int>(y)),
                                          std::chrono::month(m), std::chrono::day(d)};
    if (!bForm || !day.ok() || y < 1900)
        Refuse(value, "a date as YYYY-MM-DD");
    return {static_cast<std::uint16_t>(y), static_cast<std::uint8_t>(m),
            static_cast<std::uint8_t>(d)};
}

std::string DayText(const CalendarDate& date)
{
    char text[32];
    std::snprintf(text, sizeof text, "%04u-%02u-%02u", unsigned{date.nYear}, unsigned{date.nMonth},
                  unsigned{date.nDay});
    return text;
}

} // namespace tabulex::intake
