// Console: everything that the tool writes to standard error, and the choice of colours.
//
// One line of progress may be shown below the text; it is erased before anything else is
// written. Every operation may be called from any thread.
#pragma once

#include <mutex>
#include <string>
#include <string_view>

#include "tools/tabulex/system/Terminal.h"

namespace tabulex {

// A choice that depends on the surroundings unless the user makes it.
enum class When
{
    Auto,
    Always,
    Never
};

// Whether colours go to a stream: by choice, then NO_COLOR, then the terminal.
bool WantsColour(When choice, Stream stream);

class Console
{
public:
    Console() = default;
    // bQuiet suppresses warnings, bVerbose shows notes; errors are always shown.
    Console(bool bColour, bool bQuiet, bool bVerbose);

    bool IsQuiet() const { return m_bQuiet; }

    // One line each, after the tool's name.
    void Error(std::string_view message);
    void Warning(std::string_view message); // not when quiet
    void Note(std::string_view message);    // only when verbose
    void Print(std::string_view text);      // as it is

    // Until Release, what is printed waits, and no progress is drawn: the terminal shows
    // something else.
    void Hold();
    void Release();

    // Draws the line of progress anew, or erases it where the text is empty.
    void ShowProgress(std::string_view text);

private:
    void Say(const char* pszColour, std::string_view kind, std::string_view message);
    void ClearProgress();

    std::mutex m_lock;
    bool m_bColour = false;
    bool m_bQuiet = false;
    bool m_bVerbose = false;
    bool m_bProgressShown = false; // guarded by m_lock, as is the stream
    bool m_bHeld = false;          // the same
    std::string m_sHeld;           // the same
};

// A console is held while this lives.
class HeldConsole
{
public:
    explicit HeldConsole(Console& console) : m_console(console) { m_console.Hold(); }
    ~HeldConsole() { m_console.Release(); }
    HeldConsole(const HeldConsole&) = delete;
    HeldConsole& operator=(const HeldConsole&) = delete;

private:
    Console& m_console;
};

} // namespace tabulex
