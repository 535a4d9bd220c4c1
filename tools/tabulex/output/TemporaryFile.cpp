#include "tools/tabulex/output/TemporaryFile.h"

#include <chrono>
#include <random>
#include <thread>

#include <fmt/format.h>

#include "tools/tabulex/output/OutputFile.h"
#include "tools/tabulex/system/Fault.h"
#include "tools/tabulex/system/Paths.h"

namespace tabulex {

namespace {

constexpr int kTries = 100;
constexpr std::chrono::milliseconds kPause{10};

} // namespace

TemporaryFile::TemporaryFile(std::string_view content)
{
    std::error_code error;
    const auto folder = std::filesystem::temp_directory_path(error);
    // Two processes must not use the same file.
    std::random_device random;
    m_sPath = Utf8Of(folder / fmt::format("tabulex-{:08x}{:08x}.txt", random(), random()));
    OutputFile file;
    if (!file.Open(m_sPath) || !file.Write(content) || !file.Commit())
        throw Fault{ExitStatus::FileFault,
                    fmt::format("'{}' can't be written: {}", m_sPath, file.FaultText())};
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
