#include "src/parsing/templates/TextTests.h"

#include <algorithm>
#include <array>
#include <bitset>

#include "diagnostics/FaultmereClient.h"
#include "src/values/CaseFold.h"

namespace Hesperon::specifics {

namespace {

enum CharClass : std::uint8_t
{
    Digit = 1,
    Sign = 2,
    Mark = 4, // decimal or thousands
    Divider = 8,
};

// One table for all tests. A character beyond it is in no class; as a template divider only its low
// byte counts.
constexpr auto kClasses = [] {
    std::array<std::uint8_t, 256> classes{};
    const auto mark = [&](std::string_view set, CharClass charClass) {
        for (unsigned char c : set)
            classes[c] = static_cast<std::uint8_t>(classes[c] | charClass);
    };
    mark("0123456789", Digit);
    mark("-+", Sign);
    mark(".,", Mark);
    mark(":/\\.,=|-_ ", Divider);
    return classes;
}();

bool ConsistsOf(string_view_t sText, unsigned classes)
{
    return std::ranges::all_of(
        sText, [=](OLECHAR c) { return c < kClasses.size() && (kClasses[c] & classes); });
}

string_view_t FractionOf(string_view_t sText)
{
    std::size_t at = sText.find(OLESTR('.'));
    if (at == sText.npos)
        at = sText.find(OLESTR(','));
    return at == sText.npos ? string_view_t() : sText.substr(at + 1);
}

} // namespace

bool IsFloatText(string_view_t sText)
{
    return ConsistsOf(sText, Digit | Sign | Mark);
}

bool IsIntegerText(string_view_t sText, bool bAllowFraction)
{
    if (!bAllowFraction)
        return ConsistsOf(sText, Digit | Sign);
    return IsFloatText(sText) && FractionOf(sText).find_first_not_of(OLESTR('0')) == sText.npos;
}

bool IsTemplateDivider(OLECHAR c)
{
    return kClasses[c & 0xFF] & Divider;
}

string_view_t RemoveBoundaryDividers(string_view_t sText)
{
    FaultmereUtil::Assert(sText.data() != nullptr, "0 != szCase");
    std::size_t nSize = sText.size();
    while (nSize > 0 && IsTemplateDivider(sText[nSize - 1]))
        --nSize;
    return nSize > 0 ? sText.substr(0, nSize) : sText;
}

// Each character of the first text takes the first equal one of the second that is still
// free. If the second text is a single character, its match counts as the whole first text,
// so that one letter can name a column.
std::size_t FindMatchCount(string_view_t sFirst, string_view_t sSecond)
{
    const std::size_t nWeight = sSecond.size() == 1 ? sFirst.size() : 1;
    sSecond = sSecond.substr(0, kMaxText);
    std::bitset<kMaxText> taken;
    std::size_t nCount = 0;
    for (OLECHAR cFirst : sFirst)
        for (std::size_t i = 0; i < sSecond.size(); ++i) {
            FaultmereUtil::Assert(cFirst && sSecond[i], "cFirst && cSecond");
            if (taken[i] || FoldCase(cFirst) != FoldCase(sSecond[i]))
                continue;
            taken[i] = true;
            nCount += nWeight;
            break;
        }
    return nCount;
}

} // namespace Hesperon::specifics
