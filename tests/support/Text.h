// Texts of tests: UTF-16 to something that can be printed and compared, and back.
#pragma once

#include <string>
#include <string_view>

#include "platform/text/CodePage.h"
#include "platform/values.h"

inline constexpr UINT kUtf8 = 65001;

inline std::string Utf8(string_view_t sText)
{
    return EncodeText(kUtf8, sText);
}

inline string_t Wide(std::string_view sText)
{
    string_t result;
    DecodeBytes(kUtf8, sText, result);
    return result;
}
