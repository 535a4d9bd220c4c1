#include "tools/tabulex/system/Surroundings.h"

#include <cstdlib>
#include <string_view>
#include <thread>

#include <sched.h>

namespace tabulex {

std::vector<std::string> CommandLineArguments(int argc, char** argv)
{
    return {argv, argv + argc};
}

bool IsSystemChinese()
{
    return false;
}

// The first of the locale's variables that isn't empty counts.
std::string LocaleEncoding()
{
    std::string_view locale;
    for (const char* pszName : {"LC_ALL", "LC_CTYPE", "LANG"})
        if (const char* pszValue = std::getenv(pszName); pszValue && *pszValue) {
            locale = pszValue;
            break;
        }
    if (locale.empty() || locale == "C" || locale == "POSIX")
        return "windows-1252";
    const std::size_t nDot = locale.find('.');
    if (nDot == std::string_view::npos)
        return {};
    locale.remove_prefix(nDot + 1);
    return std::string(locale.substr(0, locale.find('@')));
}

// A system of more processors than the set has places for is asked in another way.
unsigned ProcessorCount()
{
    cpu_set_t set;
    return ::sched_getaffinity(0, sizeof set, &set) == 0 ? static_cast<unsigned>(CPU_COUNT(&set))
                                                         : std::thread::hardware_concurrency();
}

} // namespace tabulex
