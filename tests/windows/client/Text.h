// Values as text, whatever the user's settings.
#pragma once

#include <comdef.h>

#include <string>

inline std::string Narrow(const std::wstring& text)
{
    std::string narrow(text.size() * 3, '\0'); // no unit takes more
    const int nLength =
        WideCharToMultiByte(CP_UTF8, 0, text.data(), static_cast<int>(text.size()), narrow.data(),
                            static_cast<int>(narrow.size()), nullptr, nullptr);
    narrow.resize(static_cast<std::size_t>(nLength));
    return narrow;
}

inline std::string TextOf(const VARIANT& value)
{
    if (value.vt == VT_DATE) {
        SYSTEMTIME t{};
        VariantTimeToSystemTime(value.date, &t);
        char text[32];
        std::snprintf(text, sizeof text, "%d-%02d-%02d %02d:%02d:%02d", t.wYear, t.wMonth, t.wDay,
                      t.wHour, t.wMinute, t.wSecond);
        return text;
    }
    _variant_t text;
    _com_util::CheckError(
        VariantChangeTypeEx(&text, const_cast<VARIANT*>(&value), LOCALE_INVARIANT, 0, VT_BSTR));
    return Narrow(std::wstring(text.bstrVal, SysStringLen(text.bstrVal)));
}
