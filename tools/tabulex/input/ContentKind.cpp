// Signatures are certain and come first. What has none is judged by counts over the first bytes.
// Text of two bytes a character has zeros for 3 in 10 of its high bytes, as digits and dividers
// give them even where words are Chinese, and for 1 in 50 of its low ones at most. Of other text 1
// byte in 20 may be a control character, which leaves room for stray ones. Everything else is text.

#include "tools/tabulex/input/ContentKind.h"

#include <algorithm>
#include <array>

#include <fmt/format.h>

#include "tools/tabulex/text/Formats.h"

namespace tabulex {

namespace {

using namespace std::string_view_literals;

struct ContentSignature
{
    std::string_view bytes;
    ContentKind kind;
    std::size_t nAt = 0;
};

// Longer ones first where one begins like another.
constexpr ContentSignature kContentSignatures[] = {
    {"\x1F\x8B"sv, ContentKind::Gzip},
    {"\x28\xB5\x2F\xFD"sv, ContentKind::Packed},            // zstd
    {"\xFD\x37zXZ\0"sv, ContentKind::Packed},               // xz
    {"1AY&SY"sv, ContentKind::Packed, 4},                   // bzip2
    {"\x17\x72\x45\x38\x50\x90"sv, ContentKind::Packed, 4}, // bzip2 of nothing
    {"PK\3\4"sv, ContentKind::Zip},
    {"ustar"sv, ContentKind::Tar, 257},
    {"\xEF\xBB\xBF"sv, ContentKind::Utf8},
    {"\xFF\xFE"sv, ContentKind::Utf16Le},
    {"\xFE\xFF"sv, ContentKind::Utf16Be},
};

// What would be taken for something else.
struct RefusedStart
{
    std::string_view bytes;
    const char* pszReason;
};

constexpr RefusedStart kRefusedStarts[] = {
    {"\xFF\xFE\0\0"sv,
     "is text in UTF-32, which isn't read; convert it by 'iconv -f UTF-32 -t UTF-8'"},
    {"\0\0\xFE\xFF"sv,
     "is text in UTF-32, which isn't read; convert it by 'iconv -f UTF-32 -t UTF-8'"},
    {"PK\5\6"sv, "is an empty archive; fetch it anew"},
};

// What stands further behind could stand in a text too, but for the zeros around it.
bool HasSignature(std::string_view head, const ContentSignature& row)
{
    const bool bThere = head.size() >= row.nAt && head.substr(row.nAt).starts_with(row.bytes);
    return bThere &&
           (row.kind != ContentKind::Tar || head.substr(0, row.nAt).find('\0') != head.npos);
}

// Characters that stand in no text, with the zero.
bool IsControl(unsigned char c)
{
    return c < 0x20 && !(c >= '\t' && c <= '\r') && c != 0x1A && c != 0x1B;
}

// Of the bytes at even places and of those at odd ones.
struct ByteCounts
{
    std::array<std::size_t, 2> zeros{};
    std::array<std::size_t, 2> controls{}; // without the zeros
};

ByteCounts CountBytes(std::string_view head)
{
    ByteCounts counts;
    for (std::size_t i = 0; i < head.size(); ++i) {
        const auto c = static_cast<unsigned char>(head[i]);
        counts.zeros[i % 2] += c == 0;
        counts.controls[i % 2] += c != 0 && IsControl(c);
    }
    return counts;
}

// Whether the bytes at these places are the high ones of two-byte text: many are zero, while
// few of the low ones are zero or control characters.
bool AreHighBytes(const ByteCounts& counts, std::size_t nParity, std::size_t nPairs)
{
    const std::size_t nOther = 1 - nParity;
    return counts.zeros[nParity] * 10 >= nPairs * 3 && counts.zeros[nOther] * 50 <= nPairs &&
           counts.controls[nOther] * 50 <= nPairs;
}

Content RecogniseByCounts(std::string_view head)
{
    constexpr std::size_t kLeastPairs = 4;
    constexpr std::size_t kLeastOdd = 8; // a few say nothing of a short file
    const ByteCounts counts = CountBytes(head);
    const std::size_t nPairs = head.size() / 2;
    if (nPairs >= kLeastPairs && AreHighBytes(counts, 1, nPairs))
        return {ContentKind::Utf16Le, 0, {}};
    if (nPairs >= kLeastPairs && AreHighBytes(counts, 0, nPairs))
        return {ContentKind::Utf16Be, 0, {}};
    const std::size_t nOdd =
        counts.zeros[0] + counts.zeros[1] + counts.controls[0] + counts.controls[1];
    if (nOdd < kLeastOdd || nOdd * 20 <= head.size())
        return {};
    return {
        ContentKind::Binary, 0,
        fmt::format("is no text: {} of its first {} bytes are zeros or control characters; give "
                    "the text file with the quotes",
                    WithThousands(nOdd), WithThousands(head.size()))};
}

} // namespace

Content RecogniseContent(std::string_view head)
{
    for (const RefusedStart& row : kRefusedStarts)
        if (head.starts_with(row.bytes))
            return {ContentKind::Refused, 0, row.pszReason};
    for (const ContentSignature& row : kContentSignatures)
        if (HasSignature(head, row)) {
            const bool bMark = !IsArchive(row.kind);
            return {row.kind, bMark ? row.bytes.size() : 0, {}};
        }
    return RecogniseByCounts(head);
}

} // namespace tabulex
