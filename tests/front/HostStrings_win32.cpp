#include "tests/front/HostStrings.h"

LONG_PTR HostStrings()
{
    static const HMODULE hModule = LoadLibraryW(L"host_strings.dll");
    return reinterpret_cast<LONG_PTR>(hModule);
}
