// The record is cut into fields once. Date and time are looked up among the texts that the columns
// had before; a new text goes through a copy of its column, by the same template and rules as in
// the general way. Prices and whole numbers are digits that fit 53 and 63 bits, with a sign and a
// point at most. All else is left to the general way: a symbol that can't be allocated, an hour of
// 24, which rolls the date, a day that the calendar lacks, a cell of another form.

#include "src/parsing/plan/RowPlan.h"

#include <algorithm>
#include <array>
#include <new>

#include "platform/text/AsciiText.h"
#include "platform/values.h"
#include "src/parsing/ColumnParsing.h"
#include "src/parsing/ResolutionStep.h"
#include "src/parsing/templates/NumberText.h"

namespace Hesperon::specifics {

namespace {

constexpr LONGLONG kHourOfNextDay = 24;

bool IsDigitByte(char c)
{
    return static_cast<unsigned char>(c - '0') < 10;
}

// Digits, and among them a mark at most.
struct DecimalDigits
{
    std::uint64_t nDigits = 0;
    std::size_t nCount = 0;
    std::size_t nScale = 0; // digits behind the mark

    // False where there is anything else, or too much for the type.
    bool Read(std::string_view sText, bool bMark)
    {
        constexpr std::size_t kSafe = 18;
        const char* p = sText.data();
        const char* const pEnd = p + sText.size();
        const char* pMark = nullptr;
        for (; p != pEnd; ++p) {
            if (IsDigitByte(*p)) {
                nDigits = nDigits * 10 + static_cast<std::uint64_t>(*p - '0');
            } else if (bMark && !pMark && (*p == '.' || *p == ',')) {
                pMark = p;
            } else {
                return false;
            }
        }
        nCount = sText.size() - (pMark ? 1 : 0);
        nScale = pMark ? static_cast<std::size_t>(pEnd - pMark) - 1 : 0;
        return nCount - 1 < kSafe; // 0 wraps
    }
};

bool ReadPrice(std::string_view sText, double& value)
{
    const bool bSign = sText.front() == '-' || sText.front() == '+';
    DecimalDigits decimal;
    if (!decimal.Read(sText.substr(bSign), true) || decimal.nDigits > kMaxExactMantissa)
        return false;
    const double quotient = ExactQuotient(decimal.nDigits, decimal.nScale);
    value = sText.front() == '-' ? -quotient : quotient;
    return true;
}

bool ReadWhole(std::string_view sText, LONGLONG& value)
{
    DecimalDigits decimal;
    if (!decimal.Read(sText, false))
        return false;
    value = static_cast<LONGLONG>(decimal.nDigits);
    return true;
}

// The value of a text by its column; false where the column refuses it.
bool ReadByColumn(CDataField& column, std::string_view sText)
{
    std::array<OLECHAR, PlainRecord::kMaxPlain> wide;
    std::ranges::copy(sText, wide.begin());
    column.ParseField({wide.data(), sText.size()});
    return column.IsValid();
}

bool ValueOf(CDataField& column, DATE& value)
{
    VARIANT date{};
    if (FAILED(column.GetValue(&date)) || date.vt != VT_DATE)
        return false;
    value = date.date;
    return true;
}

// By the table, or else by `read`, whose answer is kept.
template <class Read>
bool ReadKnown(KnownTexts& known, std::string_view sText, DATE& value, Read read)
{
    if (sText.size() > KnownTexts::kMaxText)
        return read();
    const KnownTexts::Key key = KnownTexts::KeyOf(sText);
    if (const DATE* pKnown = known.Find(key)) {
        value = *pKnown;
        return true;
    }
    if (!read())
        return false;
    known.Add(key, value);
    return true;
}

} // namespace

// ---- making a plan

RowPlan::Layout RowPlan::LayoutOf(const ParserState& state, std::span<const ULONG> fields)
{
    Layout layout;
    layout.fields.assign(fields.begin(), fields.end());
    layout.dividers = state.m_dividers;
    layout.bMovesToBarEnd = MovesToBarEnd(state);
    for (const CDataField& field : state.m_fields) {
        layout.types.push_back(field.GetType());
        if (field.GetType() == TypeDate)
            layout.sDate = field.GetTemplate();
        else if (field.GetType() == TypeTime)
            layout.sTime = field.GetTemplate();
    }
    return layout;
}

// Stamps that move depend on each other, and so do those of two columns of a type.
bool RowPlan::IsPlannable() const
{
    const auto isRead = [this](ULONG nField) {
        const unsigned uiType = nField < m_layout.types.size() ? m_layout.types[nField] : kNoType;
        return uiType == TypeDate || uiType == TypeTime || uiType == TypeSymbol ||
               IsPriceType(uiType) || IsWholeType(uiType);
    };
    return !m_layout.bMovesToBarEnd && m_layout.types.size() <= PlainRecord::kMaxFields &&
           std::ranges::count(m_layout.types, TypeDate) == 1 &&
           std::ranges::count(m_layout.types, TypeTime) <= 1 &&
           std::ranges::all_of(m_layout.fields, isRead);
}

bool RowPlan::Prepare(const ParserState& state, std::span<const ULONG> fields,
                      const Multipliers& multipliers)
{
    m_pState = &state;
    m_multipliers = multipliers;
    Layout layout = LayoutOf(state, fields);
    if (layout != m_layout) {
        m_bPlanned = false;
        m_layout = std::move(layout);
        if (IsPlannable()) {
            Compile();
            m_bPlanned = true;
        }
    }
    return m_bPlanned;
}

RowPlan::Kind RowPlan::KindOf(unsigned uiType)
{
    switch (uiType) {
    case TypeSymbol:
        return Kind::Symbol;
    case TypeDate:
        return Kind::Date;
    case TypeTime:
        return Kind::Time;
    default:
        return IsPriceType(uiType)    ? Kind::Price
               : IsVolumeType(uiType) ? Kind::Volume
                                      : Kind::Whole;
    }
}

void RowPlan::Compile()
{
    m_steps.clear();
    for (const ULONG nField : m_layout.fields)
        m_steps.push_back({KindOf(m_layout.types[nField]), static_cast<std::uint8_t>(nField)});
    m_bSymbols = std::ranges::count(m_steps, Kind::Symbol, &Step::kind) != 0;
    m_nDate = m_pState->Index(TypeDate);
    m_nTime = m_pState->Index(TypeTime);
    m_nFilled = m_layout.types.size();
    m_dateColumn = m_pState->m_fields[m_nDate];
    if (m_nTime != kNoColumn)
        m_timeColumn = m_pState->m_fields[m_nTime];
    m_dates = KnownTexts(8);
    m_times = KnownTexts(11);
    m_record.SetDividers(m_layout.dividers);
}

// ---- reading

bool RowPlan::ReadMoment(std::string_view sRecord, DATE& moment)
{
    if (!m_record.Take(sRecord, m_nFilled) || !ReadDate(m_date))
        return false;
    moment = m_date;
    if (m_nTime == kNoColumn)
        return true;
    if (!ReadTime(m_time))
        return false;
    moment += m_time;
    return true;
}

bool RowPlan::ReadDate(DATE& date)
{
    const std::string_view sText = m_record.Field(m_nDate);
    return ReadKnown(m_dates, sText, date, [&] {
        return ReadByColumn(m_dateColumn, sText) && DayNumber(m_dateColumn) &&
               ValueOf(m_dateColumn, date);
    });
}

bool RowPlan::ReadTime(DATE& time)
{
    const std::string_view sText = m_record.Field(m_nTime);
    return ReadKnown(m_times, sText, time, [&] {
        return ReadByColumn(m_timeColumn, sText) && m_timeColumn.HourOfDay() < kHourOfNextDay &&
               ValueOf(m_timeColumn, time);
    });
}

// Symbols come after the others, so that nothing is allocated for a row that isn't read to its end.
// Multipliers come last: they may count what they are given.
bool RowPlan::ReadRow(VARIANT* row)
{
    VARIANT* cell = row;
    for (const Step step : m_steps)
        if (!ReadValue(*cell++, step))
            return false;
    if (m_bSymbols && !WriteSymbols(row))
        return false;
    if (m_multipliers.pPrice || m_multipliers.pVolume)
        Multiply(row);
    return true;
}

bool RowPlan::ReadValue(VARIANT& cell, Step step) const
{
    switch (step.kind) {
    case Kind::Symbol:
        return true; // WriteSymbols
    case Kind::Date:
    case Kind::Time:
        cell.vt = VT_DATE;
        cell.date = step.kind == Kind::Date ? m_date : m_time;
        return true;
    case Kind::Price:
        cell.vt = VT_R8;
        return ReadPrice(m_record.Field(step.nField), cell.dblVal);
    default:
        cell.vt = VT_I8;
        return ReadWhole(m_record.Field(step.nField), cell.llVal);
    }
}

string_view_t RowPlan::Text(std::size_t nField)
{
    m_sText.clear();
    AppendAscii(m_record.Field(nField), m_sText);
    return m_sText;
}

bool RowPlan::WriteSymbols(VARIANT* row)
try {
    for (std::size_t k = 0; k < m_steps.size(); ++k)
        if (m_steps[k].kind == Kind::Symbol)
            row[k] = Variant::FromText(Text(m_steps[k].nField)).detach();
    return true;
} catch (const std::bad_alloc&) {
    for (std::size_t k = 0; k < m_steps.size(); ++k)
        VariantClear(&row[k]);
    return false;
}

void RowPlan::Multiply(VARIANT* row) const
{
    for (std::size_t k = 0; k < m_steps.size(); ++k)
        if (m_multipliers.pPrice && m_steps[k].kind == Kind::Price)
            m_multipliers.pPrice->ApplyTransform(&row[k]);
        else if (m_multipliers.pVolume && m_steps[k].kind == Kind::Volume)
            m_multipliers.pVolume->ApplyTransform(&row[k]);
}

bool RowPlan::IsGoodStep(DATE fStep) const
{
    return m_pState->m_nResolution > ResolutionNone &&
           m_pState->m_nResolution < RESOLUTIONS_COUNT && fStep >= 0 &&
           !BreaksResolution(*m_pState, fStep);
}

} // namespace Hesperon::specifics
