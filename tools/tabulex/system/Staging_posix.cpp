// A run holds a lock on the file that it makes for as long as the file is open, and the system
// lets go of it however the run ends. A file without a lock is left from a run that was killed.
// Only who holds the lock of a file takes its name away.

#include "tools/tabulex/system/Staging.h"

#include <cerrno>
#include <cstdio>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

namespace tabulex {

namespace {

constexpr mode_t kPrivate = S_IRUSR | S_IWUSR;
constexpr mode_t kPermissions = S_IRWXU | S_IRWXG | S_IRWXO;
constexpr mode_t kNewFile = kPermissions & ~(S_IXUSR | S_IXGRP | S_IXOTH);

// Gives the result of a call that a signal may interrupt.
template <class Call>
auto Uninterrupted(Call call)
{
    for (;;)
        if (const auto result = call(); result >= 0 || errno != EINTR)
            return result;
}

std::error_code LastError()
{
    return {errno, std::generic_category()};
}

int Open(const std::string& name, int nFlags)
{
    return Uninterrupted([&] {
        return ::open(name.c_str(), nFlags | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK, kPrivate);
    });
}

bool IsLocked(int nFile)
{
    return Uninterrupted([&] { return ::flock(nFile, LOCK_EX | LOCK_NB); }) != 0;
}

// Another run may have taken the name away between the opening and the lock.
bool IsStillNamed(int nFile, const std::string& name)
{
    struct stat file, named;
    return ::fstat(nFile, &file) == 0 && ::lstat(name.c_str(), &named) == 0 &&
           file.st_dev == named.st_dev && file.st_ino == named.st_ino;
}

// A file of another user, or one with a second name, isn't left from a run of ours.
bool IsOurs(int nFile)
{
    struct stat info;
    return ::fstat(nFile, &info) == 0 && S_ISREG(info.st_mode) && info.st_nlink == 1 &&
           info.st_uid == ::geteuid();
}

void RemoveLeftover(const std::string& name)
{
    const int nFile = Open(name, O_WRONLY);
    if (nFile < 0)
        return;
    if (IsOurs(nFile) && !IsLocked(nFile) && IsStillNamed(nFile, name))
        ::unlink(name.c_str());
    ::close(nFile);
}

// The system tells it only by setting it, so that is done before there are threads.
mode_t ReadMask()
{
    const mode_t mask = ::umask(0);
    ::umask(mask);
    return mask;
}

const mode_t g_mask = ReadMask();

// Where the file can't have the group of the one before, its group gets no more than everybody.
// The special bits stay away: the content is another one.
mode_t TakeOwner(int nFile, const struct stat& old)
{
    const mode_t mode = old.st_mode & kPermissions;
    struct stat made;
    if (::fstat(nFile, &made) == 0 && made.st_uid == old.st_uid && made.st_gid == old.st_gid)
        return mode;
    if (::fchown(nFile, old.st_uid, old.st_gid) == 0 ||
        ::fchown(nFile, static_cast<uid_t>(-1), old.st_gid) == 0)
        return mode;
    return (mode & ~S_IRWXG) | (mode & S_IRWXG & ((mode & S_IRWXO) << 3));
}

bool SetFinalMode(int nFile, const std::string& target)
{
    struct stat old;
    const bool bThere = ::stat(target.c_str(), &old) == 0;
    return ::fchmod(nFile, bThere ? TakeOwner(nFile, old) : kNewFile & ~g_mask) == 0;
}

// Some file systems have nothing to synchronise.
bool Synchronise(int nFile)
{
    return Uninterrupted([&] { return ::fsync(nFile); }) == 0 || errno == EINVAL ||
           errno == EROFS || errno == ENOTSUP;
}

// The file is there already, so a failure has no consequence.
void SynchroniseFolderOf(const std::string& path)
{
    const std::string folder = path.substr(0, path.rfind('/') + 1);
    const int nFolder = Uninterrupted([&] {
        return ::open(folder.empty() ? "." : folder.c_str(), O_RDONLY | O_CLOEXEC | O_DIRECTORY);
    });
    if (nFolder < 0)
        return;
    Synchronise(nFolder);
    ::close(nFolder);
}

bool Rename(const std::string& name, const std::string& target, bool bReplace)
{
    if (bReplace)
        return ::rename(name.c_str(), target.c_str()) == 0;
    if (::renameat2(AT_FDCWD, name.c_str(), AT_FDCWD, target.c_str(), RENAME_NOREPLACE) == 0)
        return true;
    if (errno != EINVAL && errno != ENOSYS)
        return false;
    // A file system without that call.
    if (::access(target.c_str(), F_OK) == 0) {
        errno = EEXIST;
        return false;
    }
    return ::rename(name.c_str(), target.c_str()) == 0;
}

} // namespace

int CreateStaged(const std::string& name)
{
    int nFile = Open(name, O_WRONLY | O_CREAT | O_EXCL);
    if (nFile < 0 && errno == EEXIST) {
        RemoveLeftover(name);
        nFile = Open(name, O_WRONLY | O_CREAT | O_EXCL);
    }
    if (nFile < 0)
        return -1;
    const bool bOtherHasLock = IsLocked(nFile) && errno == EWOULDBLOCK;
    if (!bOtherHasLock && IsStillNamed(nFile, name))
        return nFile;
    ::close(nFile);
    errno = EEXIST;
    return -1;
}

// The name is given up last, so that the lock covers all of it.
std::error_code PublishStaged(int& nFile, const std::string& name, const std::string& target,
                              bool bReplace)
{
    if (!SetFinalMode(nFile, target) || !Synchronise(nFile) || !Rename(name, target, bReplace))
        return LastError();
    SynchroniseFolderOf(target);
    ::close(nFile); // all of it is on the disk
    nFile = -1;
    return {};
}

void RemoveStaged(int& nFile, const std::string& name)
{
    ::unlink(name.c_str());
    if (nFile >= 0)
        ::close(nFile);
    nFile = -1;
}

} // namespace tabulex
