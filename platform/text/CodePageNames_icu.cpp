#include "platform/text/CodePageNames_icu.h"

#include <algorithm>
#include <memory>

#include <fmt/format.h>
#include <unicode/ucnv.h>
#include <unicode/ucsdet.h>

#include "platform/text/CodePage.h"
#include "platform/text/CodePageConverter_icu.h"
#include "platform/text/CodePageNames.h"

namespace {

// The pages that hold more than the ones which have their registered name.
constexpr UINT kWindowsPages[] = {874, 932, 936, 949, 950};

bool SamePage(const char* converter, const char* other)
{
    UErrorCode status = U_ZERO_ERROR;
    const char* a = ucnv_getAlias(converter, 0, &status);
    const char* b = ucnv_getAlias(other, 0, &status);
    return a && b && ucnv_compareNames(a, b) == 0;
}

// Other names of the pages, as far as the converters know them.
UINT NumberOfAlias(const std::string& name)
{
    for (const CodePageName& row : RegisteredCodePages())
        if (SamePage(name.c_str(), ConverterName(row.nCodePage).c_str()))
            return row.nCodePage;
    return 0;
}

} // namespace

std::string ConverterName(UINT nCodePage)
{
    if (std::ranges::find(kWindowsPages, nCodePage) == std::end(kWindowsPages))
        for (const CodePageName& row : RegisteredCodePages())
            if (row.nCodePage == nCodePage)
                return row.name;
    const std::string name = fmt::format("windows-{}", nCodePage);
    UErrorCode status = U_ZERO_ERROR;
    const bool bKnown = ucnv_countAliases(name.c_str(), &status) > 0;
    return bKnown ? name : fmt::format("cp{}", nCodePage);
}

UINT CodePageByName(std::string_view name)
{
    if (const UINT nCodePage = RegisteredCodePage(name))
        return nCodePage;
    if (const UINT nCodePage = CodePageInName(name))
        return CodePageConverter::Find(nCodePage) ? nCodePage : 0;
    return NumberOfAlias(std::string(name));
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
    // More bytes than this don't change the result, and the detector's lengths are 32-bit.
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
