// ReshapedRows: delivered rows as they leave the tool: a cell with a name in front of each, if
// there is one, and the numbers of some columns scaled by powers of ten.
//
// A price becomes the double that is nearest to the exact product or quotient, and keeps its
// digits. A whole number loses its fraction, or what lies beyond 64 bits, and the rows in which
// that happens are counted. Whole numbers that were decimals before they were read are decimals
// again. Used by one thread.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "platform/values.h"

namespace tabulex {

// The value times 10 to the power of nExponent, which lies between -6 and 6.
double TimesPowerOfTen(double value, int nExponent);

// The number with so many of its last digits behind the point: the double that is nearest to it.
double WithDecimals(LONGLONG value, int nDecimals);

class ReshapedRows
{
public:
    // An exponent for each delivered column, 0 where it is left as it is, and how many digits of
    // its whole numbers are decimals.
    ReshapedRows(std::vector<int> exponents, std::vector<int> decimals,
                 const std::optional<std::string>& sName);

    // Of a row as it is delivered.
    std::size_t Columns() const { return m_exponents.size(); }

    // Row after row, with the name's cell in front of each. The rows are good until the next call,
    // and no longer than the cells that they were made of.
    const VARIANT* Of(const VARIANT* cells, ULONGLONG nRows);

    // In all rows so far.
    ULONGLONG CutRows() const { return m_nCut; }           // a fraction was cut off
    ULONGLONG OverflowRows() const { return m_nOverflow; } // a product is beyond 64 bits

private:
    bool ChangesNothing() const;
    void AppendRow(const VARIANT* cells);
    void ScaleWhole(LONGLONG& value, int nExponent);

    std::vector<int> m_exponents;
    std::vector<int> m_decimals;
    std::vector<VARIANT> m_rows; // their texts belong to the cells, and to m_sName
    Bstr m_sName;                // null for none
    ULONGLONG m_nCut = 0;
    ULONGLONG m_nOverflow = 0;
    bool m_bCut = false; // of the row at hand, as is the next
    bool m_bOverflow = false;
};

} // namespace tabulex
