#include "tools/tabulex/system/Files.h"

#include <cerrno>
#include <cstring>
#include <filesystem>

namespace tabulex {

namespace fs = std::filesystem;

namespace {

// In the order of FileMode. An x makes the call fail where the file exists.
constexpr const char* kModes[] = {"rb", "wb", "wbx", "ab"};

} // namespace

std::FILE* OpenFile(const std::string& path, FileMode mode)
{
    return std::fopen(path.c_str(), kModes[static_cast<int>(mode)]);
}

bool IsWrittenDirectly(const std::string& path)
{
    std::error_code ignored;
    const fs::file_status status = fs::status(path, ignored);
    return fs::exists(status) && !fs::is_regular_file(status);
}

int WriteError(std::FILE*)
{
    return errno;
}

void CopyPermissions(const std::string& from, const std::string& to)
{
    std::error_code ignored;
    if (const fs::file_status old = fs::status(from, ignored); fs::exists(old))
        fs::permissions(to, old.permissions(), ignored);
}

bool AreSameName(const std::string& a, const std::string& b)
{
    return a == b;
}

std::string SystemErrorText(int nError)
{
    return std::strerror(nError);
}

} // namespace tabulex
