// A read is asked for an interrupt ahead of it only, as the system ends no read for one. A pipe
// whose writer has gone is at its end, which this system tells as a fault. Standard input is read
// where it stands whatever it leads to, because nothing could open it a second time.

#include "tools/tabulex/system/InputStream.h"

#include <cerrno>
#include <filesystem>

#include "platform/component.h"
#include "tools/tabulex/system/Fault.h"
#include "tools/tabulex/system/Files.h"
#include "tools/tabulex/system/Interrupt.h"
#include "tools/tabulex/system/Paths.h"

namespace tabulex {

namespace {

// Others may also rename and delete the file meanwhile, and a temporary one demands it.
constexpr DWORD kShared = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;

[[noreturn]] void ThrowSystemFault(DWORD nError)
{
    throw Fault{ExitStatus::FileFault, SystemErrorText(static_cast<int>(nError))};
}

HANDLE HandleOf(std::intptr_t handle)
{
    return reinterpret_cast<HANDLE>(handle);
}

HANDLE OpenToRead(const std::string& name)
{
    return CreateFileW(PathOf(name).c_str(), GENERIC_READ, kShared, nullptr, OPEN_EXISTING,
                       FILE_ATTRIBUTE_NORMAL, nullptr);
}

} // namespace

// What standard input leads to has no name by which it could be opened again.
InputStream::InputStream(const std::string& name) : m_sPath(name)
{
    std::error_code ignored;
    if (name != "-" && std::filesystem::is_directory(PathOf(name), ignored)) {
        m_place = InputPlace::Folder;
        return;
    }
    const HANDLE handle = name == "-" ? GetStdHandle(STD_INPUT_HANDLE) : OpenToRead(name);
    if (handle == INVALID_HANDLE_VALUE || !handle)
        ThrowSystemFault(GetLastError());
    m_handle = reinterpret_cast<std::intptr_t>(handle);
    if (name != "-" && GetFileType(handle) == FILE_TYPE_DISK)
        m_place = InputPlace::File;
}

InputStream::~InputStream()
{
    if (m_handle != -1 && HandleOf(m_handle) != GetStdHandle(STD_INPUT_HANDLE))
        CloseHandle(HandleOf(m_handle));
}

std::size_t InputStream::Read(std::span<char> buffer)
{
    std::size_t nRead = 0;
    while (nRead < buffer.size()) {
        if (Interrupted())
            throw Fault{InterruptStatus(), "interrupted"};
        DWORD nGot = 0;
        const bool bRead = ReadFile(HandleOf(m_handle), buffer.data() + nRead,
                                    static_cast<DWORD>(buffer.size() - nRead), &nGot, nullptr);
        if (!bRead && GetLastError() != ERROR_BROKEN_PIPE) // the end of a pipe
            ThrowSystemFault(GetLastError());
        if (!bRead || nGot == 0)
            break;
        nRead += nGot;
    }
    return nRead;
}

} // namespace tabulex
