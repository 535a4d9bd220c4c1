#include "tools/tabulex/Interrupt.h"

#include <atomic>
#include <csignal>
#include <cstdlib>

#include "tools/tabulex/ExitStatus.h"

namespace tabulex {

namespace {

std::atomic<int> g_nDeferrals = 0;
std::atomic<bool> g_bInterrupted = false;

static_assert(std::atomic<int>::is_always_lock_free && std::atomic<bool>::is_always_lock_free,
              "used in a signal handler");

// Only what a signal handler may do: lock-free flags and _Exit.
extern "C" void OnInterrupt(int)
{
    if (g_nDeferrals == 0 || g_bInterrupted.exchange(true))
        std::_Exit(static_cast<int>(ExitStatus::Interrupted));
}

} // namespace

void CatchInterrupts()
{
    std::signal(SIGINT, OnInterrupt);
    std::signal(SIGTERM, OnInterrupt);
}

bool Interrupted()
{
    return g_bInterrupted;
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
