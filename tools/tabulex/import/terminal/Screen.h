// IScreen: the terminal, as far as the import dialog needs one.
//
// A canvas goes to it as a whole, and it writes what has changed. The terminal is as it was
// before when the screen goes, whichever way the process leaves.
#pragma once

#include <memory>

#include "tools/tabulex/import/terminal/Canvas.h"
#include "tools/tabulex/import/terminal/Input.h"

namespace tabulex {

struct IScreen
{
    virtual ~IScreen() = default;

    virtual Size GetSize() = 0;
    // Of the size that GetSize gave last.
    virtual void Show(const Canvas& canvas) = 0;
    // What comes first, or Key::None after that time.
    virtual Input Wait(int nMilliseconds) = 0;
};

// Takes over the terminal on standard input and output; there is one screen at a time. Without
// colours it has bold, underlined and reversed text. Throws Fault where there is no such
// terminal.
std::unique_ptr<IScreen> OpenScreen(bool bColour);

} // namespace tabulex
