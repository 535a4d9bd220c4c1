#include "platform/DynamicLibrary.h"

#include "platform/File.h"

namespace {

std::string ModulePath(HMODULE hModule)
{
    string_t path(32768, L'\0'); // the longest that the system knows
    path.resize(GetModuleFileNameW(hModule, path.data(), static_cast<DWORD>(path.size())));
    return PathToBytes(path);
}

} // namespace

DynamicLibrary::~DynamicLibrary()
{
    if (m_hLibrary)
        FreeLibrary(static_cast<HMODULE>(m_hLibrary));
}

// Counts as one more user of the library, which the destructor takes back.
DynamicLibrary DynamicLibrary::FindLoaded(const std::string& sFile)
{
    HMODULE hModule = nullptr;
    GetModuleHandleExW(0, PathFromBytes(sFile).c_str(), &hModule);
    return DynamicLibrary(hModule);
}

DynamicLibrary DynamicLibrary::Load(const std::string& sFile)
{
    return DynamicLibrary(LoadLibraryW(PathFromBytes(sFile).c_str()));
}

void* DynamicLibrary::Find(const char* szEntry) const
{
    if (!m_hLibrary)
        return nullptr;
    return reinterpret_cast<void*>(GetProcAddress(static_cast<HMODULE>(m_hLibrary), szEntry));
}

std::string LibraryFileName(std::string_view sStem)
{
    return std::string(sStem).append(".dll");
}

std::string RegisteredServerPath(std::string_view sClassId)
{
    const string_t key = L"CLSID\\" + PathFromBytes(sClassId) + L"\\InprocServer32";
    string_t path(32768, L'\0');
    auto nBytes = static_cast<LONG>(path.size() * sizeof(wchar_t));
    if (RegQueryValueW(HKEY_CLASSES_ROOT, key.c_str(), path.data(), &nBytes) != ERROR_SUCCESS)
        return {};
    return PathToBytes(path.c_str());
}

LoadedModule ModuleOf(const void* pAddress)
{
    HMODULE hModule = nullptr;
    if (!GetModuleHandleExW(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS |
                                GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT,
                            static_cast<const wchar_t*>(pAddress), &hModule))
        return {nullptr, {}};
    return {hModule, ModulePath(hModule)};
}
