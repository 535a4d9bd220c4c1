// The value is split into all fields that a specifier can name, then the format is walked
// once. A table gives each specifier its field and the writer for it; the writers differ in
// what they do when room runs out.

#include <algorithm>
#include <array>

#include "datetime/RangeFault.h"
#include "datetime/TickParts.h"
#include "datetime/qrlDateTime.h"
#include "platform/text/Locale.h"

namespace qrlDateTime {

using namespace details;

namespace {

struct Fields
{
    int nYear, nYearOfCentury, nMonth, nDay, nWeekday; // weekdays 1 Monday to 7 Sunday
    int nHour, nMinute, nSecond, nMilliseconds, nMicroseconds;
};

Fields FieldsOf(std::int64_t nTicks)
{
    const std::int32_t nDays = DayNumberOfTicks(nTicks);
    TDate date;
    JulianToDateImpl(nDays, date);
    TTime time;
    TimeToTTime(SecondsOfTicks(nTicks), time);
    const int nWeekday = GetDayOfWeekImpl(nDays);
    const int nFraction = FractionOfTicks(nTicks);
    return {date.Year, date.Year % 100, date.Month,  date.Day,          nWeekday ? nWeekday : 7,
            time.Hour, time.Minute,     time.Second, nFraction / 10000, nFraction / 10};
}

Fields CheckedFieldsOf(std::int64_t nTicks)
{
    try {
        return FieldsOf(nTicks);
    } catch (const std::exception& fault) {
        throw std::range_error(JoinPieces("qrlDateTime::SDateTime::Format : try to format invalid "
                                          "date/time (",
                                          fault.what(), "): m_ticks = ", nTicks));
    }
}

SYSTEMTIME SystemTimeOf(const Fields& fields)
{
    SYSTEMTIME time{};
    time.wYear = static_cast<WORD>(fields.nYear);
    time.wMonth = static_cast<WORD>(fields.nMonth);
    time.wDayOfWeek = static_cast<WORD>(fields.nWeekday % 7);
    time.wDay = static_cast<WORD>(fields.nDay);
    time.wHour = static_cast<WORD>(fields.nHour);
    time.wMinute = static_cast<WORD>(fields.nMinute);
    time.wSecond = static_cast<WORD>(fields.nSecond);
    time.wMilliseconds = static_cast<WORD>(fields.nMilliseconds);
    return time;
}

// The text of a number, at least nWidth digits.
class Digits
{
public:
    Digits(int nNumber, int nWidth)
    {
        auto p = m_text.end();
        for (int nLeft = nNumber; nLeft > 0 || nWidth > 0; nLeft /= 10, --nWidth)
            *--p = static_cast<OLECHAR>('0' + nLeft % 10);
        m_nFirst = static_cast<std::size_t>(p - m_text.begin());
    }
    string_view_t view() const { return {m_text.data() + m_nFirst, m_text.size() - m_nFirst}; }

private:
    std::array<OLECHAR, 10> m_text;
    std::size_t m_nFirst;
};

// The buffer while it is filled. m_nRoom is its size without the terminator.
class Output
{
public:
    Output(OLECHAR* pBuffer, std::size_t nRoom) : m_pBuffer(pBuffer), m_nRoom(nRoom) {}

    bool IsFull() const { return m_nPos == m_nRoom; }
    std::size_t Finish()
    {
        m_pBuffer[m_nPos] = 0;
        return m_nPos;
    }

    void Put(OLECHAR c) { m_pBuffer[m_nPos++] = c; } // requires !IsFull()

    // As much of the text as there is room for.
    void PutCut(string_view_t sText)
    {
        const auto nFits = std::min(sText.size(), m_nRoom - m_nPos);
        m_nPos += sText.copy(m_pBuffer + m_nPos, nFits);
    }

    // As PutCut, but always leaves one unit free.
    void PutPrinted(string_view_t sText) { PutCut(sText.substr(0, m_nRoom - m_nPos - 1)); }

    // All of the text or, if there is none or too little room, the end of the buffer.
    void PutWhole(string_view_t sText)
    {
        if (sText.empty() || sText.size() > m_nRoom - m_nPos)
            m_nPos = m_nRoom;
        else
            PutCut(sText);
    }

private:
    OLECHAR* const m_pBuffer;
    const std::size_t m_nRoom;
    std::size_t m_nPos = 0;
};

using Writer = void (*)(Output&, int nValue, int nDetail);

// nDetail is the number of digits for the first two, the type for names.
void WriteDigits(Output& out, int nValue, int nWidth)
{
    out.PutCut(Digits(nValue, nWidth).view());
}
void WritePrinted(Output& out, int nValue, int nWidth)
{
    out.PutPrinted(Digits(nValue, nWidth).view());
}
void WriteName(Output& out, int nValue, int nTypeBefore)
{
    out.PutWhole(LocaleInfo(nTypeBefore + nValue));
}

struct Specifier
{
    OLECHAR cLetter;
    int Fields::*value;
    Writer write;
    int nDetail;
};

// The types of the day names start one above the platform's numbering.
constexpr Specifier kSpecifiers[] = {
    {'H', &Fields::nHour, WriteDigits, 2},          {'M', &Fields::nMinute, WriteDigits, 2},
    {'S', &Fields::nSecond, WriteDigits, 2},        {'s', &Fields::nSecond, WriteDigits, 1},
    {'d', &Fields::nDay, WriteDigits, 2},           {'m', &Fields::nMonth, WriteDigits, 2},
    {'Y', &Fields::nYear, WriteDigits, 4},          {'y', &Fields::nYearOfCentury, WriteDigits, 2},
    {'F', &Fields::nMilliseconds, WritePrinted, 3}, {'f', &Fields::nMilliseconds, WritePrinted, 1},
    {'G', &Fields::nMicroseconds, WritePrinted, 6}, {'g', &Fields::nMicroseconds, WritePrinted, 1},
    {'A', &Fields::nWeekday, WriteName, 42},        {'a', &Fields::nWeekday, WriteName, 49},
    {'B', &Fields::nMonth, WriteName, 55},          {'b', &Fields::nMonth, WriteName, 67},
};

void WriteSpecifier(Output& out, OLECHAR cLetter, const Fields& fields)
{
    if (cLetter == '%')
        return out.Put(cLetter);
    if (cLetter == 'D')
        return out.PutWhole(ShortDate(SystemTimeOf(fields)));
    if (cLetter == 'T')
        return out.PutWhole(InvariantTime(SystemTimeOf(fields)));
    for (const Specifier& row : kSpecifiers)
        if (row.cLetter == cLetter)
            return row.write(out, fields.*row.value, row.nDetail);
}

} // namespace

std::size_t SDateTime::Format(OLECHAR* szBuffer, std::size_t nCapacity, string_view_t sFormat) const
{
    const Fields fields = CheckedFieldsOf(m_ticks);
    if (nCapacity == 0)
        return 0;
    Output out(szBuffer, nCapacity - 1);
    for (std::size_t n = 0; n < sFormat.size() && !out.IsFull(); ++n) {
        if (sFormat[n] != '%')
            out.Put(sFormat[n]);
        else if (++n < sFormat.size())
            WriteSpecifier(out, sFormat[n], fields);
    }
    return out.Finish();
}

string_t SDateTime::Format(string_view_t sFormat) const
{
    OLECHAR szBuffer[kFormatCapacity] = {};
    Format(szBuffer, kFormatCapacity, sFormat);
    return szBuffer;
}

} // namespace qrlDateTime
