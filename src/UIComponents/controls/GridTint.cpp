// Dates are compared by the calendar. Before day 0 the fraction of a date still counts forwards
// from the beginning of its day, so -1.75 is later than -1.25: the fraction is mirrored first.

#include "src/UIComponents/controls/GridTint.h"

#include <cmath>

#include "platform/values.h"

using namespace IQRL_TabulexConverter;

namespace Hesperon::specifics {

namespace {

DateWithStatus ReadDate(IDataParser& parser,
                        HRESULT (STDMETHODCALLTYPE IDataParser::*read)(VARIANT*))
{
    Variant value;
    if (FAILED((parser.*read)(&value)) || value.vt != VT_DATE)
        return {};
    return {value.date, DateWithStatus::kValid};
}

// Grows with the calendar.
double CalendarOrder(DATE date)
{
    const double nDay = std::trunc(date);
    return date < 0 ? nDay - (date - nDay) : date;
}

bool IsNoDate(const DateWithStatus& date)
{
    return LowDayBits(date.date) == 0xFFFF;
}

} // namespace

void GridTint::ReadRange(IDataParser& parser)
{
    m_dtRangeStart = ReadDate(parser, &IDataParser::get_StartDateTime);
    m_dtRangeEnd = ReadDate(parser, &IDataParser::get_EndDateTime);
}

bool GridTint::HasRange() const
{
    return !IsNoDate(m_dtRangeStart) && !IsNoDate(m_dtRangeEnd);
}

bool GridTint::Contains(DATE date) const
{
    const double value = CalendarOrder(date);
    return HasRange() && CalendarOrder(m_dtRangeStart.date) <= value &&
           value <= CalendarOrder(m_dtRangeEnd.date);
}

HRESULT ReadRecord(IDataParser& parser, LONG nRecord, BSTR* pRecord)
{
    if (nRecord < 0)
        return E_INVALIDARG;
    // Any other result leaves the parser where it was, at another record.
    const HRESULT hr = parser.put_Position(static_cast<ULONGLONG>(nRecord));
    if (hr != S_OK)
        return FAILED(hr) ? hr : E_FAIL;
    return parser.get_CurrentRecord(pRecord);
}

bool IsRecordIn(const GridTint& range, IDataParser& data, IRecordParser& records, LONG nRecord)
{
    if (!range.HasRange())
        return false;
    Bstr sRecord;
    Variant date;
    return SUCCEEDED(ReadRecord(data, nRecord, sRecord.put())) &&
           SUCCEEDED(records.Parse(sRecord.get())) &&
           SUCCEEDED(records.get_CurrentDateTime(&date)) && date.vt == VT_DATE &&
           range.Contains(date.date);
}

ULONG BlendColours(ULONG nFrom, ULONG nTo)
{
    constexpr double kShare = 0.3;
    ULONG nBlend = 0;
    for (unsigned nShift = 0; nShift <= 16; nShift += 8) {
        const auto nFirst = static_cast<int>(nFrom >> nShift & 0xFF);
        const auto nSecond = static_cast<int>(nTo >> nShift & 0xFF);
        nBlend |= static_cast<ULONG>(nFirst + (nSecond - nFirst) * kShare) << nShift;
    }
    return nBlend;
}

} // namespace Hesperon::specifics
