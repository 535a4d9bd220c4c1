#include "tests/front/ProcessCounts.h"

#include <memory>

#include <windows.h>

#include <tlhelp32.h>

#include "tests/windows/OwnWindows.h"

namespace {

std::size_t CountThreads()
{
    using Closer = decltype(&CloseHandle);
    const std::unique_ptr<void, Closer> all(CreateToolhelp32Snapshot(TH32CS_SNAPTHREAD, 0),
                                            &CloseHandle);
    THREADENTRY32 entry{};
    entry.dwSize = sizeof entry;
    std::size_t n = 0;
    for (BOOL bMore = Thread32First(all.get(), &entry); bMore;
         bMore = Thread32Next(all.get(), &entry))
        n += entry.th32OwnerProcessID == GetCurrentProcessId();
    return n;
}

// Counted by trying: numbers of handles are multiples of four, and a new handle takes one
// of the lowest free ones. Not every system that runs these programs keeps the count that
// the system's call gives, and one of them crashes when the handles of all programs are
// listed.
std::size_t CountHandles()
{
    constexpr std::size_t kUnusedAtTheEnd = 1024;
    std::size_t n = 0;
    for (ULONG_PTR nHandle = 4, nUnused = 0; nUnused < kUnusedAtTheEnd; nHandle += 4) {
        DWORD nFlags = 0;
        const bool bUsed = GetHandleInformation(reinterpret_cast<HANDLE>(nHandle), &nFlags) != 0;
        n += bUsed;
        nUnused = bUsed ? 0 : nUnused + 1;
    }
    return n;
}

} // namespace

ProcessCounts CountProcess()
{
    return {CountThreads(), OwnMessageWindows().size(), CountHandles()};
}
