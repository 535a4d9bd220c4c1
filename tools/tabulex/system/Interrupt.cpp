#include "tools/tabulex/system/Interrupt.h"

#include <atomic>

namespace tabulex {

namespace {

std::atomic<int> g_nDeferrals = 0;
std::atomic<int> g_nStatus = 0; // of the first request; 0 before

static_assert(std::atomic<int>::is_always_lock_free, "used in a signal handler");

} // namespace

bool Interrupted()
{
    return g_nStatus != 0;
}

ExitStatus InterruptStatus()
{
    return Interrupted() ? static_cast<ExitStatus>(g_nStatus.load()) : ExitStatus::Interrupted;
}

// A second one ends the process: the user doesn't want to wait for the rollback.
bool NoteInterrupt(ExitStatus status)
{
    int nNone = 0;
    return g_nDeferrals > 0 && g_nStatus.compare_exchange_strong(nNone, static_cast<int>(status));
}

void PutOffInterrupts()
{
    ++g_nDeferrals;
}

Deferral::Deferral()
{
    ++g_nDeferrals;
}

Deferral::~Deferral()
{
    --g_nDeferrals;
}

} // namespace tabulex
