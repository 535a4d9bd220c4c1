// Console: all that the tool says on standard error, and the choice of colours.
//
// One line of progress may stand below the text; whatever is said takes its place
// first. Every operation may come from any thread.
#pragma once

#include <mutex>
#include <string>
#include <string_view>

#include "tools/tabulex/system/Terminal.h"

namespace tabulex {

// A choice that the surroundings make unless the user does.
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
    // bQuiet keeps warnings back, bVerbose lets notes through; errors are always said.
    Console(bool bColour, bool bQuiet, bool bVerbose);

    bool IsQuiet() const { return m_bQuiet; }

    // One line each, behind the tool's name.
    void Error(std::string_view message);
    void Warning(std::string_view message); // not when quiet
    void Note(std::string_view message);    // only when verbose
    void Print(std::string_view text);      // as it stands

    // Draws the line of progress anew, or takes it away where the text is empty.
    void ShowProgress(std::string_view text);

private:
    void Say(const char* pszColour, std::string_view kind, std::string_view message);
    void ClearProgress();

    std::mutex m_lock;
    bool m_bColour = false;
    bool m_bQuiet = false;
    bool m_bVerbose = false;
    bool m_bProgressShown = false; // guarded by m_lock, as is the stream
};

} // namespace tabulex
