// A text is evaluated into the variables that the template declares: a number by reading it,
// a date or a time by the compiled template. Then the validity rules look at the variables.
// The value is computed from them when it is asked for, and kept until the next text.

#include "src/parsing/templates/IQDParseImpl.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "diagnostics/FaultmereClient.h"
#include "platform/text/Locale.h"
#include "src/parsing/DataTypes.h"
#include "src/parsing/templates/NumberText.h"
#include "src/parsing/templates/TemplateChunk.h"
#include "src/parsing/templates/TextTests.h"

namespace Hesperon::specifics {

namespace {

constexpr LONGLONG kTicksPerMillisecond = 10'000;
constexpr LONGLONG kTicksPerDay = 864'000'000'000;
constexpr LONGLONG kLastHour = 23; // that a time of day can have
constexpr LONGLONG kMaxMilliseconds = 999;

bool IsBetween(LONGLONG value, LONGLONG min, LONGLONG max)
{
    return value >= min && value <= max;
}

// Leap years aren't looked at: every year has a 29 February.
LONGLONG DaysOfMonth(LONGLONG nMonth)
{
    constexpr LONGLONG kDays[] = {31, 29, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
    return kDays[nMonth - 1];
}

} // namespace

CDataField::CDataField(const CDataField& other)
    : m_szTemplate(other.GetTemplate()), m_uiType(other.m_uiType), m_bValid(other.m_bValid),
      m_value(other.m_value)
{
    Rebuild();
}

CDataField& CDataField::operator=(const CDataField& other)
{
    return *this = CDataField(other);
}

void CDataField::SetType(unsigned uiType)
{
    m_uiType = uiType;
    Rebuild();
}

string_view_t CDataField::GetTemplate() const
{
    if (m_uiType == TypeSymbol)
        return OLESTR("symbol");
    if (IsPriceType(m_uiType))
        return OLESTR("float");
    if (IsWholeType(m_uiType))
        return OLESTR("int");
    return m_uiType < TYPES_COUNT ? string_view_t(m_szTemplate) : string_view_t();
}

void CDataField::SetTemplate(string_view_t sTemplate)
{
    StoreTemplate(sTemplate);
    Rebuild();
}

void CDataField::SetTypeAndTemplate(unsigned uiType, string_view_t sTemplate)
{
    StoreTemplate(sTemplate);
    SetType(uiType);
}

void CDataField::StoreTemplate(string_view_t sTemplate)
{
    string_t sLower(sTemplate.substr(0, kMaxText));
    LowerCase(sLower);
    m_szTemplate = std::move(sLower);
}

void CDataField::Rebuild()
{
    const string_view_t sTemplate = GetTemplate();
    m_vars.Build(m_uiType, PatternOf(sTemplate));
    const bool bMatched = m_uiType == TypeDate || m_uiType == TypeTime;
    m_compiled = bMatched ? CompiledTemplate(m_uiType, sTemplate, m_vars) : CompiledTemplate();
}

// Two columns trade all but their places. The variables belong to the templates, so both are built
// again, with all values 0.
void CDataField::Swap(CDataField& other)
{
    m_szTemplate.swap(other.m_szTemplate);
    std::swap(m_uiType, other.m_uiType);
    std::swap(m_bValid, other.m_bValid);
    std::swap(m_value, other.m_value);
    Rebuild();
    other.Rebuild();
}

tagMATHVALUE* CDataField::FindVariable(OLECHAR letter)
{
    return m_vars.Find(letter);
}

LONGLONG CDataField::VariableOr0(OLECHAR letter)
{
    return m_vars.IntegerOr0(letter);
}

// Without a PM variable the hour counts as it is. With one, 12 AM is hour 0 and 12 PM is noon.
LONGLONG CDataField::HourOfDay()
{
    const LONGLONG nHour = m_vars.IntegerOr0(OLESTR('h'));
    if (!m_vars.Declares(OLESTR('t')))
        return nHour;
    const LONGLONG nAfternoon = m_vars.IntegerOr0(OLESTR('t'));
    if (nAfternoon == 1 && nHour < 12)
        return nHour + 12;
    return nAfternoon == 0 && nHour >= 12 ? nHour - 12 : nHour;
}

// ---- parsing -----------------------------------------------------------------

void CDataField::ParseField(string_view_t sText)
{
    m_value.vt = VT_EMPTY;
    m_bValid = SUCCEEDED(Evaluate(sText.substr(0, kMaxText))) && FollowsRules();
}

HRESULT CDataField::Evaluate(string_view_t sText)
{
    if (IsPriceType(m_uiType))
        return EvaluateNumber(OLESTR('f'), sText, ReadFloatText, tagMATHVALUE::Double);
    if (IsWholeType(m_uiType))
        return EvaluateNumber(OLESTR('i'), sText, ReadIntegerText, tagMATHVALUE::Integer);
    return m_compiled.Evaluate(sText, m_vars);
}

// A text that can't be read leaves the number of the text before it.
template <class Number>
HRESULT CDataField::EvaluateNumber(OLECHAR letter, string_view_t sText,
                                   bool (*read)(string_view_t, Number&),
                                   tagMATHVALUE (*make)(Number))
{
    tagMATHVALUE* variable = m_vars.Find(letter);
    if (!variable)
        return E_FAIL;
    Number number;
    if (!read(sText, number))
        return E_INVALIDARG;
    *variable = make(number);
    return S_OK;
}

bool CDataField::FollowsRules()
{
    switch (m_uiType) {
    case TypeDate:
        return IsDateInRange();
    case TypeTime:
        return IsTimeInRange();
    default:
        return true;
    }
}

bool CDataField::IsDateInRange()
{
    if (!m_vars.Declares(OLESTR('y')) || !m_vars.Declares(OLESTR('m')))
        return false;
    const LONGLONG nYear = m_vars.IntegerOr0(OLESTR('y'));
    const LONGLONG nMonth = m_vars.IntegerOr0(OLESTR('m'));
    if (!IsBetween(nYear, 0, 199) && !IsBetween(nYear, 1900, 2099))
        return false;
    if (!IsBetween(nMonth, 1, 12))
        return false;
    return !m_vars.Declares(OLESTR('d')) ||
           IsBetween(m_vars.IntegerOr0(OLESTR('d')), 1, DaysOfMonth(nMonth));
}

bool CDataField::IsTimeInRange()
{
    return m_vars.Declares(OLESTR('h')) && IsBetween(HourOfDay(), 0, 24) &&
           m_vars.Declares(OLESTR('m')) && IsBetween(m_vars.IntegerOr0(OLESTR('m')), 0, 59) &&
           IsBetween(m_vars.IntegerOr0(OLESTR('s')), 0, 59);
}

// ---- value -------------------------------------------------------------------

void CDataField::SetCachedDate(DATE date)
{
    m_value.vt = VT_DATE;
    m_value.date = date;
}

HRESULT CDataField::ComputeAndGetValue(VARIANT* pVar)
{
    if (!FaultmereUtil::Assert(pVar != nullptr, "0 != pVar"))
        return E_POINTER;
    if (!m_bValid)
        return E_FAIL;
    if (!HasCachedValue()) {
        const HRESULT hr = ComputeValue();
        if (FAILED(hr))
            return hr;
    }
    *pVar = m_value;
    return S_OK;
}

HRESULT CDataField::ComputeValue()
{
    if (m_uiType == TypeTime && HourOfDay() > kLastHour)
        return E_FAIL;
    if (m_uiType == TypeDate || m_uiType == TypeTime) {
        SetCachedDate(m_uiType == TypeDate ? ComputeDate() : ComputeTime());
        return S_OK;
    }
    const bool bPrice = IsPriceType(m_uiType);
    const tagMATHVALUE* number = m_vars.Find(bPrice ? OLESTR('f') : OLESTR('i'));
    if (!FaultmereUtil::Assert(number != nullptr, "0 != number"))
        return E_FAIL;
    m_value.vt = bPrice ? VT_R8 : VT_I8;
    if (bPrice)
        m_value.dblVal = number->AsDouble();
    else
        m_value.llVal = number->nValue;
    return S_OK;
}

// The bars of a day follow each other, so most dates are equal to that of the line before.
DATE CDataField::ComputeDate()
{
    const CivilDay day{static_cast<WORD>(m_vars.IntegerOr0(OLESTR('y'))),
                       static_cast<WORD>(m_vars.IntegerOr0(OLESTR('m'))),
                       static_cast<WORD>(m_vars.IntegerOr0(OLESTR('d')))};
    if (day != m_lastDay) {
        m_lastDate = DateOf(day);
        m_lastDay = day;
    }
    return m_lastDate;
}

// A day 0 (a template without days) and a 29 February that the year doesn't have
// roll into the neighbouring month.
DATE CDataField::DateOf(CivilDay day)
{
    SYSTEMTIME time{};
    time.wDay = day.nDay;
    time.wMonth = day.nMonth;
    time.wYear = day.nYear;
    DATE date = 0;
    SystemTimeToVariantTime(&time, &date);
    return std::trunc(date);
}

// One division of whole ticks makes each time the double nearest to it.
DATE CDataField::ComputeTime()
{
    const LONGLONG nMinutes = HourOfDay() * 60 + m_vars.IntegerOr0(OLESTR('m'));
    const LONGLONG nSeconds = nMinutes * 60 + m_vars.IntegerOr0(OLESTR('s'));
    const LONGLONG nMilliseconds =
        std::clamp<LONGLONG>(m_vars.IntegerOr0(OLESTR('f')), 0, kMaxMilliseconds);
    const LONGLONG nTicks = (nSeconds * 1000 + nMilliseconds) * kTicksPerMillisecond;
    return static_cast<DATE>(nTicks) / static_cast<DATE>(kTicksPerDay);
}

} // namespace Hesperon::specifics
