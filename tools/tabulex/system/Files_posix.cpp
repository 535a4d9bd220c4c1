#include "tools/tabulex/system/Files.h"

#include <cerrno>
#include <cstring>

#include <sys/stat.h>

namespace tabulex {

namespace {

// In the order of FileMode. An e keeps the file from other programs.
constexpr const char* kModes[] = {"rbe", "abe"};

} // namespace

std::FILE* OpenFile(const std::string& path, FileMode mode)
{
    std::FILE* file = nullptr;
    do {
        file = std::fopen(path.c_str(), kModes[static_cast<int>(mode)]);
    } while (!file && errno == EINTR);
    return file;
}

bool IsFileOfStream(int nStream, const std::string& path)
{
    struct stat stream, file;
    return ::fstat(nStream, &stream) == 0 && S_ISREG(stream.st_mode) &&
           ::stat(path.c_str(), &file) == 0 && stream.st_dev == file.st_dev &&
           stream.st_ino == file.st_ino;
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
