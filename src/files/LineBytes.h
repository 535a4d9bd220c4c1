// What the bytes of a line mean, and the search for its end.
//
// The sets differ on purpose: '|' and a tab separate fields, but a line of them
// alone isn't blank to the search for the next line.
#pragma once

#include <array>
#include <bit>
#include <cstdint>
#include <cstring>
#include <string_view>

namespace Hesperon::specifics::LineBytes {

using Class = std::uint8_t;

inline constexpr Class kLineEnd = 1;    // CR and LF
inline constexpr Class kGap = 2;        // skipped after a line: CR, LF, tab, blank, zero
inline constexpr Class kLead = 4;       // skipped before a record's text: CR, LF, tab, blank
inline constexpr Class kBlankLine = 8;  // all that a line without content holds: ": ,;"
inline constexpr Class kSeparator = 16; // between fields: ": ,;|\t" and zero

inline constexpr std::array<Class, 256> kClasses = [] {
    std::array<Class, 256> classes{};
    const auto add = [&](std::string_view bytes, Class what) {
        for (const char c : bytes)
            classes[static_cast<unsigned char>(c)] |= what;
    };
    using namespace std::string_view_literals;
    add("\r\n"sv, kLineEnd);
    add("\r\n\t \0"sv, kGap);
    add("\r\n\t "sv, kLead);
    add(": ,;"sv, kBlankLine);
    add(": ,;|\t\0"sv, kSeparator);
    return classes;
}();

inline bool Is(char c, Class what)
{
    return kClasses[static_cast<unsigned char>(c)] & what;
}

// The first byte of [p, pEnd) that isn't of the class, or pEnd.
inline const char* SkipClass(const char* p, const char* pEnd, Class what)
{
    while (p != pEnd && Is(*p, what))
        ++p;
    return p;
}

// Whether [p, pEnd), at least one byte, holds nothing but zeros.
inline bool AreZeros(const char* p, const char* pEnd)
{
    return *p == 0 && std::memcmp(p, p + 1, pEnd - p - 1) == 0;
}

namespace details {

// 16 bytes that are compared at once; all bits of a byte are set where it is equal.
using Block = signed char __attribute__((vector_size(16)));

inline Block LineEndsOf(const char* p)
{
    Block bytes;
    std::memcpy(&bytes, p, sizeof bytes);
    return (bytes == '\r') | (bytes == '\n');
}

// Place of the first byte that is set, 16 for none.
inline std::ptrdiff_t FirstSet(Block marks)
{
    static_assert(std::endian::native == std::endian::little);
    std::uint64_t halves[2];
    std::memcpy(halves, &marks, sizeof halves);
    return halves[0] ? std::countr_zero(halves[0]) / 8 : 8 + std::countr_zero(halves[1]) / 8;
}

inline bool HasSet(Block marks)
{
    std::uint64_t halves[2];
    std::memcpy(halves, &marks, sizeof halves);
    return (halves[0] | halves[1]) != 0;
}

} // namespace details

// The first CR or LF of [p, pEnd), or pEnd. Compares 32 bytes at a time: this is where
// the scan of a file spends its time.
inline const char* FindLineEnd(const char* p, const char* pEnd)
{
    for (; pEnd - p >= 32; p += 32) {
        const details::Block first = details::LineEndsOf(p);
        const details::Block second = details::LineEndsOf(p + 16);
        if (!details::HasSet(first | second))
            continue;
        const std::ptrdiff_t nFirst = details::FirstSet(first);
        return p + (nFirst < 16 ? nFirst : 16 + details::FirstSet(second));
    }
    while (p != pEnd && !Is(*p, kLineEnd))
        ++p;
    return p;
}

} // namespace Hesperon::specifics::LineBytes
