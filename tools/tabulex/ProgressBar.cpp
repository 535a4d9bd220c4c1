#include "tools/tabulex/ProgressBar.h"

#include <algorithm>
#include <cstdlib>

#include <fmt/format.h>

#include "tools/tabulex/Formats.h"

namespace tabulex {

namespace {

using namespace std::chrono_literals;

constexpr auto kFirstAfter = 1s;
constexpr auto kInterval = 200ms;

bool IsEnabled(When when)
{
    if (when != When::Auto)
        return when == When::Always;
    const char* pszTerm = std::getenv("TERM");
    return IsTerminal(Stream::Error) && pszTerm && std::string_view(pszTerm) != "dumb";
}

// "m:ss" or "h:mm:ss", at most 99:59:59.
std::string TimeLeft(const Progress& progress, double rate)
{
    const auto nLeft = static_cast<double>(progress.nTotal - progress.nLines);
    const auto seconds = static_cast<unsigned>(std::min(nLeft / rate, 359'999.0));
    return seconds < 3600
               ? fmt::format("{}:{:02}", seconds / 60, seconds % 60)
               : fmt::format("{}:{:02}:{:02}", seconds / 3600, seconds / 60 % 60, seconds % 60);
}

} // namespace

ProgressBar::ProgressBar(Console& console, When when)
    : m_console(console), m_bEnabled(IsEnabled(when)),
      m_tNext(m_tStart + (when == When::Always ? Clock::duration(0) : kFirstAfter))
{}

ProgressBar::~ProgressBar()
{
    m_console.ShowProgress({});
}

bool ProgressBar::IsDue() const
{
    return m_bEnabled && Clock::now() >= m_tNext;
}

void ProgressBar::Draw(const Progress& progress)
{
    const auto now = Clock::now();
    m_tNext = now + kInterval;
    std::string text = TextOf(progress, std::chrono::duration<double>(now - m_tStart).count());
    // A line that wraps couldn't be wiped.
    text.resize(std::min<std::size_t>(text.size(), TerminalWidth() - 1));
    m_console.ShowProgress(text);
}

std::string ProgressBar::TextOf(const Progress& progress, double seconds)
{
    const double rate = seconds > 0 ? static_cast<double>(progress.nLines) / seconds : 0;
    const std::string lines = WithThousands(progress.nLines);
    const std::string speed = WithThousands(static_cast<ULONGLONG>(rate));
    if (progress.nTotal < progress.nLines || progress.nTotal == 0)
        return fmt::format("  {} lines  {}/s", lines, speed);
    const auto percent = progress.nLines * 100 / progress.nTotal;
    const std::string left = rate > 0 ? fmt::format("  {} left", TimeLeft(progress, rate)) : "";
    return fmt::format("{:4}%  {} of about {} lines  {}/s{}", percent, lines,
                       WithThousands(progress.nTotal), speed, left);
}

} // namespace tabulex
