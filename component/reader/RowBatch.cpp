// The range and the symbol are looked at here, not left to the component: that ends a run at the
// first record behind the range, which in a file of several symbols isn't the last one within it,
// and lets the first record of a file pass whatever its symbol.

#include "component/reader/RowBatch.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <iterator>
#include <limits>

#include "component/reader/ReadFailure.h"
#include "interfaces/FieldsAndResolutions.h"
#include "platform/values.h"
#include "src/values/LockedArray.h"

namespace Hesperon::reader {

using namespace IQRL_TabulexConverter;

namespace {

constexpr std::uint32_t kWholeLine = 0xFFFFFFFF;

constexpr std::array<LONGLONG, 7> kPowers = {1, 10, 100, 1000, 10'000, 100'000, 1'000'000};

LONGLONG PowerOfTen(int nPower)
{
    return kPowers[static_cast<std::size_t>(std::abs(nPower))];
}

} // namespace

void RowBatch::AddBad(LONG_PTR nLine, LONG nField, std::string sMessage)
{
    const std::string& kept = m_messages.emplace_back(std::move(sMessage));
    const bool bWhole = nField == kWholeRecord || nField < 1;
    m_bad.push_back({static_cast<std::uint64_t>(nLine),
                     bWhole ? kWholeLine : static_cast<std::uint32_t>(nField - 1),
                     {kept.data(), kept.size()}});
}

void RowBatch::ShiftBad()
{
    for (auto& bad : m_bad)
        --bad.line;
}

bool RowBatch::AddRows(SAFEARRAY& array, const std::vector<LONG>& types, ULONGLONG nLines)
{
    if (SafeArrayGetDim(&array) != 2 || array.rgsabound[1].cElements != types.size())
        return false;
    const std::size_t nRows = array.rgsabound[0].cElements;
    if (nRows != 0) {
        const specifics::LockedArray<VARIANT> cells(&array);
        if (FAILED(cells.Result()))
            return false;
        m_cells.reserve(nRows * types.size());
        for (std::size_t i = 0; i < nRows; ++i)
            AddRow(cells.Data() + i * types.size(), types);
    }
    m_counts.lines = nLines;
    m_counts.delivered = m_nRows;
    m_counts.bad = m_bad.size();
    // The component has left the others out without a word.
    m_counts.other_symbols += nLines - std::min<ULONGLONG>(nLines, nRows + m_bad.size());
    return true;
}

tabulex::detail::BatchRow RowBatch::View() const
{
    return {m_cells.data(), m_nRows, m_sTexts.data(), m_bad.data(), m_bad.size()};
}

bool RowBatch::IsWanted(const VARIANT* row, const std::vector<LONG>& types)
{
    double moment = 0;
    for (std::size_t k = 0; k < types.size(); ++k) {
        if (types[k] == TypeDate || types[k] == TypeTime)
            moment += row[k].date;
        const bool bOther = types[k] == TypeSymbol && !m_rules.sSymbol.empty() &&
                            TextOf(row[k].bstrVal) != m_rules.sSymbol;
        if (bOther)
            return ++m_counts.other_symbols, false;
    }
    if (!m_rules.nFrom && !m_rules.nTo)
        return true;
    const LONGLONG nAt = MillisecondsOf(moment);
    const bool bInRange =
        (!m_rules.nFrom || nAt >= *m_rules.nFrom) && (!m_rules.nTo || nAt <= *m_rules.nTo);
    m_counts.out_of_range += !bInRange;
    return bInRange;
}

void RowBatch::AddRow(const VARIANT* row, const std::vector<LONG>& types)
{
    if (!IsWanted(row, types))
        return;
    for (std::size_t k = 0; k < types.size(); ++k)
        m_cells.push_back(CellOf(row[k], types[k]));
    ++m_nRows;
}

RowBatch::Cell RowBatch::CellOf(const VARIANT& value, LONG nType)
{
    constexpr LONGLONG kMillisecondsPerDay = 86'400'000;
    if (nType == TypeSymbol)
        return TextCell(TextOf(value.bstrVal));
    Cell cell{};
    if (nType == TypeDate)
        cell.number = MillisecondsOf(std::floor(value.date)) / kMillisecondsPerDay;
    else if (nType == TypeTime)
        cell.number = std::llround(value.date * static_cast<double>(kMillisecondsPerDay));
    else if (IsPriceType(static_cast<unsigned>(nType)))
        cell.price = Price(value.dblVal);
    else if (IsVolumeType(static_cast<unsigned>(nType)))
        cell.number = Volume(value.llVal);
    else
        cell.number = value.llVal;
    return cell;
}

RowBatch::Cell RowBatch::TextCell(string_view_t text)
{
    if (text == m_sLastText)
        return m_lastText;
    const std::string utf8 = ToUtf8(text);
    m_sLastText = text;
    m_lastText.text = {static_cast<std::uint32_t>(m_sTexts.size()),
                       static_cast<std::uint32_t>(utf8.size())};
    m_sTexts += utf8;
    return m_lastText;
}

// The price that the file has is a decimal, and so is the scaled one: a division of binary numbers
// may miss the one that is nearest to it, so the exponent of the text is moved.
double RowBatch::Price(double price) const
{
    if (m_rules.nPricePower == 0 || !std::isfinite(price))
        return price;
    char text[64];
    char* const pEnd =
        std::to_chars(text, std::end(text), price, std::chars_format::scientific).ptr;
    char* const pExponent = std::find(text, pEnd, 'e') + 1;
    int nExponent = 0;
    std::from_chars(pExponent + (*pExponent == '+'), pEnd, nExponent);
    char* const pScaled =
        std::to_chars(pExponent, std::end(text), nExponent + m_rules.nPricePower).ptr;
    double scaled = price;
    std::from_chars(text, pScaled, scaled);
    return scaled;
}

LONGLONG RowBatch::Volume(LONGLONG nVolume)
{
    const LONGLONG nFactor = PowerOfTen(m_rules.nVolumePower);
    if (m_rules.nVolumePower < 0) {
        m_counts.cut_volumes += nVolume % nFactor != 0;
        return nVolume / nFactor;
    }
    constexpr LONGLONG kMost = std::numeric_limits<LONGLONG>::max();
    if (std::abs(nVolume) <= kMost / nFactor)
        return nVolume * nFactor;
    ++m_counts.cut_volumes;
    return nVolume < 0 ? -kMost : kMost;
}

} // namespace Hesperon::reader
