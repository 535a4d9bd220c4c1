#include "platform/threads/Thread.h"

std::uint32_t CurrentThreadId()
{
    return GetCurrentThreadId();
}

void LowerThreadPriority()
{
    SetThreadPriority(GetCurrentThread(), THREAD_PRIORITY_BELOW_NORMAL);
}

int LastSystemError()
{
    return static_cast<int>(GetLastError());
}

void SetLastSystemError(int nError)
{
    SetLastError(static_cast<DWORD>(nError));
}
