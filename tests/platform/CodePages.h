// Text in code pages, to test with.
#pragma once

#include <string_view>

#include "platform/text/CodePage.h"

struct Coded
{
    UINT nCodePage;
    std::string_view bytes;
    string_view_t text;
};

inline string_t Decode(UINT nCodePage, std::string_view bytes)
{
    string_t text;
    DecodeBytes(nCodePage, bytes, text);
    return text;
}
