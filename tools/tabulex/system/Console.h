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

// Makes a text fit to be shown: nothing of it acts on a terminal.
using TextFilter = std::string (*)(std::string_view text);

class Console
{
public:
    Console() = default;
    // bQuiet suppresses warnings, bVerbose shows notes; errors are always shown. A filter is for
    // a terminal; null for none.
    Console(bool bColour, bool bQuiet, bool bVerbose, TextFilter pfnVisible = nullptr);

    bool IsQuiet() const { return m_bQuiet; }
    bool IsVerbose() const { return m_bVerbose; }

    // One line each, after the tool's name.
    void Error(std::string_view message);
    void Warning(std::string_view message); // not when quiet
    // "warning: FILE: MESSAGE", likewise; a program may look for these lines.
    void FileWarning(std::string_view file, std::string_view message);
    void Note(std::string_view message); // only when verbose
    void Print(std::string_view text);   // as it is: what is a file's goes through Visible

    // The text as it may stand in a line of Print. The other calls do that by themselves.
    std::string Visible(std::string_view text) const;

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
    TextFilter m_pfnVisible = nullptr;
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
