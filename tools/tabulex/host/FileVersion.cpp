#include "tools/tabulex/host/FileVersion.h"

#include "tools/tabulex/system/Paths.h"

namespace tabulex {

FileVersion VersionOf(const Host& host)
{
    std::error_code error;
    const auto time = std::filesystem::last_write_time(PathOf(host.Path()), error);
    return error ? FileVersion() : FileVersion(time);
}

std::optional<Fault> FindChange(const Host& host, const FileVersion& version)
{
    if (VersionOf(host) == version)
        return std::nullopt;
    return Fault{ExitStatus::Refused,
                 "the file was changed, replaced or removed while it was read, so the rows may be "
                 "of two versions; wait until nothing writes to it, and run the command again"};
}

} // namespace tabulex
