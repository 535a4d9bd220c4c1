#include <unicode/ucnv.h>

#include "platform/text/CodePage.h"
#include "platform/text/CodePageNames_icu.h"

namespace {

struct DescribedPage
{
    UINT nCodePage;
    const OLECHAR* pszDescription;
};

// By description, as a user looks for one.
constexpr DescribedPage kDescribedPages[] = {
    {28596, u"Arabic (ISO)"},
    {1256, u"Arabic (Windows)"},
    {28594, u"Baltic (ISO)"},
    {1257, u"Baltic (Windows)"},
    {852, u"Central European (DOS)"},
    {28592, u"Central European (ISO)"},
    {1250, u"Central European (Windows)"},
    {51936, u"Chinese Simplified (EUC)"},
    {54936, u"Chinese Simplified (GB18030)"},
    {936, u"Chinese Simplified (GBK)"},
    {52936, u"Chinese Simplified (HZ)"},
    {950, u"Chinese Traditional (Big5)"},
    {866, u"Cyrillic (DOS)"},
    {28595, u"Cyrillic (ISO)"},
    {20866, u"Cyrillic (KOI8-R)"},
    {21866, u"Cyrillic (KOI8-U)"},
    {1251, u"Cyrillic (Windows)"},
    {28603, u"Estonian (ISO)"},
    {28597, u"Greek (ISO)"},
    {1253, u"Greek (Windows)"},
    {28598, u"Hebrew (ISO-Visual)"},
    {1255, u"Hebrew (Windows)"},
    {51932, u"Japanese (EUC)"},
    {50220, u"Japanese (JIS)"},
    {932, u"Japanese (Shift-JIS)"},
    {51949, u"Korean (EUC)"},
    {50225, u"Korean (ISO)"},
    {949, u"Korean (Windows)"},
    {28593, u"Latin 3 (ISO)"},
    {28605, u"Latin 9 (ISO)"},
    {874, u"Thai (Windows)"},
    {28599, u"Turkish (ISO)"},
    {1254, u"Turkish (Windows)"},
    {1200, u"Unicode"},
    {1201, u"Unicode (Big-Endian)"},
    {65000, u"Unicode (UTF-7)"},
    {65001, u"Unicode (UTF-8)"},
    {20127, u"US-ASCII"},
    {1258, u"Vietnamese (Windows)"},
    {437, u"Western European (DOS, United States)"},
    {850, u"Western European (DOS)"},
    {28591, u"Western European (ISO)"},
    {10000, u"Western European (Mac)"},
    {1252, u"Western European (Windows)"},
};

// By name alone: opening a converter for each page would take time and memory.
bool HasConverter(UINT nCodePage)
{
    UErrorCode status = U_ZERO_ERROR;
    return ucnv_countAliases(ConverterName(nCodePage).c_str(), &status) > 0;
}

} // namespace

std::vector<CodePageDescription> CodePages()
{
    std::vector<CodePageDescription> pages;
    for (const DescribedPage& page : kDescribedPages)
        if (HasConverter(page.nCodePage))
            pages.push_back({page.nCodePage, page.pszDescription});
    return pages;
}
