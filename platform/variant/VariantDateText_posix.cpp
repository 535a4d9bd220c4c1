// Dates and times in text.
//
// The text is read once from left to right into its parts: numbers, the name of a month, a
// time of day. What the numbers of the date mean isn't decided while they are read: when all
// are known, the orders that fit their count are tried one after the other, and the first one
// that gives a day of the calendar holds. So 13/2/2003 is read as a day and a month only
// because no month 13 exists.

#include <ctime>
#include <optional>
#include <string>
#include <vector>

#include <fmt/format.h>

#include "platform/variant/CalendarDay_posix.h"
#include "platform/variant/VariantText_posix.h"

namespace {

constexpr string_view_t kMonths[] = {
    u"january", u"february", u"march",     u"april",   u"may",      u"june",
    u"july",    u"august",   u"september", u"october", u"november", u"december",
};

bool IsLetter(OLECHAR c)
{
    return (c >= u'a' && c <= u'z') || (c >= u'A' && c <= u'Z');
}
bool IsSpaceOrTab(OLECHAR c)
{
    return c == u' ' || c == u'\t';
}
bool IsTimeSeparator(OLECHAR c)
{
    return c == u':' || c == u'.';
}
bool IsDateSeparator(OLECHAR c)
{
    return c == u'/' || c == u'-' || c == u',';
}

// 1 to 12 for a full English name or its first three letters; 0 for another word.
int MonthOfName(string_view_t lower)
{
    for (int n = 0; n < 12; ++n)
        if (lower == kMonths[n] || lower == kMonths[n].substr(0, 3))
            return n + 1;
    return 0;
}

int CurrentYear()
{
    const std::time_t now = std::time(nullptr);
    std::tm local{};
    localtime_r(&now, &local);
    return local.tm_year + 1900;
}

struct DateParts
{
    std::vector<int> numbers; // in the order of the text
    int nMonth = 0;           // given by name; 0 if not
};

// The meanings that the numbers of a date are tried with, in this order: month,
// day, year.
struct DateOrder
{
    bool bMonthName;
    std::string_view letters;
};
constexpr DateOrder kDateOrders[] = {
    {false, "MD"},  {false, "DM"},  {false, "YM"}, {false, "MY"}, {false, "MDY"}, {false, "YMD"},
    {false, "DMY"}, {false, "YDM"}, {true, "D"},   {true, "Y"},   {true, "DY"},   {true, "YD"},
};

// The day when the parts make a date in this order.
std::optional<int> DayInOrder(const DateParts& parts, std::string_view letters)
{
    CalendarDate date = {CurrentYear(), parts.nMonth, 1};
    for (std::size_t n = 0; n < letters.size(); ++n) {
        const int nValue = parts.numbers[n];
        if (letters[n] == 'M')
            date.nMonth = nValue;
        else if (letters[n] == 'D')
            date.nDay = nValue;
        else
            date.nYear = FullYear(nValue);
    }
    if (date.nYear < 100 || date.nYear > 9999 || date.nMonth < 1 || date.nMonth > 12)
        return {};
    if (date.nDay < 1 || date.nDay > DaysInMonth(date.nYear, date.nMonth))
        return {};
    return DayOfDate(date);
}

std::optional<int> DayOfParts(const DateParts& parts)
{
    for (const DateOrder& order : kDateOrders)
        if (order.bMonthName == (parts.nMonth != 0) && order.letters.size() == parts.numbers.size())
            if (auto nDay = DayInOrder(parts, order.letters))
                return nDay;
    return {};
}

// Reads the text once from left to right. The parts of the date must stand
// together, the time before or after them.
class DateReader
{
public:
    explicit DateReader(string_view_t text) : m_text(text) {}

    bool Read(DATE& date)
    {
        for (SkipBlanks(); !m_text.empty(); SkipBlanks())
            if (!ReadItem())
                return false;
        const bool bDate = !m_date.numbers.empty() || m_date.nMonth != 0;
        if (m_bSeparator || (!bDate && !m_nSeconds))
            return false;
        const std::optional<int> nDay = bDate ? DayOfParts(m_date) : 0;
        if (!nDay)
            return false;
        date = DateValue(*nDay, m_nSeconds.value_or(0));
        return true;
    }

private:
    OLECHAR Next(std::size_t nAhead = 0) const
    {
        return nAhead < m_text.size() ? m_text[nAhead] : u'\0';
    }

    void SkipBlanks()
    {
        while (IsSpaceOrTab(Next()))
            m_text.remove_prefix(1);
    }

