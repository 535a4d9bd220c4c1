// A decimal fraction has no double of its own, so a product of doubles may miss the double that is
// nearest to the product of the decimals. A whole number that a double holds has no such error: its
// product is whole again, and its quotient is rounded once. Any other number is written in the
// fewest digits that read back to it, which are those of the file, and read again with another
// exponent.

#include "tools/tabulex/output/ReshapedRows.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstring>
#include <limits>

#include "tools/tabulex/text/Text.h"

namespace tabulex {

namespace {

constexpr LONGLONG kPowers[] = {1, 10, 100, 1000, 10000, 100000, 1000000};
constexpr double kMostExact = 9007199254.0; // times a million it is still below 2^53

double ShiftedDecimal(double value, int nExponent)
{
    char text[64];
    const auto written =
        std::to_chars(text, text + sizeof text - 8, value, std::chars_format::scientific);
    char* mark = std::find(text, written.ptr, 'e');
    int nOld = 0;
    std::from_chars(mark[1] == '+' ? mark + 2 : mark + 1, written.ptr, nOld);
    const char* end = std::to_chars(mark + 1, text + sizeof text, nOld + nExponent).ptr;
    double result = value;
    std::from_chars(text, end, result);
    return result;
}

} // namespace

double TimesPowerOfTen(double value, int nExponent)
{
    if (nExponent == 0 || value == 0 || !std::isfinite(value))
        return value;
    if (std::fabs(value) <= kMostExact && value == std::trunc(value)) {
        const auto power = static_cast<double>(kPowers[std::abs(nExponent)]);
        return nExponent > 0 ? value * power : value / power;
    }
    return ShiftedDecimal(value, nExponent);
}

// The text of a whole number with an exponent is read as any decimal is.
double WithDecimals(LONGLONG value, int nDecimals)
{
    char text[64];
    char* mark = std::to_chars(text, text + sizeof text, value).ptr;
    *mark++ = 'e';
    const char* end = std::to_chars(mark, text + sizeof text, -nDecimals).ptr;
    double result = 0;
    std::from_chars(text, end, result);
    return result;
}

ReshapedRows::ReshapedRows(std::vector<int> exponents, std::vector<int> decimals,
                           const std::optional<std::string>& sName)
    : m_exponents(std::move(exponents)), m_decimals(std::move(decimals))
{
    if (sName)
        m_sName = Bstr(FromUtf8(*sName));
}

bool ReshapedRows::ChangesNothing() const
{
    const auto isZero = [](int n) { return n == 0; };
    return !m_sName && std::ranges::all_of(m_exponents, isZero) &&
           std::ranges::all_of(m_decimals, isZero);
}

const VARIANT* ReshapedRows::Of(const VARIANT* cells, ULONGLONG nRows)
{
    if (ChangesNothing())
        return cells;
    m_rows.clear();
    for (ULONGLONG i = 0; i < nRows; ++i)
        AppendRow(cells + i * m_exponents.size());
    return m_rows.data();
}

void ReshapedRows::AppendRow(const VARIANT* cells)
{
    if (m_sName) {
        VARIANT name{};
        name.vt = VT_BSTR;
        name.bstrVal = m_sName.get();
        m_rows.push_back(name);
    }
    m_bCut = m_bOverflow = false;
    for (std::size_t n = 0; n < m_exponents.size(); ++n) {
        VARIANT& cell = m_rows.emplace_back(cells[n]);
        if (m_decimals[n] != 0 && cell.vt == VT_I8) {
            cell.dblVal = WithDecimals(cell.llVal, m_decimals[n]);
            cell.vt = VT_R8;
        }
        if (m_exponents[n] != 0 && cell.vt == VT_R8)
            cell.dblVal = TimesPowerOfTen(cell.dblVal, m_exponents[n]);
        else if (m_exponents[n] != 0 && cell.vt == VT_I8)
            ScaleWhole(cell.llVal, m_exponents[n]);
    }
    m_nCut += m_bCut ? 1 : 0;
    m_nOverflow += m_bOverflow ? 1 : 0;
}

void ReshapedRows::ScaleWhole(LONGLONG& value, int nExponent)
{
    const LONGLONG nPower = kPowers[std::abs(nExponent)];
    if (nExponent < 0) {
        m_bCut = m_bCut || value % nPower != 0;
        value /= nPower;
        return;
    }
    using Limits = std::numeric_limits<LONGLONG>;
    LONGLONG product = 0;
    const bool bOverflow = __builtin_mul_overflow(value, nPower, &product);
    m_bOverflow = m_bOverflow || bOverflow;
    value = !bOverflow ? product : value < 0 ? Limits::min() : Limits::max();
}

} // namespace tabulex
