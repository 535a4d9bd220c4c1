// RowReview: looks through the rows that a run delivers for what can't be.
//
// Bars whose high is below their low, prices of 0 among others, numbers that the component could
// only cut, moments that come twice or don't fit the bars' size. A batch costs a few operations on
// whole numbers a row. Used by one thread.
#pragma once

#include <array>
#include <string>
#include <vector>

#include "tools/tabulex/account/Warnings.h"
#include "tools/tabulex/host/Host.h"
#include "tools/tabulex/output/Column.h"

namespace tabulex {

class RowReview
{
public:
    // Of rows with these columns, under the host's resolution.
    RowReview(const Host& host, const std::vector<Column>& columns);

    // Rows as they are delivered: row after row, each with its cells side by side.
    void Take(const VARIANT* cells, ULONGLONG nRows);
    // After the last row: warns of what was found, and notes gaps for those who want to know all.
    void End(Warnings& warnings, Console& console, const std::string& file) const;

private:
    enum What
    {
        ImpossibleBar,
        ZeroPrice,
        NoNumber,  // a price beyond the largest double
        Saturated, // a whole number beyond 64 bits
        NoStep,    // since the row before
        Twice,     // the moment of the row before
        Gap,       // within a day
        kKinds
    };
    struct Finding
    {
        ULONGLONG nRows = 0;
        LONGLONG nMoment = 0; // of the first, in milliseconds since 1899-12-30
    };
    using Place = std::size_t; // of a cell in its row, or kNoPlace

    LONGLONG MomentOf(const VARIANT* cells) const;
    void TakeMoments(const VARIANT* cells, ULONGLONG nRows);
    void TakeMoment(LONGLONG nMoment);
    bool HasOtherSymbol(const VARIANT* cells) const;
    bool AreUsual(const VARIANT* cells, ULONGLONG nRows) const;
    bool AreUsualBars(const VARIANT* cells, ULONGLONG nRows) const;
    void TakeBar(const VARIANT* cells);
    void TakePrices(const VARIANT* cells);
    void TakeNumbers(const VARIANT* cells);
    void Found(What what, LONGLONG nMoment);
    void Say(What what, std::string_view code, std::string_view text, Warnings& warnings) const;

    std::vector<Place> m_prices, m_wholes;
    std::vector<Place> m_others;  // prices that don't belong to a bar
    std::array<Place, 4> m_bar{}; // open, high, low, close
    Place m_date, m_time, m_symbol;
    std::size_t m_nColumns;
    bool m_bBars;         // with high and low
    bool m_bMoments;      // each moment comes once
    LONGLONG m_nStep = 0; // milliseconds from a bar to the next; 0 for any
    ULONGLONG m_nRows = 0;
    LONGLONG m_nMoment = -1; // of the row before
    string_t m_sSymbol;      // the same
    std::array<Finding, kKinds> m_findings{};
};

} // namespace tabulex
