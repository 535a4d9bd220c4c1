// What a run copies from its data parser when it starts, so that it needn't ask again.
#pragma once

#include <algorithm>
#include <optional>
#include <vector>

#include "platform/values.h"
#include "src/data/DateWithStatus.h"
#include "src/data/LineRule.h"

namespace Hesperon::specifics {

struct RunSettings
{
    LineRule lines;
    ULONG nLocale = 0;                 // code page number
    DateWithStatus dtStart, dtEnd;     // range of records to deliver, inclusive
    Bstr sSymbolName;                  // null or empty: all symbols
    ULONG nSymbolField = 0;            // kNoField: the file has no symbols
    std::vector<ULONG> arFieldIndices; // field of each delivered column
};

// A part of the file, by positions. It outlasts the run that it was given for: later runs of
// that parser, and of its clones, stop where it ends.
struct RunPortion
{
    bool bPortion = false;
    ULONGLONG nStart = 0, nCount = 0;

    ULONGLONG StartPosition() const { return bPortion ? nStart : 0; }

    // Whether a run has no record after this one. The end of a whole file that runs forwards
    // shows only when a record can't be read.
    bool EndsAt(ULONGLONG nPosition, const LineRule& lines) const
    {
        const auto nLast = LastPosition(lines);
        return nLast && nPosition == *nLast;
    }

    // Steps from a position on to the last one; kEndless where the run doesn't know it or is past
    // it.
    static constexpr ULONGLONG kEndless = ~0ull;
    ULONGLONG StepsLeft(ULONGLONG nPosition, const LineRule& lines) const
    {
        const auto nLast = LastPosition(lines);
        return nLast && *nLast >= nPosition && *nLast - nPosition != kEndless
                   ? *nLast - nPosition + 1
                   : kEndless;
    }

private:
    std::optional<ULONGLONG> LastPosition(const LineRule& lines) const
    {
        const ULONGLONG nLastInverted = lines.LastInvertedPosition();
        if (!bPortion)
            return lines.bInvertedDirection ? std::optional(nLastInverted) : std::nullopt;
        const ULONGLONG nLast = nCount + nStart - 1;
        return lines.bInvertedDirection ? std::min(nLast, nLastInverted) : nLast;
    }
};

} // namespace Hesperon::specifics
