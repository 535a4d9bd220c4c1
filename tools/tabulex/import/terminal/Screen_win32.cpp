#include "tools/tabulex/import/terminal/Screen.h"

#include "platform/text/Utf8.h"
#include "tools/tabulex/import/terminal/VisibleText.h"
#include "tools/tabulex/system/Fault.h"
#include "tools/tabulex/text/Text.h"

namespace tabulex {

std::unique_ptr<IScreen> OpenScreen(bool)
{
    throw Fault{ExitStatus::Usage, "there is no import in the console of this system; use "
                                   "'tabulex inspect' and 'tabulex convert'"};
}

// Consoles have no question for it; the tool's own tables decide.
int CellWidth(char32_t c)
{
    if (c < 0x20 || (c >= 0x7F && c < 0xA0))
        return -1;
    std::string text;
    Utf8::Append(text, c);
    return static_cast<int>(DisplayWidth(text));
}

} // namespace tabulex
