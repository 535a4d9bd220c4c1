// The component library, loaded at run time. (On Windows by LoadLibrary and
// GetProcAddress.)
#pragma once

#include <dlfcn.h>
#include <stdexcept>

class Library
{
public:
    // Throws std::runtime_error. The library stays loaded until the process ends.
    static void Load(const char* pszPath)
    {
        m_handle = dlopen(pszPath, RTLD_NOW);
        if (!m_handle)
            throw std::runtime_error(dlerror());
    }

    // An exported entry, as in Entry<decltype(DllGetClassObject)>("DllGetClassObject").
    template <class Function>
    static Function* Entry(const char* pszName)
    {
        void* const p = dlsym(m_handle, pszName);
        if (!p)
            throw std::runtime_error(dlerror());
        return reinterpret_cast<Function*>(p);
    }

private:
    static inline void* m_handle = nullptr;
};
