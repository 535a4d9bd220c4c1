#include "tests/front/ProcessCounts.h"

#include <filesystem>

#include "platform/threads/MessageWindow.h"

namespace {

std::size_t EntriesOf(const char* pszFolder)
{
    const std::filesystem::directory_iterator entries(pszFolder);
    return static_cast<std::size_t>(std::distance(begin(entries), end(entries)));
}

} // namespace

// Reading the folder takes a descriptor itself, which is in every count.
ProcessCounts CountProcess()
{
    return {EntriesOf("/proc/self/task"), OwnsWindows() ? 1u : 0u, EntriesOf("/proc/self/fd")};
}
