#include "tests/front/ProcessCounts.h"

#include <memory>
#include <system_error>
#include <vector>

#include <windows.h>

#include <tlhelp32.h>
#include <winternl.h>

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

// As the system lists them. The plain count of a process isn't kept by each system that
// runs these programs.
struct HandleList
{
    struct Entry
    {
        void* pObject;
        ULONG_PTR nProcess;
        ULONG_PTR nHandle;
        ULONG nAccess;
        USHORT nTrace, nType;
        ULONG nAttributes, nReserved;
    };
    ULONG_PTR nEntries;
    ULONG_PTR nReserved;
    Entry entries[1];
};

std::size_t CountHandles()
{
    constexpr auto kExtendedHandleInformation = static_cast<SYSTEM_INFORMATION_CLASS>(64);
    constexpr auto kTooSmall = static_cast<NTSTATUS>(0xC0000004);
    std::vector<ULONG_PTR> buffer(1 << 16);
    NTSTATUS status = kTooSmall;
    while ((status = NtQuerySystemInformation(kExtendedHandleInformation, buffer.data(),
                                              static_cast<ULONG>(buffer.size() * sizeof buffer[0]),
                                              nullptr)) == kTooSmall)
        buffer.resize(buffer.size() * 2);
    if (status != 0)
        throw std::system_error(status, std::system_category());
    const auto& list = *reinterpret_cast<const HandleList*>(buffer.data());
    std::size_t n = 0;
    for (ULONG_PTR i = 0; i < list.nEntries; ++i)
        n += list.entries[i].nProcess == GetCurrentProcessId();
    return n;
}

} // namespace

ProcessCounts CountProcess()
{
    return {CountThreads(), OwnMessageWindows().size(), CountHandles()};
}
