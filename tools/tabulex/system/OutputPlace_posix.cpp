// The system follows links by itself where there is a file at their end. A free name at the end of
// links is found by following them one by one, each from the folder that it is really in. There the
// names of open streams are met, too: the links of the folder that the system keeps of them.

#include "tools/tabulex/system/OutputPlace.h"

#include <cerrno>
#include <charconv>
#include <cstring>
#include <filesystem>

#include <fcntl.h>
#include <fmt/format.h>
#include <sys/stat.h>
#include <unistd.h>

namespace tabulex {

namespace fs = std::filesystem;

namespace {

constexpr int kMostLinks = 40; // as many as the system follows
constexpr mode_t kAnyWrite = S_IWUSR | S_IWGRP | S_IWOTH;

OutputPlace FaultyPlace(int nError)
{
    OutputPlace place;
    place.sFault = std::strerror(nError);
    return place;
}

// The path with its folder free of links.
std::string InRealFolder(const fs::path& path, std::error_code& error)
{
    const fs::path folder = path.has_parent_path() ? path.parent_path() : fs::path(".");
    return (fs::canonical(folder, error) / path.filename()).string();
}

// The descriptor whose link this is in the system's folder of this process; -1 if it is none.
int StreamNamed(const std::string& path)
{
    const std::string folder = fmt::format("/proc/{}/", ::getpid());
    const std::size_t nName = path.rfind('/') + 1;
    if (!path.starts_with(folder) || !path.substr(0, nName).ends_with("/fd/"))
        return -1;
    int nStream = -1;
    const char* const pEnd = path.data() + path.size();
    const auto read = std::from_chars(path.data() + nName, pEnd, nStream);
    return read.ec == std::errc() && read.ptr == pEnd ? nStream : -1;
}

// Follows the links of a path to a stream or to its end, which need not exist.
OutputPlace FollowLinks(const std::string& path)
{
    OutputPlace place;
    fs::path at = path;
    for (int i = 0; i <= kMostLinks; ++i) {
        std::error_code error;
        place.sTarget = InRealFolder(at, error);
        if (error)
            return FaultyPlace(error.value());
        place.nStream = StreamNamed(place.sTarget);
        if (place.nStream >= 0) {
            place.kind = PlaceKind::Stream;
            return place;
        }
        const fs::path next = fs::read_symlink(place.sTarget, error);
        if (error)
            return place;
        at = fs::path(place.sTarget).parent_path() / next;
    }
    return FaultyPlace(ELOOP);
}

} // namespace

// A file that nobody may write is one that somebody wants to keep, also from a user who may do
// everything. The system knows more reasons than its mode shows.
std::string WhyNotReplaced(const std::string& file)
{
    struct stat info;
    if (::stat(file.c_str(), &info) == 0 && (info.st_mode & kAnyWrite) == 0)
        return "the file is read-only";
    int nFile = -1;
    do {
        nFile = ::open(file.c_str(), O_WRONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY);
    } while (nFile < 0 && errno == EINTR);
    if (nFile < 0)
        return errno == EACCES ? "the file is read-only" : std::strerror(errno);
    ::close(nFile);
    return {};
}

OutputPlace FindPlace(const std::string& path)
{
    struct stat info;
    const bool bExists = ::stat(path.c_str(), &info) == 0;
    if (!bExists && errno != ENOENT)
        return FaultyPlace(errno);
    OutputPlace place = FollowLinks(path);
    place.bExists = bExists;
    if (bExists && place.kind != PlaceKind::Stream && !S_ISREG(info.st_mode))
        place.kind = PlaceKind::Device;
    return place;
}

} // namespace tabulex
