#include "tools/tabulex/system/Interrupt.h"

#include <csignal>
#include <cstdlib>

#include "tools/tabulex/system/ExitStatus.h"
#include "tools/tabulex/system/Terminal.h"

namespace tabulex {

namespace {

// Only what a signal handler may do: atomic variables without a lock, and an end that runs no
// destructor.
extern "C" void OnInterrupt(int)
{
    if (NoteInterrupt())
        return;
    RestoreTerminal();
    std::_Exit(static_cast<int>(ExitStatus::Interrupted));
}

} // namespace

void CatchInterrupts()
{
    std::signal(SIGINT, OnInterrupt);
    std::signal(SIGTERM, OnInterrupt);
}

} // namespace tabulex
