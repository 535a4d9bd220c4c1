// A value below one day is a time without a date. The calendar begins later than day 0, so such
// a value is read ten days further on; its time of day is the same there.

#include "src/UIComponents/controls/GridCell.h"

#include <algorithm>
#include <stdexcept>

#include "datetime/qrlDateTime.h"
#include "diagnostics/FaultmereClient.h"
#include "platform/text/Locale.h"
#include "platform/values.h"

namespace Hesperon::specifics {

namespace {

constexpr OLECHAR kMark = OLECHAR('"');
constexpr DATE kIntoCalendar = 10.0; // days

// Puts a fraction after the seconds: before each blank, after which the mark of the half of the
// day follows, or at the end where there is none.
string_t WithFraction(string_view_t sTime, string_view_t sFraction)
{
    if (sTime.find(OLECHAR(' ')) == string_view_t::npos)
        return string_t(sTime).append(sFraction);
    string_t text;
    for (const OLECHAR c : sTime) {
        if (c == OLECHAR(' '))
            text += sFraction;
        text += c;
    }
    return text;
}

string_t DateOrTimeText(DATE value)
{
    qrlDateTime::SDateTime date;
    date.m_ticks =
        qrlDateTime::SDateTime::OleDate2Ticks(value < 1.0 ? value + kIntoCalendar : value);
    const SYSTEMTIME time = date.ToSYSTEMTIME();
    if (static_cast<LONG>(value) != 0)
        return ShortDate(time);
    const string_t sTime = TimeText(time);
    return time.wMilliseconds == 0 ? sTime : WithFraction(sTime, date.Format(OLESTR(".%f")));
}

void WriteQuoted(string_view_t sText, std::span<OLECHAR> buffer)
{
    constexpr std::size_t kAround = 3; // two marks and the terminator
    if (buffer.size() < kAround)
        return;
    string_t text(1, kMark);
    text.append(sText.substr(0, buffer.size() - kAround)).push_back(kMark);
    WriteText(text, buffer);
}

void WriteNumber(const VARIANT& value, std::span<OLECHAR> buffer)
{
    Variant text;
    if (SUCCEEDED(VariantChangeType(&text, const_cast<VARIANT*>(&value), 0, VT_BSTR)))
        WriteText(TextOf(text.bstrVal), buffer);
}

} // namespace

void WriteText(string_view_t sText, std::span<OLECHAR> buffer)
{
    if (buffer.empty())
        return;
    const std::size_t nLength = std::min(sText.size(), buffer.size() - 1);
    std::copy_n(sText.data(), nLength, buffer.data());
    buffer[nLength] = 0;
}

void WriteValue(const VARIANT& value, std::span<OLECHAR> buffer)
{
    WriteText({}, buffer);
    switch (value.vt) {
    case VT_DATE:
        WriteText(DateText(value.date), buffer);
        break;
    case VT_BSTR:
        WriteQuoted(TextOf(value.bstrVal), buffer);
        break;
    case VT_R8:
    case VT_I8:
    case VT_UI8:
        WriteNumber(value, buffer);
        break;
    default:
        FaultmereUtil::ReportAssertion("");
    }
}

string_t DateText(DATE value)
{
    try {
        return DateOrTimeText(value);
    } catch (const std::range_error&) {
        return {};
    }
}

} // namespace Hesperon::specifics
