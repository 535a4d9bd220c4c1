// A name is found by the 32-bit hash of its lower-cased text, h * 33 + unit for each unit:
// first among the English short names, then among those of the user's language. Texts with
// the same hash count as the same name.

#include "src/parsing/templates/MonthNames.h"

#include <algorithm>
#include <array>
#include <optional>

#include "platform/values.h"
#include "src/parsing/templates/TextTests.h"
#include "src/values/CaseFold.h"

namespace Hesperon::specifics {

namespace {

constexpr int kMonths = 12;

// Empty for a month without a name.
using MonthHashes = std::array<std::optional<std::uint32_t>, kMonths>;

std::uint32_t HashOf(string_view_t sText)
{
    std::uint32_t hash = 0;
    for (OLECHAR c : sText)
        hash = hash * 33 + FoldCase(c);
    return hash;
}

MonthHashes EnglishHashes()
{
    constexpr string_view_t kNames = OLESTR("janfebmaraprmayjunjulaugsepoctnovdec");
    MonthHashes hashes;
    for (std::size_t i = 0; i < kMonths; ++i)
        hashes[i] = HashOf(kNames.substr(i * 3, 3));
    return hashes;
}

MonthHashes UserHashes()
{
    constexpr INT kAbbreviated = 1;
    MonthHashes hashes;
    for (int i = 0; i < kMonths; ++i) {
        Bstr name;
        if (SUCCEEDED(VarMonthName(i + 1, kAbbreviated, 0, name.put())))
            hashes[i] = HashOf(name.view());
    }
    return hashes;
}

int IndexOf(const MonthHashes& hashes, std::uint32_t hash)
{
    const auto at = std::ranges::find(hashes, std::optional(hash));
    return at == hashes.end() ? -1 : static_cast<int>(at - hashes.begin());
}

} // namespace

int FindMonthIndex(string_view_t sText)
{
    static const MonthHashes english = EnglishHashes();
    const std::uint32_t hash = HashOf(sText.substr(0, kMaxText));
    const int nIndex = IndexOf(english, hash);
    if (nIndex >= 0)
        return nIndex;
    static const MonthHashes user = UserHashes();
    return IndexOf(user, hash);
}

} // namespace Hesperon::specifics
