#include "Simples/interface/ResourceModule.h"

#include "platform/Module_win32.h"

namespace {

// Loaded at first use, and unloaded with this module.
class EnglishModule
{
public:
    EnglishModule()
        : m_hModule(LoadLibraryW(PathBeside(ThisModule(), L"TabulexConverterEnglish.dll").c_str()))
    {}
    ~EnglishModule()
    {
        if (m_hModule)
            FreeLibrary(m_hModule);
    }
    HMODULE Handle() const { return m_hModule; }

private:
    const HMODULE m_hModule;
};

} // namespace

LONG_PTR OwnStrings(Language language)
{
    if (language == Language::English) {
        static const EnglishModule english;
        if (english.Handle())
            return reinterpret_cast<LONG_PTR>(english.Handle());
    }
    return reinterpret_cast<LONG_PTR>(ThisModule());
}

// Given no buffer, the call gives a pointer to the text itself.
string_view_t StringAt(LONG_PTR nHandle, unsigned nId)
{
    const OLECHAR* pText = nullptr;
    const int nUnits =
        LoadStringW(reinterpret_cast<HINSTANCE>(nHandle), nId, reinterpret_cast<LPWSTR>(&pText), 0);
    return nUnits > 0 ? string_view_t(pText, static_cast<std::size_t>(nUnits)) : string_view_t();
}
