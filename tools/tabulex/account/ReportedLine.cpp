#include "tools/tabulex/account/ReportedLine.h"

#include "tools/tabulex/host/Properties.h"

namespace tabulex {

ReportedLine::ReportedLine(const Host& host, LineMap& lines)
    : m_lines(lines), m_bInverted(GetFlag(host.Data(), &IDataParser::get_InvertedDirection)),
      m_nLinesBefore(Get(host.Data(), &IDataParser::get_HeaderOffset) +
                     (GetFlag(host.Data(), &IDataParser::get_HasHeader) ? 1u : 0u))
{}

ULONGLONG ReportedLine::PlaceOf(ULONGLONG nReported, ULONGLONG nBatchStart)
{
    if (!m_bInverted)
        return nReported - 1;
    const ULONGLONG nLeft = m_lines.Tally().nContent - m_nLinesBefore - nBatchStart;
    return nReported - (nLeft < kBatchLines ? 2 : 1);
}

} // namespace tabulex
