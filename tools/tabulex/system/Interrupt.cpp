#include "tools/tabulex/system/Interrupt.h"

#include <atomic>

namespace tabulex {

namespace {

std::atomic<int> g_nDeferrals = 0;
std::atomic<bool> g_bInterrupted = false;

static_assert(std::atomic<int>::is_always_lock_free && std::atomic<bool>::is_always_lock_free,
              "used in a signal handler");

} // namespace

bool Interrupted()
{
    return g_bInterrupted;
}

// A second one ends the process: the user doesn't want to wait for the rollback.
bool NoteInterrupt()
{
    return g_nDeferrals > 0 && !g_bInterrupted.exchange(true);
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
