#include "tools/tabulex/system/SpillFile.h"

#include <filesystem>
#include <random>

#include <fmt/format.h>

#include "platform/component.h"
#include "tools/tabulex/system/Fault.h"
#include "tools/tabulex/system/Files.h"
#include "tools/tabulex/system/Interrupt.h"
#include "tools/tabulex/system/Paths.h"

namespace tabulex {

namespace {

constexpr DWORD kSharedSpill = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;

std::string LastSystemError()
{
    return SystemErrorText(static_cast<int>(GetLastError()));
}

} // namespace

SpillFile::SpillFile()
{
    std::error_code ignored;
    const auto folder = std::filesystem::temp_directory_path(ignored);
    std::random_device random;
    const auto path = folder / fmt::format("tabulex-{:08x}{:08x}.txt", random(), random());
    const HANDLE handle =
        CreateFileW(path.c_str(), GENERIC_READ | GENERIC_WRITE | DELETE, kSharedSpill, nullptr,
                    CREATE_NEW, FILE_ATTRIBUTE_TEMPORARY | FILE_FLAG_DELETE_ON_CLOSE, nullptr);
    m_sFolder = Utf8Of(folder);
    m_sPath = Utf8Of(path);
    if (handle == INVALID_HANDLE_VALUE)
        throw Fault{ExitStatus::FileFault,
                    fmt::format("no temporary file can be made in '{}': {}; set TMP to another "
                                "folder",
                                m_sFolder, LastSystemError())};
    m_handle = reinterpret_cast<std::intptr_t>(handle);
}

SpillFile::~SpillFile()
{
    CloseHandle(reinterpret_cast<HANDLE>(m_handle));
}

void SpillFile::Write(std::string_view bytes)
{
    while (!bytes.empty()) {
        DWORD nWritten = 0;
        if (!WriteFile(reinterpret_cast<HANDLE>(m_handle), bytes.data(),
                       static_cast<DWORD>(bytes.size()), &nWritten, nullptr))
            throw Fault{ExitStatus::FileFault,
                        fmt::format("its temporary copy can't be written to '{}': {}; make room "
                                    "there, or set TMP to another folder",
                                    m_sFolder, LastSystemError())};
        bytes.remove_prefix(nWritten);
    }
}

void SpillFile::WriteUnlessInterrupted(std::string_view bytes)
{
    if (Interrupted())
        throw Fault{InterruptStatus(), "interrupted"};
    Write(bytes);
}

} // namespace tabulex
