#include "platform/DynamicLibrary.h"

#include <dlfcn.h>

DynamicLibrary::~DynamicLibrary()
{
    if (m_hLibrary)
        dlclose(m_hLibrary);
}

// Counts as one more user of the library, which the destructor takes back.
DynamicLibrary DynamicLibrary::FindLoaded(const std::string& sFile)
{
    return DynamicLibrary(dlopen(sFile.c_str(), RTLD_NOW | RTLD_NOLOAD));
}

// RTLD_NOW: a library that lacks a symbol fails here, and not in the middle of a call.
DynamicLibrary DynamicLibrary::Load(const std::string& sFile)
{
    return DynamicLibrary(dlopen(sFile.c_str(), RTLD_NOW | RTLD_LOCAL));
}

void* DynamicLibrary::Find(const char* szEntry) const
{
    return m_hLibrary ? dlsym(m_hLibrary, szEntry) : nullptr;
}

std::string LibraryFileName(std::string_view sStem)
{
    return "lib" + std::string(sStem) + ".so";
}

std::string RegisteredServerPath(std::string_view)
{
    return {};
}

LoadedModule ModuleOf(const void* pAddress)
{
    Dl_info info;
    if (!dladdr(pAddress, &info))
        return {nullptr, {}};
    return {info.dli_fbase, info.dli_fname ? info.dli_fname : ""};
}
