#include "tools/tabulex/input/UnchangedFile.h"

#include <cstdint>
#include <filesystem>

#include "tools/tabulex/system/Fault.h"
#include "tools/tabulex/system/Paths.h"

namespace tabulex {

namespace fs = std::filesystem;

namespace {

struct FileStamp
{
    std::uintmax_t nSize = 0;
    fs::file_time_type time;

    bool operator==(const FileStamp&) const = default;
};

FileStamp StampOf(const std::string& path)
{
    std::error_code ignored;
    return {fs::file_size(PathOf(path), ignored), fs::last_write_time(PathOf(path), ignored)};
}

} // namespace

void CopyUnchanged(const std::string& path, const std::function<void()>& work)
{
    const FileStamp before = StampOf(path);
    work();
    if (StampOf(path) != before)
        throw Fault{ExitStatus::Refused, "the file changed while it was read; wait until nothing "
                                         "writes to it, and run the command again"};
}

} // namespace tabulex
