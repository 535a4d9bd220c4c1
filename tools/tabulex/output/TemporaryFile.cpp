// The name is drawn by chance, as two processes mustn't share one, and the file is made as a staged
// one is, for its user alone. It goes when nobody has it open any more, which is waited for.

#include "tools/tabulex/output/TemporaryFile.h"

#include <cerrno>
#include <chrono>
#include <cstring>
#include <random>
#include <thread>

#include <fmt/format.h>

#include "tools/tabulex/system/Descriptors.h"
#include "tools/tabulex/system/Fault.h"
#include "tools/tabulex/system/Paths.h"
#include "tools/tabulex/system/Staging.h"

namespace tabulex {

namespace {

constexpr int kTries = 100; // a second in all; the component lets go much sooner
constexpr std::chrono::milliseconds kPause{10};

} // namespace

TemporaryFile::TemporaryFile(std::string_view content)
{
    std::error_code error;
    const auto folder = std::filesystem::temp_directory_path(error);
    // Two processes must not use the same file.
    std::random_device random;
    m_sPath = Utf8Of(folder / fmt::format("tabulex-{:08x}{:08x}.txt", random(), random()));
    const int nFile = CreateStaged(m_sPath);
    const bool bWritten = nFile >= 0 && WriteAll(nFile, content);
    const int nError = errno;
    if (nFile >= 0)
        CloseFile(nFile);
    if (!bWritten) {
        std::filesystem::remove(PathOf(m_sPath), error);
        throw Fault{ExitStatus::FileFault,
                    fmt::format("'{}' can't be written: {}", m_sPath, std::strerror(nError))};
    }
}

// Some systems don't remove a file that is open, and the component closes it on a thread of
// its own, a moment after it was let go of.
TemporaryFile::~TemporaryFile()
{
    std::error_code error;
    for (int i = 0; i < kTries; ++i) {
        std::filesystem::remove(PathOf(m_sPath), error);
        if (!error)
            return;
        std::this_thread::sleep_for(kPause);
    }
}

} // namespace tabulex
