// Numbers and a month's name are gathered first, and get their meaning when all are there: the
// name is the month, and the numbers are the other parts in their order. A first number of five
// digits or more is a whole date, cut by its length.

#include "intake/moments/DateReader.h"

#include <algorithm>
#include <chrono>

namespace tabulex::intake {

struct DateReader::Parts
{
    int numbers[3] = {};
    int digits[3] = {};
    int nCount = 0;
    int nMonthName = 0; // from 1; 0 for none
    bool bWhole = false;

    bool Add(int nNumber, std::size_t nDigits)
    {
        if (nCount == 3)
            return false;
        numbers[nCount] = nNumber;
        digits[nCount++] = static_cast<int>(nDigits);
        return true;
    }
};

namespace {

constexpr int kFirstYear = 1900, kLastYear = 2099;
constexpr std::string_view kBetween = " \t-/.,_\\'";

// Of two digits.
constexpr int FullYear(int nYear)
{
    return nYear + (nYear < 50 ? 2000 : 1900);
}

} // namespace

DateReader::DateReader(DateForm form, const Words& words) : m_words(words)
{
    struct Row
    {
        DateForm form;
        Part parts[3];
        int nParts;
    };
    constexpr Part Y = Part::Year, M = Part::Month, D = Part::Day;
    constexpr Row kRows[] = {
        {DateForm::YearMonthDay, {Y, M, D}, 3}, {DateForm::YearDayMonth, {Y, D, M}, 3},
        {DateForm::DayMonthYear, {D, M, Y}, 3}, {DateForm::MonthDayYear, {M, D, Y}, 3},
        {DateForm::YearMonth, {Y, M, D}, 2},    {DateForm::MonthYear, {M, Y, D}, 2}};
    const auto row = std::ranges::find(kRows, form, &Row::form);
    const Row& found = row == std::end(kRows) ? kRows[0] : *row;
    std::ranges::copy(found.parts, m_order);
    m_nParts = found.nParts;
}

bool DateReader::ReadWord(Cursor& cursor, Parts& parts) const
{
    std::size_t nSize = 0;
    const Word* pWord = m_words.Find(cursor.Rest(), nSize);
    if (!pWord)
        return false;
    const bool bStart = parts.nCount == 0 && parts.nMonthName == 0;
    if (pWord->kind == WordKind::Month && parts.nMonthName == 0)
        parts.nMonthName = pWord->nValue;
    else if (!(pWord->kind == WordKind::Weekday && bStart) &&
             !(pWord->kind == WordKind::Filler && !bStart))
        return false;
    cursor.Skip(nSize);
    return true;
}

// Years have four digits where there are enough for them. An odd number of digits lacks the zero of
// the first part, if that isn't the year.
bool DateReader::ReadRun(Cursor& cursor, std::size_t nDigits, Parts& parts) const
{
    const bool bYearFirst = m_order[0] == Part::Year;
    const std::size_t nShort = static_cast<std::size_t>(m_nParts) * 2;
    const std::size_t nOdd = bYearFirst ? 0 : 1;
    std::size_t nYear = 0;
    if (nDigits == nShort || nDigits + nOdd == nShort)
        nYear = 2;
    else if (nDigits == nShort + 2 || nDigits + nOdd == nShort + 2 || nDigits >= nShort + 6)
        nYear = 4;
    if (nYear == 0)
        return false;
    const bool bLacks = nOdd == 1 && nDigits < nShort + 3 && nDigits % 2 == 1;
    for (int n = 0; n < m_nParts; ++n) {
        const std::size_t nPart = m_order[n] == Part::Year ? nYear : n == 0 && bLacks ? 1 : 2;
        parts.Add(static_cast<int>(cursor.Take(nPart)), nPart);
    }
    parts.bWhole = true;
    return true;
}

bool DateReader::ReadParts(Cursor& cursor, Parts& parts) const
{
    while (true) {
        const int nFound = parts.nCount + (parts.nMonthName != 0 ? 1 : 0);
        if (nFound == m_nParts)
            return true;
        cursor.SkipAny(kBetween);
        const std::size_t nDigits = cursor.DigitsHere();
        if (nDigits >= 5)
            return nFound == 0 && ReadRun(cursor, nDigits, parts);
        if (nDigits == 0) {
            if (!ReadWord(cursor, parts))
                return false;
        } else if (nDigits == 3 || !parts.Add(static_cast<int>(cursor.Take(nDigits)), nDigits))
            return false;
    }
}

std::optional<std::int32_t> DateReader::DayOf(const Parts& parts) const
{
    int nYear = 0, nMonth = parts.nMonthName, nDay = 1;
    int nNext = 0;
    for (int n = 0; n < m_nParts; ++n) {
        if (m_order[n] == Part::Month && parts.nMonthName != 0)
            continue;
        const int nNumber = parts.numbers[nNext];
        const int nDigits = parts.digits[nNext++];
        const bool bYear = m_order[n] == Part::Year;
        if (bYear ? nDigits == 1 : nDigits > 2)
            return std::nullopt;
        if (bYear)
            nYear = nDigits == 4 ? nNumber : FullYear(nNumber);
        else
            (m_order[n] == Part::Month ? nMonth : nDay) = nNumber;
    }
    using namespace std::chrono;
    const year_month_day date{year(nYear), month(static_cast<unsigned>(nMonth)),
                              day(static_cast<unsigned>(nDay))};
    if (!date.ok() || nYear < kFirstYear || nYear > kLastYear)
        return std::nullopt;
    return static_cast<std::int32_t>(sys_days(date).time_since_epoch().count());
}

// One more digit behind a date makes it something else.
std::optional<std::int32_t> DateReader::Read(Cursor& cursor) const
{
    Parts parts;
    if (!ReadParts(cursor, parts) || (!parts.bWhole && IsDigitByte(cursor.Here())))
        return std::nullopt;
    return DayOf(parts);
}

} // namespace tabulex::intake
