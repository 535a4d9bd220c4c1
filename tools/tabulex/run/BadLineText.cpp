#include "tools/tabulex/run/BadLineText.h"

#include "tools/tabulex/host/Properties.h"
#include "tools/tabulex/run/ConversionSink.h"

namespace tabulex {

BadLineText::BadLineText(const Host& host)
    : m_lines(host.LineReader()),
      m_bInverted(GetFlag(host.Data(), &IDataParser::get_InvertedDirection)),
      m_nLinesBefore(Get(host.Data(), &IDataParser::get_HeaderOffset) +
                     (GetFlag(host.Data(), &IDataParser::get_HasHeader) ? 1u : 0u))
{}

// The component's number is that of the position before, which in a file that is read
// backwards is the line after.
std::string BadLineText::Of(ULONGLONG nLine, ULONGLONG nBatchStart)
{
    const bool bShifted = m_bInverted && IsInPartlyFilledBatch(nBatchStart);
    const ULONGLONG nAt = nLine - (bShifted ? 2 : 1);
    if (m_lines->put_Position(nAt) != S_OK)
        return {};
    return ToUtf8(GetText(*m_lines.get(), &IDataParser::get_CurrentRecord));
}

bool BadLineText::IsInPartlyFilledBatch(ULONGLONG nBatchStart)
{
    ULONGLONG nLines = 0;
    VARIANT_BOOL bComplete = VARIANT_FALSE;
    m_lines->GetCount(&nLines, &bComplete);
    return nLines - m_nLinesBefore - nBatchStart < kBatchLines;
}

} // namespace tabulex
