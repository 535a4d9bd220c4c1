#include "tools/tabulex/BadLineText.h"

#include <algorithm>

#include "tools/tabulex/Properties.h"

namespace tabulex {

namespace {

constexpr ULONGLONG kBatchLines = 1000; // as the component gathers them

} // namespace

BadLineText::BadLineText(const Host& host, const std::optional<Portion>& portion)
    : m_lines(host.LineReader()), m_portion(portion),
      m_bInverted(GetFlag(host.Data(), &IDataParser::get_InvertedDirection)),
      m_nLinesBefore(Get(host.Data(), &IDataParser::get_HeaderOffset) +
                     (GetFlag(host.Data(), &IDataParser::get_HasHeader) ? 1u : 0u))
{}

std::string BadLineText::Of(ULONGLONG nLine, ULONGLONG nBatchStart)
{
    ULONGLONG nAt = nLine - 1;
    // One position earlier is one line further down where the file is read backwards.
    if (IsShifted(nBatchStart))
        nAt += m_bInverted ? ULONGLONG(-1) : 1;
    if (m_lines->put_Position(nAt) != S_OK)
        return {};
    return ToUtf8(GetText(*m_lines.get(), &IDataParser::get_CurrentRecord));
}

// Full batches are numbered rightly; so is the last one of a run that ends by failing
// to read another line.
bool BadLineText::IsShifted(ULONGLONG nBatchStart)
{
    if (!m_bInverted && !m_portion)
        return false;
    const auto nLast = LastPosition();
    return nLast && *nLast + 1 - nBatchStart < kBatchLines;
}

// Found when first wanted: it may take a walk to the end of the portion.
std::optional<ULONGLONG> BadLineText::LastPosition()
{
    if (!m_bLastKnown)
        m_nLast = FindLastPosition();
    m_bLastKnown = true;
    return m_nLast;
}

// A portion that reaches behind the file ends as a whole run does.
std::optional<ULONGLONG> BadLineText::FindLastPosition()
{
    const ULONGLONG nWanted = m_portion ? m_portion->nStart + m_portion->nCount - 1 : ~0ULL;
    if (!m_bInverted)
        return m_lines->put_Position(nWanted + m_nLinesBefore) == S_OK ? std::optional(nWanted)
                                                                       : std::nullopt;
    ULONGLONG nLines = 0;
    VARIANT_BOOL bComplete = VARIANT_FALSE;
    m_lines->GetCount(&nLines, &bComplete);
    return std::min(nWanted, nLines - m_nLinesBefore - 1);
}

} // namespace tabulex
