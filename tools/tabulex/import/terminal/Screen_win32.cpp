#include "tools/tabulex/import/terminal/Screen.h"

#include "tools/tabulex/system/Fault.h"

namespace tabulex {

std::unique_ptr<IScreen> OpenScreen(bool)
{
    throw Fault{ExitStatus::Usage, "there is no import in the console of this system; use "
                                   "'tabulex inspect' and 'tabulex convert'"};
}

} // namespace tabulex
