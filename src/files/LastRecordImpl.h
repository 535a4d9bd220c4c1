// The operations of LastRecordOf, for the sources that instantiate it.
#pragma once

#include "src/files/FileLinesImpl.h"
#include "src/files/LastRecord.h"

namespace Hesperon::specifics {

template <class Data>
auto LastRecordOf<Data>::Find(FileLinesOf<Data>& lines) -> LinePlace
{
    if (!m_found) {
        FoundLine line = LineBefore(lines, StepBack(lines, lines.Size()));
        while (!line.bRecord && line.nLineEnd != 0)
            line = LineBefore(lines, line.nLineEnd);
        m_found = line;
    }
    FaultmereUtil::Assert(m_found->bRecord,
                          "IsValidRecord(_nNextPos, nPrevPos + (is_unicode ? 2 : 1))");
    FaultmereUtil::Assert(m_found->place.nEnd >= m_found->nLineEnd, "nPrevPos >= nNextPos");
    return m_found->place;
}

template <class Data>
auto LastRecordOf<Data>::LineBefore(FileLinesOf<Data>& lines, ULONGLONG nPos) -> FoundLine
{
    using LineBytes::Is;
    while (nPos != 0 && Is(lines.At(nPos), LineBytes::kLead))
        nPos = StepBack(lines, nPos);
    const ULONGLONG nLast = nPos;
    const ULONGLONG nEnd = lines.EndWithoutZeros(0, nLast + lines.CharSize());
    nPos = StepBefore(lines, nPos, nEnd);
    while (nPos != 0 && !Is(lines.At(nPos), LineBytes::kLineEnd))
        nPos = StepBack(lines, nPos);
    const ULONGLONG nLineEnd = nPos;
    while (nPos != nLast && Is(lines.At(nPos), LineBytes::kLead))
        nPos = std::min(nPos + lines.CharSize(), nLast);
    const LinePlace place{nPos, std::max(nPos, nEnd)};
    return {place, nLineEnd, lines.IsValidRecord(place.nStart, place.nEnd)};
}

template <class Data>
ULONGLONG LastRecordOf<Data>::StepBack(const FileLinesOf<Data>& lines, ULONGLONG nPos)
{
    return nPos < lines.CharSize() ? 0 : nPos - lines.CharSize();
}

// The first step back from nPos that is below nEnd, or 0.
template <class Data>
ULONGLONG LastRecordOf<Data>::StepBefore(const FileLinesOf<Data>& lines, ULONGLONG nPos,
                                         ULONGLONG nEnd)
{
    if (nPos < nEnd)
        return nPos;
    const ULONGLONG nDistance = ((nPos - nEnd) / lines.CharSize() + 1) * lines.CharSize();
    return nPos < nDistance ? 0 : nPos - nDistance;
}

} // namespace Hesperon::specifics
