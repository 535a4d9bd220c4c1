#include "tools/tabulex/system/Surroundings.h"

#include <bit>

#include "tools/tabulex/text/Text.h"

#include <shellapi.h>

namespace tabulex {

// The arguments of main have lost the characters that the system's code page lacks.
std::vector<std::string> CommandLineArguments(int, char**)
{
    std::vector<std::string> arguments;
    int nArguments = 0;
    wchar_t** ppArguments = CommandLineToArgvW(GetCommandLineW(), &nArguments);
    for (int i = 0; i < nArguments; ++i)
        arguments.push_back(ToUtf8(ppArguments[i]));
    LocalFree(ppArguments);
    return arguments;
}

bool IsSystemChinese()
{
    return PRIMARYLANGID(GetUserDefaultUILanguage()) == LANG_CHINESE;
}

std::string LocaleEncoding()
{
    return std::to_string(GetACP());
}

unsigned ProcessorCount()
{
    DWORD_PTR own = 0;
    DWORD_PTR all = 0;
    GetProcessAffinityMask(GetCurrentProcess(), &own, &all);
    return static_cast<unsigned>(std::popcount(own));
}

} // namespace tabulex
