#include "tools/tabulex/system/Interrupt.h"

#include <cstdlib>

#include "platform/component.h"
#include "tools/tabulex/system/Terminal.h"

namespace tabulex {

namespace {

// Runs on a thread of its own. When the console is closed the process ends as soon as this
// returns, so it doesn't return while work is rolled back; the system waits some seconds.
BOOL WINAPI OnInterrupt(DWORD nEvent)
{
    if (!NoteInterrupt(ExitStatus::Interrupted)) {
        RestoreTerminal();
        std::_Exit(static_cast<int>(ExitStatus::Interrupted));
    }
    if (nEvent != CTRL_C_EVENT && nEvent != CTRL_BREAK_EVENT)
        Sleep(INFINITE);
    return TRUE;
}

} // namespace

void CatchInterrupts()
{
    SetConsoleCtrlHandler(OnInterrupt, TRUE);
}

} // namespace tabulex
