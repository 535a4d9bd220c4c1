#include "tools/tabulex/TemporaryFile.h"

#include <filesystem>
#include <random>

#include <fmt/format.h>

#include "tools/tabulex/Fault.h"
#include "tools/tabulex/OutputFile.h"

namespace tabulex {

TemporaryFile::TemporaryFile(std::string_view content)
{
    std::error_code error;
    const auto folder = std::filesystem::temp_directory_path(error);
    // Two tools at a time must not meet in one file.
    std::random_device random;
    m_sPath = (folder / fmt::format("tabulex-{:08x}{:08x}.txt", random(), random())).string();
    OutputFile file;
    if (!file.Open(m_sPath) || !file.Write(content) || !file.Commit())
        throw Fault{ExitStatus::FileFault,
                    fmt::format("'{}' can't be written: {}", m_sPath, file.FaultText())};
}

TemporaryFile::~TemporaryFile()
{
    std::error_code ignored;
    std::filesystem::remove(m_sPath, ignored);
}

} // namespace tabulex
