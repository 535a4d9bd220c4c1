#include "platform/Process.h"

#include <cstdlib>
#include <string>

#include "platform/Process_win32.h"
#include "platform/component.h"

namespace {

bool g_bOtherThreadsAreGone = false; // changes when there are none

} // namespace

void BreakIntoDebugger()
{
    DebugBreak();
}

void EndProcess(int nStatus)
{
    TerminateProcess(GetCurrentProcess(), static_cast<UINT>(nStatus));
    std::abort(); // not reached
}

bool UserKeyHasDefault(std::string_view sKey)
{
    LONG nSize = 0;
    return RegQueryValueA(HKEY_CURRENT_USER, std::string(sKey).c_str(), nullptr, &nSize) ==
               ERROR_SUCCESS &&
           nSize > 1; // an absent default reads as an empty text
}

bool OtherThreadsAreGone()
{
    return g_bOtherThreadsAreGone;
}

void NoteOtherThreadsAreGone()
{
    g_bOtherThreadsAreGone = true;
}
