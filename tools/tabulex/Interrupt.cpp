#include "tools/tabulex/Interrupt.h"

#include <atomic>
#include <csignal>
#include <cstdlib>

#include "tools/tabulex/ExitStatus.h"

namespace tabulex {

namespace {

std::atomic<bool> g_bDeferred = false;
std::atomic<bool> g_bInterrupted = false;

static_assert(std::atomic<bool>::is_always_lock_free, "used in a signal handler");

// Only what a signal handler may do: lock-free flags and _Exit.
extern "C" void OnInterrupt(int)
{
    if (!g_bDeferred || g_bInterrupted.exchange(true))
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
    g_bDeferred = true;
}

Deferral::~Deferral()
{
    g_bDeferred = false;
}

} // namespace tabulex
