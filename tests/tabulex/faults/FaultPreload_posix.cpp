// A library that is loaded before the tool's own (LD_PRELOAD) and makes some of its reads, its
// writes or one of its allocations fail. It stands in front of the system's calls, counts them,
// and passes on all but those that are to fail. The environment chooses them:
//
//   FAULT_FILE   the file whose reads are counted, from 0
//   FAULT_READ   the first read that fails
//   FAULT_COUNT  the number of reads that fail from there on; 1 unless given
//   FAULT_KIND   a number: the read fails with this errno
//                "short": the file seems to end in the middle of what that read asks for
//                "cut=BYTES": the file is cut to this length before the read
//                "grow=BYTES": this number of bytes is added to it before the read
//   FAULT_OUTPUT "interrupted": every other call that opens a file for writing, writes,
//   synchronises or
//                locks is interrupted before it does anything
//                "short": each write writes no more than 100 bytes
//                "sync=ERRNO": nothing can be synchronised
//   FAULT_MEMORY the allocation that fails, among those of FAULT_LEAST bytes and more, from 0
//   FAULT_LOG    a file to which the numbers of counted reads and allocations are written
#include <algorithm>
#include <atomic>
#include <cerrno>
#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include <dlfcn.h>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

extern "C" void* __libc_malloc(std::size_t);

namespace {

const char* Setting(const char* pszName, const char* pszOther = "")
{
    const char* pszValue = std::getenv(pszName);
    return pszValue ? pszValue : pszOther;
}

long NumberOf(const char* pszName, const char* pszOther)
{
    return std::atol(Setting(pszName, pszOther));
}

std::atomic<long> g_nReads = 0;
std::atomic<long> g_nAllocations = 0;
std::atomic<bool> g_bReady = false; // the settings below can be read
long g_nLeast = 0;
long g_nFailing = -1;

// Read once, when the library is loaded: allocations before that aren't counted.
struct Settings
{
    Settings()
    {
        g_nLeast = NumberOf("FAULT_LEAST", "4096");
        g_nFailing = NumberOf("FAULT_MEMORY", "-1");
        bFile = stat(Setting("FAULT_FILE"), &file) == 0;
        nFirst = NumberOf("FAULT_READ", "-1");
        nCount = NumberOf("FAULT_COUNT", "1");
        pszKind = Setting("FAULT_KIND", "5");
        pszOutput = Setting("FAULT_OUTPUT");
        g_bReady = true;
    }
    ~Settings()
    {
        g_bReady = false;
        const char* pszLog = Setting("FAULT_LOG");
        if (std::FILE* log = *pszLog ? std::fopen(pszLog, "w") : nullptr) {
            std::fprintf(log, "%ld %ld\n", g_nReads.load(), g_nAllocations.load());
            std::fclose(log);
        }
    }

    bool IsCounted(int fd) const
    {
        struct stat info;
        return bFile && fstat(fd, &info) == 0 && info.st_dev == file.st_dev &&
               info.st_ino == file.st_ino;
    }
    bool Fails(long nRead) const
    {
        return nFirst >= 0 && nRead >= nFirst && nRead - nFirst < nCount;
    }

