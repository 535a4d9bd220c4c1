#include "tools/tabulex/run/ProgressBar.h"

#include <algorithm>

#include <fmt/format.h>

#include "tools/tabulex/text/Formats.h"
#include "tools/tabulex/text/Text.h"

namespace tabulex {

namespace {

using namespace std::chrono_literals;

constexpr auto kFirstAfter = 1s;  // a shorter run needs no bar
constexpr auto kInterval = 200ms; // figures that change faster can't be read

void CutLast(std::string& utf8)
{
    constexpr unsigned kContinuation = 0x80, kLead = 0xC0;
    while (utf8.size() > 1 && (static_cast<unsigned char>(utf8.back()) & kLead) == kContinuation)
        utf8.pop_back();
    utf8.pop_back();
}

bool IsEnabled(When when)
{
    return when == When::Auto ? TakesSequences(Stream::Error) : when == When::Always;
}

} // namespace

ProgressBar::ProgressBar(Console& console, When when)
    : m_console(console), m_bAlways(when == When::Always), m_bEnabled(IsEnabled(when)),
      m_tNext(m_tStart + (m_bAlways ? Clock::duration(0) : kFirstAfter))
{}

ProgressBar::~ProgressBar()
{
    m_console.ShowProgress({});
}

void ProgressBar::Show(const Progress& progress)
{
    if (m_bEnabled && Clock::now() >= m_tNext)
        Draw(progress);
}

void ProgressBar::ShowEnd(ULONGLONG nRecords)
{
    if (m_bAlways && !m_bDrawn)
        Draw({100, nRecords, {}, {}});
}

void ProgressBar::Draw(const Progress& progress)
{
    const auto now = Clock::now();
    m_tNext = now + kInterval;
    m_bDrawn = true;
    m_console.ShowProgress(TextOf(progress, std::chrono::duration<double>(now - m_tStart).count(),
                                  TerminalWidth(Stream::Error)));
}

// The bar doesn't depend on the figures, or it would change with each of them. A line that wraps
// couldn't be erased.
std::string ProgressBar::TextOf(const Progress& progress, double seconds, unsigned nWidth)
{
    constexpr ULONG kFigures = 72; // the columns that the figures take at most, and a last one
    constexpr ULONG kLeastCells = 8;
    const ULONG nCells = std::max<ULONG>(nWidth, kFigures + kLeastCells) - kFigures;
    const ULONG nFull = std::min<ULONG>(progress.nPercent, 100) * nCells / 100;
    const double rate = seconds > 0 ? static_cast<double>(progress.nRecords) / seconds : 0;
    std::string text =
        fmt::format("[{:#<{}}{:.<{}}] {:3}%  {} records  {}/s", "", nFull, "", nCells - nFull,
                    progress.nPercent, WithThousands(progress.nRecords),
                    WithThousands(static_cast<ULONGLONG>(rate)));
    if (!progress.sElapsed.empty())
        text += "  " + progress.sElapsed;
    if (!progress.sRemaining.empty())
        text += ", " + progress.sRemaining + " left";
    while (DisplayWidth(text) > nWidth - 1)
        CutLast(text);
    return text;
}

} // namespace tabulex
