#include "platform/CodePageNames_icu.h"

#include <charconv>
#include <memory>

#include <fmt/format.h>
#include <unicode/ucnv.h>
#include <unicode/ucsdet.h>

#include "platform/CodePage.h"
#include "platform/CodePageConverter_icu.h"

namespace {

struct PageName
{
    UINT nCodePage;
    const char* name;      // the registered one
    const char* converter; // where the converters go by another; else null
};

// The published numbers whose names don't tell them. Where a page stands twice
// the first row is the one that converts.
constexpr PageName kPageNames[] = {
    {65001, "utf-8", nullptr},
    {1200, "utf-16le", nullptr},
    {1200, "utf-16", nullptr},
    {1201, "utf-16be", nullptr},
    {12000, "utf-32le", nullptr},
    {12000, "utf-32", nullptr},
    {12001, "utf-32be", nullptr},
    {65000, "utf-7", nullptr},
    {20127, "us-ascii", nullptr},
    {28591, "iso-8859-1", nullptr},
    {28592, "iso-8859-2", nullptr},
    {28593, "iso-8859-3", nullptr},
    {28594, "iso-8859-4", nullptr},
    {28595, "iso-8859-5", nullptr},
    {28596, "iso-8859-6", nullptr},
    {28597, "iso-8859-7", nullptr},
    {28598, "iso-8859-8", nullptr},
    {28599, "iso-8859-9", nullptr},
    {28603, "iso-8859-13", nullptr},
    {28605, "iso-8859-15", nullptr},
    {936, "gbk", "windows-936"},
    {936, "gb2312", nullptr},
    {950, "big5", "windows-950"},
    {932, "shift_jis", "windows-932"},
    {949, "ks_c_5601-1987", "windows-949"},
    {54936, "gb18030", nullptr},
    {51932, "euc-jp", nullptr},
    {51936, "euc-cn", nullptr},
    {51949, "euc-kr", nullptr},
    {50220, "iso-2022-jp", nullptr},
    {50225, "iso-2022-kr", nullptr},
    {52936, "hz-gb-2312", nullptr},
    {20866, "koi8-r", nullptr},
    {21866, "koi8-u", nullptr},
    {874, "tis-620", "windows-874"},
    {10000, "macintosh", nullptr},
};

const char* Converter(const PageName& row)
{
    return row.converter ? row.converter : row.name;
}

bool SamePage(const char* converter, const char* other)
{
    UErrorCode status = U_ZERO_ERROR;
    const char* a = ucnv_getAlias(converter, 0, &status);
    const char* b = ucnv_getAlias(other, 0, &status);
    return a && b && ucnv_compareNames(a, b) == 0;
}

std::string Lower(std::string_view name)
{
    std::string lower(name);
    for (char& c : lower)
        c = c >= 'A' && c <= 'Z' ? static_cast<char>(c + 0x20) : c;
    return lower;
}

// The number at the end of "936", "cp936", "windows-936" and "ibm-936"; 0 for others.
UINT NumberInName(std::string_view name)
{
    for (std::string_view prefix : {"windows-", "windows", "cp-", "cp", "ibm-", "ibm"})
        if (name.starts_with(prefix)) {
            name.remove_prefix(prefix.size());
            break;
        }
    UINT n = 0;
    const auto result = std::from_chars(name.data(), name.data() + name.size(), n);
    return result.ec == std::errc() && result.ptr == name.data() + name.size() ? n : 0;
}

UINT NumberOfRegisteredName(const std::string& name)
{
    for (const PageName& row : kPageNames)
        if (ucnv_compareNames(name.c_str(), row.name) == 0)
            return row.nCodePage;
    return 0;
}

// Other names of the pages, as far as the converters know them.
UINT NumberOfAlias(const std::string& name)
{
    for (const PageName& row : kPageNames)
        if (SamePage(name.c_str(), Converter(row)))
            return row.nCodePage;
    return 0;
}

} // namespace

std::string ConverterName(UINT nCodePage)
{
    for (const PageName& row : kPageNames)
        if (row.nCodePage == nCodePage)
            return Converter(row);
    const std::string name = fmt::format("windows-{}", nCodePage);
    UErrorCode status = U_ZERO_ERROR;
    const bool bKnown = ucnv_countAliases(name.c_str(), &status) > 0;
    return bKnown ? name : fmt::format("cp{}", nCodePage);
}

UINT CodePageByName(std::string_view name)
{
    const std::string lower = Lower(name);
    if (lower.empty())
        return 0;
    if (const UINT nCodePage = NumberOfRegisteredName(lower))
        return nCodePage;
    if (const UINT nCodePage = NumberInName(lower))
        return CodePageConverter::Find(nCodePage) ? nCodePage : 0;
    return NumberOfAlias(lower);
}

namespace {

struct CloseDetector
{
    void operator()(UCharsetDetector* detector) const { ucsdet_close(detector); }
};

UINT NumberOfMatch(const UCharsetMatch* match)
{
    UErrorCode status = U_ZERO_ERROR;
    const char* name = ucsdet_getName(match, &status);
    return U_SUCCESS(status) ? CodePageByName(name) : 0;
}

// The first match of a page is its best one.
void AddMatch(const UCharsetMatch* match, std::vector<DetectedCodePage>& pages)
{
    const UINT nCodePage = NumberOfMatch(match);
    UErrorCode status = U_ZERO_ERROR;
    const int nConfidence = ucsdet_getConfidence(match, &status);
    for (const DetectedCodePage& page : pages)
        if (page.nCodePage == nCodePage)
            return;
    if (nCodePage != 0)
        pages.push_back({nCodePage, nConfidence});
}

} // namespace

std::vector<DetectedCodePage> DetectCodePages(std::string_view bytes, std::size_t nMost)
{
    std::vector<DetectedCodePage> pages;
    UErrorCode status = U_ZERO_ERROR;
    const std::unique_ptr<UCharsetDetector, CloseDetector> detector(ucsdet_open(&status));
    // More than this tells the detector nothing new and its lengths are 32-bit.
    bytes = bytes.substr(0, 1u << 20);
    ucsdet_setText(detector.get(), bytes.data(), static_cast<int32_t>(bytes.size()), &status);
    int32_t nMatches = 0;
    const UCharsetMatch** matches = ucsdet_detectAll(detector.get(), &nMatches, &status);
    if (U_FAILURE(status))
        return pages;
    for (int32_t n = 0; n < nMatches && pages.size() < nMost; ++n)
        AddMatch(matches[n], pages);
    return pages;
}
