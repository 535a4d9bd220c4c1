// The operations of CLastRecordOf, for the sources that instantiate it.
#pragma once

#include "src/files/FileLinesImpl.h"
#include "src/files/LastRecord.h"

namespace Hesperon::specifics {

template <class Data>
auto CLastRecordOf<Data>::Find(CFileLinesOf<Data>& lines) -> SPlace
{
    if (!m_found) {
        SLine line = LineBefore(lines, StepBack(lines, lines.Size()));
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
auto CLastRecordOf<Data>::LineBefore(CFileLinesOf<Data>& lines, ULONGLONG nPos) -> SLine
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
    const SPlace place{nPos, std::max(nPos, nEnd)};
    return {place, nLineEnd, lines.IsValidRecord(place.nStart, place.nEnd)};
}

template <class Data>
ULONGLONG CLastRecordOf<Data>::StepBack(const CFileLinesOf<Data>& lines, ULONGLONG nPos)
{
    return nPos < lines.CharSize() ? 0 : nPos - lines.CharSize();
}

// The first step back from nPos that is below nEnd, or 0.
template <class Data>
ULONGLONG CLastRecordOf<Data>::StepBefore(const CFileLinesOf<Data>& lines, ULONGLONG nPos,
                                          ULONGLONG nEnd)
{
    if (nPos < nEnd)
        return nPos;
    const ULONGLONG nDistance = ((nPos - nEnd) / lines.CharSize() + 1) * lines.CharSize();
    return nPos < nDistance ? 0 : nPos - nDistance;
}

} // namespace Hesperon::specifics
