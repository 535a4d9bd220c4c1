// Libraries that are looked up at run time, and the module that code lies in.
//
// File names are UTF-8. Safe from any thread; one object belongs to one thread.
#pragma once

#include <string>
#include <string_view>
#include <utility>

// A reference to a loaded library, or nothing. The library stays loaded at least as
// long as the reference.
class DynamicLibrary
{
public:
    DynamicLibrary() = default;
    DynamicLibrary(DynamicLibrary&& other) noexcept
        : m_hLibrary(std::exchange(other.m_hLibrary, nullptr))
    {}
    ~DynamicLibrary();
    DynamicLibrary& operator=(DynamicLibrary other) noexcept
    {
        std::swap(m_hLibrary, other.m_hLibrary);
        return *this;
    }

    // The library of this file name if the process has it already; else nothing.
    static DynamicLibrary FindLoaded(const std::string& sFile);

    // Loads by path, or by name where the system looks for libraries; nothing if
    // that fails.
    static DynamicLibrary Load(const std::string& sFile);

    explicit operator bool() const { return m_hLibrary != nullptr; }

    // An exported entry; null if there is none of the name.
    void* Find(const char* szEntry) const;

    // Lets go of the reference so that the library is never unloaded.
    void KeepForever() { m_hLibrary = nullptr; }

private:
    explicit DynamicLibrary(void* hLibrary) : m_hLibrary(hLibrary) {}

    void* m_hLibrary = nullptr;
};

// A library's file name in the system's manner.
std::string LibraryFileName(std::string_view sStem);

// The path that is registered for a component class, given as "{...}"; empty where
// none is, and on systems without such a register.
std::string RegisteredServerPath(std::string_view sClassId);

struct LoadedModule
{
    const void* pBase; // null for an address in no module
    std::string sPath;
};

// The program or library that the address lies in.
LoadedModule ModuleOf(const void* pAddress);
