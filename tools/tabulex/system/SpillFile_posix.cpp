// A file without a name can't be left behind, not even by a kill. Where the file system has none, a
// named one is removed as soon as it is open, and interrupts are put off between the two. The
// process opens it again by its descriptor, whose number the next copy gets again. The component
// shares an open file by its name and may hold it for a moment longer than its host, so each copy
// has a name of its own: the bits of a count, written as pieces of a path that lead nowhere else.

#include "tools/tabulex/system/SpillFile.h"

#include <atomic>
#include <cerrno>
#include <cstdlib>
#include <cstring>

#include <fcntl.h>
#include <unistd.h>

#include <fmt/format.h>

#include "tools/tabulex/system/Fault.h"
#include "tools/tabulex/system/Interrupt.h"

namespace tabulex {

namespace {

constexpr mode_t kOwnerOnly = S_IRUSR | S_IWUSR;

std::string SpillFolder()
{
    const char* pszFolder = std::getenv("TMPDIR");
    return pszFolder && *pszFolder ? pszFolder : "/tmp";
}

// For a file system that has no files without a name. An interrupt between the two calls would
// leave one behind.
int MakeAndUnlink(const std::string& folder)
{
    const Deferral deferral;
    std::string name = folder + "/tabulex-XXXXXX";
    const int nFile = mkostemp(name.data(), O_CLOEXEC);
    if (nFile >= 0)
        unlink(name.c_str());
    return nFile;
}

int MakeSpillFile(const std::string& folder)
{
    const int nFile = open(folder.c_str(), O_TMPFILE | O_RDWR | O_CLOEXEC | O_EXCL, kOwnerOnly);
    const bool bUnknown = nFile < 0 && (errno == EOPNOTSUPP || errno == EISDIR || errno == EINVAL);
    return bUnknown ? MakeAndUnlink(folder) : nFile;
}

std::string NameOfCopy(int nFile)
{
    static std::atomic<unsigned long> nCopies = 0;
    std::string name = "/proc/self/fd";
    for (unsigned long n = nCopies++; n != 0; n >>= 1)
        name += n & 1 ? "/." : "/";
    return fmt::format("{}/{}", name, nFile);
}

} // namespace

SpillFile::SpillFile() : m_sFolder(SpillFolder())
{
    const int nFile = MakeSpillFile(m_sFolder);
    if (nFile < 0)
        throw Fault{ExitStatus::FileFault,
                    fmt::format("no temporary file can be made in '{}': {}; set TMPDIR to another "
                                "folder",
                                m_sFolder, std::strerror(errno))};
    m_handle = nFile;
    m_sPath = NameOfCopy(nFile);
}

SpillFile::~SpillFile()
{
    close(static_cast<int>(m_handle));
}

// The descriptor's own place stays at the start, as that of a file nobody has read from.
void SpillFile::Write(std::string_view bytes)
{
    while (!bytes.empty()) {
        const ssize_t n = pwrite(static_cast<int>(m_handle), bytes.data(), bytes.size(),
                                 static_cast<off_t>(m_nSize));
        if (n >= 0) {
            bytes.remove_prefix(static_cast<std::size_t>(n));
            m_nSize += static_cast<std::uint64_t>(n);
        } else if (errno != EINTR)
            throw Fault{ExitStatus::FileFault,
                        fmt::format("its temporary copy can't be written to '{}': {}; make room "
                                    "there, or set TMPDIR to another folder",
                                    m_sFolder, std::strerror(errno))};
    }
}

void SpillFile::WriteUnlessInterrupted(std::string_view bytes)
{
    if (Interrupted())
        throw Fault{InterruptStatus(), "interrupted"};
    Write(bytes);
}

} // namespace tabulex
