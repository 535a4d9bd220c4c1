#include "platform/Folders.h"

#include <chrono>
#include <ctime>

#include "platform/File.h"

std::filesystem::path PathOfText(string_view_t sPath)
{
    return PathToBytes(sPath);
}

string_t TextOfPath(const std::filesystem::path& path)
{
    return PathFromBytes(path.native());
}

DATE LocalTime(std::filesystem::file_time_type time)
{
    const auto since = std::chrono::file_clock::to_sys(time).time_since_epoch();
    const std::time_t n = std::chrono::floor<std::chrono::seconds>(since).count();
    std::tm local{};
    if (!localtime_r(&n, &local))
        return 0;
    SYSTEMTIME parts{};
    parts.wYear = static_cast<WORD>(local.tm_year + 1900);
    parts.wMonth = static_cast<WORD>(local.tm_mon + 1);
    parts.wDay = static_cast<WORD>(local.tm_mday);
    parts.wHour = static_cast<WORD>(local.tm_hour);
    parts.wMinute = static_cast<WORD>(local.tm_min);
    parts.wSecond = static_cast<WORD>(local.tm_sec);
    DATE date = 0;
    return SystemTimeToVariantTime(&parts, &date) ? date : 0;
}

string_t StartFolder()
{
    std::error_code error;
    const std::filesystem::path folder = std::filesystem::current_path(error);
    return error ? string_t() : TextOfPath(folder);
}
