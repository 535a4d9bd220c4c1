#include "platform/Folders.h"

#include <chrono>

#include <shlobj.h>

std::filesystem::path PathOfText(string_view_t sPath)
{
    return sPath;
}

string_t TextOfPath(const std::filesystem::path& path)
{
    return path.native();
}

DATE LocalTime(std::filesystem::file_time_type time)
{
    const auto since = std::chrono::file_clock::to_sys(time).time_since_epoch();
    // 100 ns from 1601, the system's own count.
    constexpr LONGLONG kUnixEpoch = 11644473600;
    const LONGLONG n = std::chrono::floor<std::chrono::seconds>(since).count() + kUnixEpoch;
    ULARGE_INTEGER ticks{};
    ticks.QuadPart = static_cast<ULONGLONG>(n) * 10'000'000;
    const FILETIME file{ticks.LowPart, ticks.HighPart};
    SYSTEMTIME world{}, local{};
    DATE date = 0;
    return n >= 0 && FileTimeToSystemTime(&file, &world) &&
                   SystemTimeToTzSpecificLocalTime(nullptr, &world, &local) &&
                   SystemTimeToVariantTime(&local, &date)
               ? date
               : 0;
}

string_t StartFolder()
{
    wchar_t path[MAX_PATH] = L"";
    return SHGetFolderPathW(nullptr, CSIDL_DESKTOPDIRECTORY, nullptr, SHGFP_TYPE_CURRENT, path) ==
                   S_OK
               ? path
               : L"";
}
