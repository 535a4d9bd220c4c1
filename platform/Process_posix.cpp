#include "platform/Process.h"

#include <csignal>
#include <cstdlib>

void BreakIntoDebugger()
{
    std::raise(SIGTRAP);
}

void EndProcess(int nStatus)
{
    std::_Exit(nStatus);
}

bool UserKeyHasDefault(std::string_view)
{
    return false;
}

bool OtherThreadsAreGone()
{
    return false;
}
