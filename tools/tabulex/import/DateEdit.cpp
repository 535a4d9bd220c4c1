// The text is a picture with places for digits. A digit takes the place of the one below the
// caret and moves on to the next place, so the text has its form at any moment; whether it is a
// date is looked at after each key.

#include "tools/tabulex/import/DateEdit.h"

#include <algorithm>
#include <chrono>
#include <tuple>

#include <fmt/format.h>

namespace tabulex {

namespace {

constexpr std::string_view kNoDate = "____-__-__ __:__:__";
constexpr WORD kFirstYear = 1900, kLastYear = 2078; // of the component's calendar

auto FieldsOf(const SYSTEMTIME& date)
{
    return std::tuple(date.wYear, date.wMonth, date.wDay, date.wHour, date.wMinute, date.wSecond,
                      date.wMilliseconds);
}

// The number at a place of the text; empty while a digit is missing.
std::optional<WORD> NumberAt(std::string_view text, std::size_t nAt, std::size_t nDigits)
{
    unsigned nValue = 0;
    for (const char c : text.substr(nAt, nDigits)) {
        if (c < '0' || c > '9')
            return std::nullopt;
        nValue = nValue * 10 + static_cast<unsigned>(c - '0');
    }
    return static_cast<WORD>(nValue);
}

bool IsDay(WORD nYear, WORD nMonth, WORD nDay)
{
    using namespace std::chrono;
    return nYear >= kFirstYear && nYear <= kLastYear &&
           year_month_day(year(nYear), month(nMonth), day(nDay)).ok();
}

} // namespace

bool IsSameMoment(const std::optional<SYSTEMTIME>& a, const std::optional<SYSTEMTIME>& b)
{
    return a && b ? FieldsOf(*a) == FieldsOf(*b) : !a && !b;
}

std::string DateEdit::TextOf(const std::optional<SYSTEMTIME>& date, bool bWithTime)
{
    std::string text(kNoDate);
    if (date)
        text = fmt::format("{:04}-{:02}-{:02} {:02}:{:02}:{:02}", date->wYear, date->wMonth,
                           date->wDay, date->wHour, date->wMinute, date->wSecond);
    return text.substr(0, static_cast<std::size_t>(WidthOf(bWithTime)));
}

void DateEdit::Load(const std::optional<SYSTEMTIME>& date, bool bWithTime)
{
    if (!m_sText.empty() && IsSameMoment(date, m_date) && bWithTime == m_bWithTime)
        return;
    m_date = date;
    m_bWithTime = bWithTime;
    m_sText = TextOf(date, bWithTime);
    m_nCaret = 0;
}

bool DateEdit::Handle(const Input& input)
{
    switch (input.key) {
    case Key::Left:
    case Key::Backspace:
        Step(-1);
        return true;
    case Key::Right:
        Step(1);
        return true;
    case Key::Home:
        m_nCaret = 0;
        return true;
    case Key::End:
        m_nCaret = m_sText.size() - 1;
        return true;
    case Key::Text:
        Type(input.c < 0x80 ? static_cast<char>(input.c) : '\0');
        return true;
    default:
        return false;
    }
}

// From digit to digit.
void DateEdit::Step(int nStep)
{
    const auto nLast = static_cast<int>(m_sText.size()) - 1;
    int nAt = static_cast<int>(m_nCaret) + nStep;
    while (nAt > 0 && nAt < nLast && !IsDigitPlace(static_cast<std::size_t>(nAt)))
        nAt += nStep;
    m_nCaret = static_cast<std::size_t>(std::clamp(nAt, 0, nLast));
}

// What stands between digits needn't be typed.
void DateEdit::Type(char c)
{
    if (c < '0' || c > '9')
        return;
    m_sText[m_nCaret] = c;
    Step(1);
}

std::optional<SYSTEMTIME> DateEdit::Value() const
{
    const auto nYear = NumberAt(m_sText, 0, 4), nMonth = NumberAt(m_sText, 5, 2),
               nDay = NumberAt(m_sText, 8, 2);
    if (!nYear || !nMonth || !nDay || !IsDay(*nYear, *nMonth, *nDay))
        return std::nullopt;
    SYSTEMTIME date = m_date.value_or(SYSTEMTIME{});
    date.wYear = *nYear;
    date.wMonth = *nMonth;
    date.wDay = *nDay;
    if (!m_bWithTime)
        return date;
    const auto nHour = NumberAt(m_sText, 11, 2), nMinute = NumberAt(m_sText, 14, 2),
               nSecond = NumberAt(m_sText, 17, 2);
    if (!nHour || !nMinute || !nSecond || *nHour > 23 || *nMinute > 59 || *nSecond > 59)
        return std::nullopt;
    date.wHour = *nHour;
    date.wMinute = *nMinute;
    date.wSecond = *nSecond;
    date.wMilliseconds = 0;
    return date;
}

} // namespace tabulex
