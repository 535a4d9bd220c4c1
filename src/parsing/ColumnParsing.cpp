// A record's fields go to the columns in their order, empty ones skipped; a column computes
// its value when it is asked for. The value of a date or a time is first normalised with
// the other: whole days of the hour go over to the date, which is how 24:00 becomes 00:00 of
// the next day. That happens while the column asked has no value yet, and on variables, so
// doing it again changes nothing.

#include "src/parsing/ColumnParsing.h"

#include <algorithm>
#include <cmath>

#include "datetime/qrlDateTime.h"
#include "platform/values.h"
#include "src/parsing/RecordText.h"

namespace Hesperon::specifics {
namespace {

constexpr LONGLONG kHoursPerDay = 24;
constexpr LONGLONG kNoon = 12;
constexpr double kMinutesPerDay = 1440.0;

void SetVariable(CDataField& field, OLECHAR letter, LONGLONG nValue)
{
    if (tagMATHVALUE* p = field.FindVariable(letter))
        *p = tagMATHVALUE::Integer(nValue);
}

void StoreHour(CDataField& time, LONGLONG nHour)
{
    if (time.FindVariable('t')) {
        SetVariable(time, 't', nHour >= kNoon);
        if (nHour > kNoon)
            nHour -= kNoon;
    }
    SetVariable(time, 'h', nHour);
}

// A day beyond the calendar leaves the date as it is.
void StoreDay(CDataField& date, LONGLONG nDay)
{
    qrlDateTime::TDate calendar{};
    if (nDay != static_cast<std::int32_t>(nDay) ||
        !qrlDateTime::details::TryJulianToDate(static_cast<std::int32_t>(nDay), calendar))
        return;
    SetVariable(date, 'm', calendar.Month);
    SetVariable(date, 'd', calendar.Day);
    SetVariable(date, 'y', calendar.Year);
}

void NormaliseDateAndTime(CDataField& date, CDataField& time)
{
    const std::optional<std::int32_t> nDay = DayNumber(date);
    if (!nDay)
        date.SetValid(false);
    const LONGLONG nHour = time.HourOfDay();
    StoreHour(time, nHour % kHoursPerDay);
    if (const LONGLONG nDays = nHour / kHoursPerDay; nDay && nDays != 0)
        StoreDay(date, *nDay + nDays);
}

// Whether a value is of the kind that the type asks for. Ticks, open interest and
// columns without a type ask for none.
bool SuitsType(unsigned uiType, VARTYPE vt)
{
    if (uiType == TypeDate || uiType == TypeTime)
        return vt == VT_DATE;
    if (IsPriceType(uiType))
        return vt == VT_R8;
    return !IsVolumeType(uiType) || vt == VT_I8 || vt == VT_R8;
}

// Adds the bar size to the stamp. If a part has no value, both stay as they were.
void MoveToBarEnd(ParserState& state)
{
    CDataField* parts[] = {state.Column(TypeDate), state.Column(TypeTime)};
    double sum = 0;
    bool bAny = false;
    for (CDataField* part : parts) {
        if (!part)
            continue;
        Variant value;
        if (FAILED(ColumnValue(state, *part, &value)))
            return;
        sum += value.date;
        bAny = true;
    }
    if (!bAny)
        return;
    sum = BarEnd(state, sum);
    if (parts[0])
        parts[0]->SetCachedDate(std::trunc(sum));
    if (parts[1])
        parts[1]->SetCachedDate(sum - std::trunc(sum));
}

} // namespace

std::optional<std::int32_t> DayNumber(CDataField& date)
{
    const LONGLONG nYear = date.VariableOr0('y');
    const LONGLONG nMonth = date.VariableOr0('m');
    const LONGLONG nDay = date.VariableOr0('d');
    if (nYear < qrlDateTime::kFirstYear || nYear > qrlDateTime::kLastYear || nMonth < 1 ||
        nMonth > 12 || nDay < 1 || nDay > 31)
        return {};
    std::int32_t nNumber = 0;
    const qrlDateTime::TDate calendar{static_cast<SHORT>(nMonth), static_cast<SHORT>(nDay),
                                      static_cast<SHORT>(nYear)};
    if (!qrlDateTime::details::TryDateToJulian(calendar, nNumber))
        return {};
    return nNumber;
}

DATE BarEnd(const ParserState& state, DATE stamp)
{
    return stamp + state.m_nResolutionSize / kMinutesPerDay;
}

bool MovesToBarEnd(const ParserState& state)
{
    return state.m_bUseBarsEndTime && state.m_nResolution == ResolutionMinutes &&
           state.m_nResolutionSize != 0;
}

void ParseColumns(ParserState& state, string_view_t sRecord)
{
    FieldWalk walk(sRecord, state.m_dividers);
    bool bMore = true;
    for (CDataField& field : state.m_fields) {
        bMore = bMore && walk.NextFilled();
        if (bMore)
            field.ParseField(walk.Text());
        else
            field.SetValid(false);
    }
    if (MovesToBarEnd(state))
        MoveToBarEnd(state);
}

HRESULT ColumnValue(ParserState& state, CDataField& field, VARIANT* pValue)
{
    const bool bDateOrTime = field.GetType() == TypeDate || field.GetType() == TypeTime;
    if (bDateOrTime && !field.HasCachedValue()) {
        CDataField* date = state.Column(TypeDate);
        CDataField* time = state.Column(TypeTime);
        if (date && time)
            NormaliseDateAndTime(*date, *time);
    }
    const HRESULT hr = field.GetValue(pValue);
    return SUCCEEDED(hr) && !SuitsType(field.GetType(), pValue->vt) ? E_FAIL : hr;
}

HRESULT RecordDateTime(ParserState& state, DATE& date)
{
    CDataField* dateColumn = state.Column(TypeDate);
    if (!dateColumn)
        return E_INVALIDARG;
    Variant value;
    if (FAILED(ColumnValue(state, *dateColumn, &value)))
        return E_FAIL;
    date = value.date;
    if (CDataField* timeColumn = state.Column(TypeTime)) {
        if (FAILED(ColumnValue(state, *timeColumn, &value)))
            return E_FAIL;
        date += value.date;
    }
    return S_OK;
}

} // namespace Hesperon::specifics