    bool ReadItem()
    {
        if (IsDigit(Next()))
            return ReadNumber();
        if (IsLetter(Next()))
            return ReadMonth();
        // A separator comes after a part of the date, and another part follows.
        if (!IsDateSeparator(Next()) || !m_bDateOpen || m_bSeparator)
            return false;
        m_bSeparator = true;
        m_text.remove_prefix(1);
        return true;
    }

    bool ReadMonth()
    {
        const int nMonth = MonthOfName(TakeWord());
        if (nMonth == 0 || m_date.nMonth != 0)
            return false;
        m_date.nMonth = nMonth;
        return AddToDate();
    }

    bool ReadNumber()
    {
        const int nValue = TakeNumber();
        if (IsTimeSeparator(Next()) && IsDigit(Next(1)))
            return ReadTime(nValue);
        if (const auto bPm = TakeAmPm())
            return SetTime(nValue, 0, 0, bPm);
        m_date.numbers.push_back(nValue);
        return AddToDate();
    }

    bool AddToDate()
    {
        const bool bFirst = m_date.numbers.size() + (m_date.nMonth != 0) == 1;
        const bool bTogether = bFirst || m_bDateOpen;
        m_bDateOpen = true;
        m_bSeparator = false;
        return bTogether;
    }

    bool ReadTime(int nHour)
    {
        int parts[2] = {0, 0};
        for (int& nPart : parts) {
            if (!IsTimeSeparator(Next()) || !IsDigit(Next(1)))
                break;
            m_text.remove_prefix(1);
            nPart = TakeNumber();
        }
        return SetTime(nHour, parts[0], parts[1], TakeAmPm());
    }

    // AM and PM are ignored after an hour of the 24-hour clock.
    bool SetTime(int nHour, int nMinute, int nSecond, std::optional<bool> bPm)
    {
        if (m_nSeconds || m_bSeparator || nHour > 23 || nMinute > 59 || nSecond > 59)
            return false;
        if (bPm && nHour <= 12)
            nHour = nHour % 12 + (*bPm ? 12 : 0);
        m_nSeconds = (nHour * 60 + nMinute) * 60 + nSecond;
        m_bDateOpen = false;
        return true;
    }

    // Numbers of any length; what is too large for a year is no valid part anyway.
    int TakeNumber()
    {
        int nValue = 0;
        for (; IsDigit(Next()); m_text.remove_prefix(1))
            nValue = nValue > 9999 ? nValue : nValue * 10 + (Next() - u'0');
        return nValue;
    }

    string_t TakeWord()
    {
        string_t word;
        for (; IsLetter(Next()); m_text.remove_prefix(1))
            word.push_back(static_cast<OLECHAR>(Next() | 0x20));
        return word;
    }

    // True for PM; empty, and nothing taken, where another word or none follows.
    std::optional<bool> TakeAmPm()
    {
        const string_view_t before = m_text;
        SkipBlanks();
        const string_t word = TakeWord();
        if (word == u"am" || word == u"a")
            return false;
        if (word == u"pm" || word == u"p")
            return true;
        m_text = before;
        return {};
    }

    string_view_t m_text;
    DateParts m_date;
    std::optional<int> m_nSeconds; // of the day, once a time was read
    bool m_bDateOpen = false;      // the date may go on
    bool m_bSeparator = false;     // one was read and awaits the next part
};

} // namespace

HRESULT FormatDate(DATE date, string_t& text)
{
    int nDay = 0;
    int nSeconds = 0;
    if (!SplitDate(date, nDay, nSeconds))
        return E_INVALIDARG;
    std::string ascii;
    if (nDay != 0) {
        const CalendarDate calendar = DateOfDay(nDay);
        ascii = fmt::format("{}/{}/{}", calendar.nMonth, calendar.nDay, calendar.nYear);
    }
    if (nSeconds != 0 || nDay == 0) {
        const int nHour = nSeconds / 3600;
        ascii += fmt::format("{}{}:{:02}:{:02} {}", ascii.empty() ? "" : " ", (nHour + 11) % 12 + 1,
                             nSeconds / 60 % 60, nSeconds % 60, nHour < 12 ? "AM" : "PM");
    }
    text.assign(ascii.begin(), ascii.end());
    return S_OK;
}

HRESULT ParseDate(string_view_t text, DATE& date)
{
    return DateReader(text).Read(date) ? S_OK : DISP_E_TYPEMISMATCH;
}
