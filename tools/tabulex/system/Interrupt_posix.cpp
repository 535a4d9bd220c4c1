#include "tools/tabulex/system/Interrupt.h"

#include <cerrno>
#include <csignal>
#include <cstdlib>

#include "tools/tabulex/system/Terminal.h"

namespace tabulex {

namespace {

constexpr int kSignalled = 128; // what shells add to a signal's number

static_assert(static_cast<int>(ExitStatus::HungUp) == kSignalled + SIGHUP &&
              static_cast<int>(ExitStatus::Interrupted) == kSignalled + SIGINT &&
              static_cast<int>(ExitStatus::Terminated) == kSignalled + SIGTERM);

// Only what a signal handler may do: atomic variables without a lock, and an end that runs no
// destructor. A terminal that goes sends its signal more than once: by the system, and by the
// shell.
extern "C" void OnInterrupt(int nSignal)
{
    const int nError = errno;
    const auto status = static_cast<ExitStatus>(kSignalled + nSignal);
    if (!NoteInterrupt(status) && !(nSignal == SIGHUP && Interrupted())) {
        RestoreTerminal();
        std::_Exit(static_cast<int>(status));
    }
    errno = nError;
}

} // namespace

// Calls of the system that were interrupted go on.
void CatchInterrupts()
{
    for (const int nSignal : {SIGHUP, SIGINT, SIGTERM}) {
        struct sigaction before = {};
        if (::sigaction(nSignal, nullptr, &before) != 0 || before.sa_handler == SIG_IGN)
            continue;
        struct sigaction action = {};
        action.sa_handler = OnInterrupt;
        action.sa_flags = SA_RESTART;
        ::sigaction(nSignal, &action, nullptr);
    }
}

} // namespace tabulex
