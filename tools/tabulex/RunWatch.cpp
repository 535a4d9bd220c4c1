#include "tools/tabulex/RunWatch.h"

namespace tabulex {

namespace {

constexpr ULONGLONG kPlacedLines = 1024; // every so many lines have a known place

} // namespace

RunWatch::RunWatch(com_ptr<IDataParser> lines, const ConversionSink& sink,
                   std::chrono::milliseconds patience)
    : m_lines(std::move(lines)), m_sink(sink), m_patience(patience)
{}

// GetCount waits while the worker walks through the file, so a long walk brings a
// higher count, not a silence.
bool RunWatch::IsDead()
{
    ULONGLONG nLines = 0;
    VARIANT_BOOL bComplete = VARIANT_FALSE;
    m_lines->GetCount(&nLines, &bComplete);
    const ULONGLONG nPulse = m_sink.Pulse();
    const auto now = Clock::now();
    if (nPulse != m_nPulse || nLines != m_nKnownLines || m_sink.IsBusy())
        m_tLastSign = now;
    m_nPulse = nPulse;
    m_nKnownLines = nLines;
    return now - m_tLastSign > m_patience;
}

// Until the end is known, the place of the last known line in the file tells more
// than the length of the first, on which the component's own estimate rests.
ULONGLONG RunWatch::TotalLines() const
{
    ULONGLONG nLines = 0;
    VARIANT_BOOL bComplete = VARIANT_FALSE;
    m_lines->GetCount(&nLines, &bComplete);
    if (bComplete != VARIANT_FALSE || nLines == 0)
        return nLines;
    const ULONGLONG nPlaced = (nLines - 1) & ~(kPlacedLines - 1);
    FLOAT fPlace = 0;
    if (m_lines->GetRelativePos(nPlaced, &fPlace) == S_OK && fPlace > 0)
        return static_cast<ULONGLONG>(static_cast<double>(nPlaced) / fPlace);
    m_lines->GetApproxCount(&nLines);
    return nLines;
}

} // namespace tabulex