    struct stat file
    {};
    bool bFile;
    long nFirst, nCount;
    const char* pszKind;
    const char* pszOutput;
};
const Settings g_settings;

using Read = ssize_t (*)(int, void*, std::size_t, off_t);

void ChangeFile(const char* pszKind)
{
    const char* pszFile = Setting("FAULT_FILE");
    if (std::strncmp(pszKind, "cut=", 4) == 0) {
        (void)!truncate(pszFile, std::atol(pszKind + 4));
    } else if (const int fd = open(pszFile, O_WRONLY | O_APPEND); fd >= 0) {
        for (long n = std::atol(pszKind + 5); n > 0; --n)
            (void)!write(fd, "\n", 1);
        close(fd);
    }
}

ssize_t FailingRead(Read read, int fd, void* pBuffer, std::size_t nCount, off_t nOffset)
{
    static std::atomic<off_t> nEnd = -1; // where the file seems to end; -1 before that
    const char* pszKind = g_settings.pszKind;
    if (std::strcmp(pszKind, "short") == 0) {
        if (nEnd < 0)
            nEnd = nOffset + static_cast<off_t>(nCount / 2);
        const auto nLeft = static_cast<std::size_t>(std::max<off_t>(nEnd - nOffset, 0));
        return read(fd, pBuffer, std::min(nCount, nLeft), nOffset);
    }
    if (std::strchr(pszKind, '=')) {
        ChangeFile(pszKind);
        return read(fd, pBuffer, nCount, nOffset);
    }
    errno = std::atoi(pszKind);
    return -1;
}

ssize_t CountedRead(const char* pszName, int fd, void* pBuffer, std::size_t nCount, off_t nOffset)
{
    const auto read = reinterpret_cast<Read>(dlsym(RTLD_NEXT, pszName));
    if (!g_bReady || !g_settings.IsCounted(fd))
        return read(fd, pBuffer, nCount, nOffset);
    return g_settings.Fails(g_nReads++) ? FailingRead(read, fd, pBuffer, nCount, nOffset)
                                        : read(fd, pBuffer, nCount, nOffset);
}

bool IsInterrupted()
{
    static std::atomic<long> nCalls = 0;
    if (!g_bReady || std::strcmp(g_settings.pszOutput, "interrupted") != 0 || nCalls++ % 2 != 0)
        return false;
    errno = EINTR;
    return true;
}

int OpenFor(const char* pszName, const char* pszPath, int nFlags, mode_t mode)
{
    const auto next = reinterpret_cast<int (*)(const char*, int, ...)>(dlsym(RTLD_NEXT, pszName));
    return (nFlags & O_ACCMODE) == O_WRONLY && IsInterrupted() ? -1 : next(pszPath, nFlags, mode);
}

} // namespace

extern "C" {

int open(const char* pszPath, int nFlags, ...)
{
    va_list rest;
    va_start(rest, nFlags);
    const mode_t mode = va_arg(rest, mode_t);
    va_end(rest);
    return OpenFor("open", pszPath, nFlags, mode);
}

int open64(const char* pszPath, int nFlags, ...)
{
    va_list rest;
    va_start(rest, nFlags);
    const mode_t mode = va_arg(rest, mode_t);
    va_end(rest);
    return OpenFor("open64", pszPath, nFlags, mode);
}

ssize_t write(int fd, const void* pBuffer, std::size_t nCount)
{
    static const auto next =
        reinterpret_cast<ssize_t (*)(int, const void*, std::size_t)>(dlsym(RTLD_NEXT, "write"));
    constexpr std::size_t kFew = 100;
    if (IsInterrupted())
        return -1;
    const bool bShort = g_bReady && std::strcmp(g_settings.pszOutput, "short") == 0;
    return next(fd, pBuffer, bShort ? std::min(nCount, kFew) : nCount);
}

int flock(int fd, int nOperation)
{
    static const auto next = reinterpret_cast<int (*)(int, int)>(dlsym(RTLD_NEXT, "flock"));
    return IsInterrupted() ? -1 : next(fd, nOperation);
}

int fsync(int fd)
{
    static const auto next = reinterpret_cast<int (*)(int)>(dlsym(RTLD_NEXT, "fsync"));
    if (IsInterrupted())
        return -1;
    if (!g_bReady || std::strncmp(g_settings.pszOutput, "sync=", 5) != 0)
        return next(fd);
    errno = std::atoi(g_settings.pszOutput + 5);
    return -1;
}

ssize_t pread(int fd, void* pBuffer, std::size_t nCount, off_t nOffset)
{
    return CountedRead("pread", fd, pBuffer, nCount, nOffset);
}

ssize_t pread64(int fd, void* pBuffer, std::size_t nCount, off_t nOffset)
{
    return CountedRead("pread64", fd, pBuffer, nCount, nOffset);
}

void* malloc(std::size_t nSize)
{
    if (g_bReady && nSize >= static_cast<std::size_t>(g_nLeast) && g_nAllocations++ == g_nFailing) {
        errno = ENOMEM;
        return nullptr;
    }
    return __libc_malloc(nSize);
}
}
