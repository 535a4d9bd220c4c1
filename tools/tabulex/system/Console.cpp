// One lock covers the line of progress and everything else, so that no text is written between the
// erasing of that line and what takes its place. A line of progress is never written again by the
// console; the next state comes soon enough. While another view has the terminal, text waits.

#include "tools/tabulex/system/Console.h"

#include <cstdlib>

#include <fmt/format.h>

namespace tabulex {

namespace {

constexpr const char* kRed = "\033[1;31m";
constexpr const char* kYellow = "\033[33m";
constexpr const char* kPlain = "\033[0m";

} // namespace

bool WantsColour(When choice, Stream stream)
{
    if (choice != When::Auto)
        return choice == When::Always;
    // Any value but an empty one counts.
    const char* pszNoColour = std::getenv("NO_COLOR");
    if (pszNoColour && *pszNoColour)
        return false;
    return TakesSequences(stream);
}

Console::Console(bool bColour, bool bQuiet, bool bVerbose, TextFilter pfnVisible)
    : m_bColour(bColour), m_bQuiet(bQuiet), m_bVerbose(bVerbose), m_pfnVisible(pfnVisible)
{}

std::string Console::Visible(std::string_view text) const
{
    return m_pfnVisible ? m_pfnVisible(text) : std::string(text);
}

void Console::Error(std::string_view message)
{
    Say(kRed, "", message);
}

void Console::Warning(std::string_view message)
{
    if (!m_bQuiet)
        Say(kYellow, "warning: ", message);
}

void Console::FileWarning(std::string_view file, std::string_view message)
{
    if (!m_bQuiet)
        Print(fmt::format("{}warning:{} {}: {}\n", m_bColour ? kYellow : "",
                          m_bColour ? kPlain : "", Visible(file), Visible(message)));
}

void Console::Note(std::string_view message)
{
    if (m_bVerbose)
        Say("", "", message);
}

void Console::Say(const char* pszColour, std::string_view kind, std::string_view message)
{
    const bool bColour = m_bColour && *pszColour;
    Print(fmt::format("{}tabulex: {}{}{}\n", bColour ? pszColour : "", kind, bColour ? kPlain : "",
                      Visible(message)));
}

void Console::Print(std::string_view text)
{
    std::lock_guard lock(m_lock);
    if (m_bHeld) {
        m_sHeld += text;
        return;
    }
    ClearProgress();
    WriteToErrorStream(text);
}

void Console::Hold()
{
    std::lock_guard lock(m_lock);
    ClearProgress();
    m_bHeld = true;
}

void Console::Release()
{
    std::lock_guard lock(m_lock);
    m_bHeld = false;
    WriteToErrorStream(m_sHeld);
    m_sHeld.clear();
}

void Console::ShowProgress(std::string_view text)
{
    std::lock_guard lock(m_lock);
    if (m_bHeld)
        return;
    ClearProgress();
    if (text.empty())
        return;
    WriteToErrorStream(text);
    m_bProgressShown = true;
}

// On a terminal a state overwrites the one before; in a file each is a line of its own.
void Console::ClearProgress()
{
    if (!m_bProgressShown)
        return;
    static const bool bTerminal = IsTerminal(Stream::Error);
    WriteToErrorStream(bTerminal ? "\r\033[K" : "\n");
    m_bProgressShown = false;
}

} // namespace tabulex
