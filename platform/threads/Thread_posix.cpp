#include "platform/threads/Thread.h"

#include <algorithm>
#include <cerrno>

#include <sys/resource.h>
#include <sys/syscall.h>
#include <unistd.h>

std::uint32_t CurrentThreadId()
{
    static thread_local const auto nId = static_cast<std::uint32_t>(syscall(SYS_gettid));
    return nId;
}

// On Linux the nice value belongs to the thread, not to the process.
void LowerThreadPriority()
{
    constexpr int kStep = 5;
    constexpr int kNicest = 19;
    const int nSaved = errno;
    const auto nThread = static_cast<id_t>(CurrentThreadId());
    const int nNice = getpriority(PRIO_PROCESS, nThread);
    setpriority(PRIO_PROCESS, nThread, std::min(nNice + kStep, kNicest));
    errno = nSaved;
}

int LastSystemError()
{
    return errno;
}

void SetLastSystemError(int nError)
{
    errno = nError;
}
