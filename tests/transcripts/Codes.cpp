#include "tests/transcripts/Codes.h"

#include <algorithm>
#include <cstdio>
#include <iterator>

namespace transcripts {

namespace {

struct Code
{
    HRESULT hr;
    const char* pszName;
};

constexpr Code kCodes[] = {
    {S_OK, "S_OK"},
    {S_FALSE, "S_FALSE"},
    {E_FAIL, "E_FAIL"},
    {E_INVALIDARG, "E_INVALIDARG"},
    {E_NOINTERFACE, "E_NOINTERFACE"},
    {E_POINTER, "E_POINTER"},
    {E_UNEXPECTED, "E_UNEXPECTED"},
    {DISP_E_BADPARAMCOUNT, "DISP_E_BADPARAMCOUNT"},
    {DISP_E_MEMBERNOTFOUND, "DISP_E_MEMBERNOTFOUND"},
    {DISP_E_OVERFLOW, "DISP_E_OVERFLOW"},
    {DISP_E_TYPEMISMATCH, "DISP_E_TYPEMISMATCH"},
    {DISP_E_UNKNOWNNAME, "DISP_E_UNKNOWNNAME"},
};

} // namespace

std::string CodeName(HRESULT hr)
{
    const auto* at = std::ranges::find(kCodes, hr, &Code::hr);
    if (at != std::end(kCodes))
        return at->pszName;
    char text[12];
    std::snprintf(text, sizeof text, "%08lx", static_cast<unsigned long>(hr) & 0xFFFFFFFF);
    return text;
}

} // namespace transcripts
