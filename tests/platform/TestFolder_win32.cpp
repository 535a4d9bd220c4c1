#include "TestFolder.h"

#include <winioctl.h>

void WriteAt(const std::filesystem::path& path, std::uint64_t offset, std::string_view bytes)
{
    const HANDLE file = CreateFileW(path.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS,
                                    FILE_ATTRIBUTE_NORMAL, nullptr);
    DWORD nBytes = 0;
    DeviceIoControl(file, FSCTL_SET_SPARSE, nullptr, 0, nullptr, 0, &nBytes, nullptr);
    LARGE_INTEGER place;
    place.QuadPart = static_cast<LONGLONG>(offset);
    SetFilePointerEx(file, place, nullptr, FILE_BEGIN);
    WriteFile(file, bytes.data(), static_cast<DWORD>(bytes.size()), &nBytes, nullptr);
    CloseHandle(file);
}
