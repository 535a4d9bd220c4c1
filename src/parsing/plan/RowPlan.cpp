// The record is cut into fields once. Date and time are looked up among the texts that the columns
// had before; a new text goes through a copy of its column, by the same template and rules as in
// the general way. Prices and whole numbers are digits that fit 53 and 63 bits, with a sign and a
// point at most. All else is left to the general way: a symbol that can't be allocated, an hour of
// 24, which rolls the date, a day that the calendar lacks, a cell of another form.

#include "src/parsing/plan/RowPlan.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cmath>
#include <cstring>
#include <new>

#include "platform/text/AsciiText.h"
#include "platform/values.h"
#include "src/parsing/ColumnParsing.h"
#include "src/parsing/templates/NumberText.h"
#include "src/values/IKeepsValues.h"

namespace Hesperon::specifics {

static_assert(std::endian::native == std::endian::little);

namespace {

constexpr LONGLONG kHourOfNextDay = 24;

constexpr bool IsMark(char c)
{
    return c == '.' || c == ',';
}

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

    // False where there is anything else, or too much for the type. PlainRecord::kPadding bytes
    // behind the text must be readable.
    bool Read(std::string_view sText)
    {
        return sText.size() <= 8 ? ReadWord(sText) : ReadLong(sText);
    }

private:
    // All at once, in a word whose highest byte is the last character. A byte that isn't a digit's
    // value sets its highest bit when 0x76 is added; the only one may be a mark, over which the
    // bytes before it close up. Then neighbours are summed up in pairs, fours and eights.
    bool ReadWord(std::string_view sText)
    {
        constexpr std::uint64_t kZeros = 0x3030303030303030;
        if (sText.empty())
            return false;
        const unsigned nFree = 64 - 8 * static_cast<unsigned>(sText.size());
        std::uint64_t word;
        std::memcpy(&word, sText.data(), sizeof word);
        word = (word << nFree) ^ (nFree == 0 ? kZeros : kZeros << nFree);
        const std::uint64_t odd = ((word + 0x7676767676767676) | word) & 0x8080808080808080;
        nCount = sText.size();
        if (odd != 0) {
            const unsigned nMark = static_cast<unsigned>(std::countr_zero(odd)) & ~7u; // its bit
            if ((odd & (odd - 1)) != 0 || !IsMark(sText[(nMark - nFree) / 8]))
                return false;
            const std::uint64_t before = (std::uint64_t{1} << nMark) - 1;
            word = (word & ~before & ~(std::uint64_t{0xFF} << nMark)) | (word & before) << 8;
            nScale = 7 - nMark / 8;
            --nCount;
        }
        word = word * 10 + (word >> 8);
        constexpr std::uint64_t kPairs = 0x000000FF000000FF;
        nDigits =
            ((word & kPairs) * 0x000F424000000064 + ((word >> 16) & kPairs) * 0x0000271000000001) >>
            32;
        return nCount != 0;
    }

    bool ReadLong(std::string_view sText)
    {
        constexpr std::size_t kSafe = 18;
        const char* p = sText.data();
        const char* const pEnd = p + sText.size();
        const char* pMark = nullptr;
        for (; p != pEnd; ++p) {
            if (IsDigitByte(*p)) {
                nDigits = nDigits * 10 + static_cast<std::uint64_t>(*p - '0');
            } else if (!pMark && IsMark(*p)) {
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

constexpr std::array<std::uint64_t, 19> kPowers = [] {
    std::array<std::uint64_t, 19> powers{1};
    for (std::size_t n = 1; n < powers.size(); ++n)
        powers[n] = 10 * powers[n - 1];
    return powers;
}();

bool ReadPrice(std::string_view sText, double& value)
{
    const bool bSign = sText.front() == '-' || sText.front() == '+';
    DecimalDigits decimal;
    if (!decimal.Read(sText.substr(bSign)) || decimal.nDigits > kMaxExactMantissa)
        return false;
    const double quotient = ExactQuotient(decimal.nDigits, decimal.nScale);
    value = sText.front() == '-' ? -quotient : quotient;
    return true;
}

// A fraction of nothing but zeros is left out.
bool ReadWhole(std::string_view sText, LONGLONG& value)
{
    DecimalDigits decimal;
    if (!decimal.Read(sText))
        return false;
    const std::uint64_t nUnit = kPowers[decimal.nScale];
    if (nUnit != 1 && decimal.nDigits % nUnit != 0)
        return false;
    value = static_cast<LONGLONG>(nUnit == 1 ? decimal.nDigits : decimal.nDigits / nUnit);
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
    for (const CDataField& field : state.m_fields) {
        layout.types.push_back(field.GetType());
        if (field.GetType() == TypeDate)
            layout.sDate = field.GetTemplate();
        else if (field.GetType() == TypeTime)
            layout.sTime = field.GetTemplate();
    }
    return layout;
}

// Two columns of a type depend on each other.
bool RowPlan::IsPlannable() const
{
    const auto isRead = [this](ULONG nField) {
        const unsigned uiType = nField < m_layout.types.size() ? m_layout.types[nField] : kNoType;
        return uiType == TypeDate || uiType == TypeTime || uiType == TypeSymbol ||
               IsPriceType(uiType) || IsWholeType(uiType);
    };
    return m_layout.types.size() <= PlainRecord::kMaxFields &&
           std::ranges::count(m_layout.types, TypeDate) == 1 &&
           std::ranges::count(m_layout.types, TypeTime) <= 1 &&
           std::ranges::all_of(m_layout.fields, isRead);
}

bool RowPlan::Prepare(const ParserState& state, std::span<const ULONG> fields,
                      const Multipliers& multipliers)
{
    m_pState = &state;
    m_multipliers = {ChangesValues(multipliers.pPrice) ? multipliers.pPrice : nullptr,
                     ChangesValues(multipliers.pVolume) ? multipliers.pVolume : nullptr};
    m_bMovesToBarEnd = MovesToBarEnd(state);
    m_bChecksSteps =
        state.m_nResolution > ResolutionNone && state.m_nResolution < RESOLUTIONS_COUNT;
    if (m_bChecksSteps)
        m_stepRule = StepRuleOf(state);
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
    m_dates = {};
    m_times = {};
    m_record.SetDividers(m_layout.dividers);
}

// ---- reading

bool RowPlan::ReadMoment(std::string_view sRecord, DATE& moment)
{
    if (!m_record.Take(sRecord, m_nFilled) || !ReadDate(m_date))
        return false;
    const bool bTime = m_nTime != kNoColumn;
    if (bTime && !ReadTime(m_time))
        return false;
    if (m_bMovesToBarEnd)
        MoveToBarEnd();
    moment = bTime ? m_date + m_time : m_date;
    return true;
}

// By the same operations in the same order as in the general way, since they round.
void RowPlan::MoveToBarEnd()
{
    const bool bTime = m_nTime != kNoColumn;
    const DATE sum = BarEnd(*m_pState, bTime ? m_date + m_time : m_date);
    m_date = std::trunc(sum);
    m_time = sum - m_date;
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

} // namespace Hesperon::specifics
