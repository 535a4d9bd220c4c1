#include "tools/tabulex/run/ProgressBar.h"

#include <algorithm>

#include <fmt/format.h>

#include "tools/tabulex/text/Formats.h"

namespace tabulex {

namespace {

using namespace std::chrono_literals;

constexpr auto kFirstAfter = 1s;
constexpr auto kInterval = 200ms;

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
    std::string text = TextOf(progress, std::chrono::duration<double>(now - m_tStart).count());
    // A line that wraps couldn't be erased.
    text.resize(std::min<std::size_t>(text.size(), TerminalWidth() - 1));
    m_console.ShowProgress(text);
}

std::string ProgressBar::TextOf(const Progress& progress, double seconds)
{
    constexpr ULONG kCells = 8; // so that all fits into 80 columns
    const ULONG nFull = std::min<ULONG>(progress.nPercent, 100) * kCells / 100;
    const double rate = seconds > 0 ? static_cast<double>(progress.nRecords) / seconds : 0;
    std::string text =
        fmt::format("[{:#<{}}{:.<{}}] {:3}%  {} records  {}/s", "", nFull, "", kCells - nFull,
                    progress.nPercent, WithThousands(progress.nRecords),
                    WithThousands(static_cast<ULONGLONG>(rate)));
    if (!progress.sElapsed.empty())
        text += "  " + progress.sElapsed;
    if (!progress.sRemaining.empty())
        text += ", " + progress.sRemaining + " left";
    return text;
}

} // namespace tabulex
