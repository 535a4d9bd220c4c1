#include "platform/Process.h"

#include <cstdlib>
#include <string>

#include "platform/component.h"

// Of ntdll; no header declares it.
extern "C" BOOLEAN NTAPI RtlDllShutdownInProgress();

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
    return RtlDllShutdownInProgress() != FALSE;
}
