// The module that this code lies in: the component's library, or a program that links it.
#pragma once

#include "platform/component.h"

inline HMODULE ThisModule()
{
    static const char place = 0;
    HMODULE hModule = nullptr;
    GetModuleHandleExW(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS |
                           GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT,
                       reinterpret_cast<const wchar_t*>(&place), &hModule);
    return hModule;
}

// Of a module's file.
inline string_t PathOf(HMODULE hModule)
{
    string_t path(32768, L'\0'); // the longest that the system knows
    path.resize(GetModuleFileNameW(hModule, path.data(), static_cast<DWORD>(path.size())));
    return path;
}

// Of a file in the module's folder.
inline string_t PathBeside(HMODULE hModule, string_view_t sFile)
{
    string_t path = PathOf(hModule);
    path.resize(path.rfind(L'\\') + 1);
    return path.append(sFile);
}
