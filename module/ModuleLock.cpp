// The count that keeps the library loaded.

#include <atomic>

#include "module/Module.h"

namespace {

std::atomic<LONG> g_nLocks = 0;

} // namespace

void LockModule()
{
    ++g_nLocks;
}

void UnlockModule()
{
    --g_nLocks;
}

LONG ModuleLockCount()
{
    return g_nLocks;
}
