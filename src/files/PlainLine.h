// The copy of a line that needs nothing else: ASCII, of one byte a character or of two.
//
// Most lines of a quote file are such lines. Their end is found while they are copied, so that
// each byte is looked at once. Of two bytes the one that is zero is left out.
#pragma once

#include <bit>
#include <cstdint>
#include <cstring>

#ifdef __SSE2__
#include <emmintrin.h>
#endif

namespace Hesperon::specifics::PlainLine {

inline constexpr std::size_t kBlock = 16; // bytes that are looked at together
inline constexpr std::size_t kMaxLine = 512;
// Bytes that a copy may write.
inline constexpr std::size_t kRoom = kMaxLine + kBlock;
inline constexpr std::size_t kNone = ~std::size_t{0};

namespace details {

// What stands where in a block, a bit for each byte, the first one lowest.
struct Marks
{
    std::uint32_t nLineEnds;
    std::uint32_t nOdd; // bytes that no such line has at their place
};

#ifdef __SSE2__

inline Marks CopyBlock(const char* p, char* out)
{
    const __m128i bytes = _mm_loadu_si128(reinterpret_cast<const __m128i*>(p));
    _mm_storeu_si128(reinterpret_cast<__m128i*>(out), bytes);
    const auto bits = [](__m128i marks) {
        return static_cast<std::uint32_t>(_mm_movemask_epi8(marks));
    };
    const __m128i ends = _mm_or_si128(_mm_cmpeq_epi8(bytes, _mm_set1_epi8('\n')),
                                      _mm_cmpeq_epi8(bytes, _mm_set1_epi8('\r')));
    return {bits(ends), bits(_mm_cmplt_epi8(bytes, _mm_set1_epi8(1)))};
}

// Of characters whose second byte is zero, which aren't copied: eight bytes go to `out`.
inline Marks CopyWideBlock(const char* p, char* out)
{
    const __m128i units = _mm_loadu_si128(reinterpret_cast<const __m128i*>(p));
    _mm_storel_epi64(reinterpret_cast<__m128i*>(out), _mm_packus_epi16(units, units));
    const auto bits = [](__m128i marks) {
        return static_cast<std::uint32_t>(_mm_movemask_epi8(marks));
    };
    const __m128i ends = _mm_or_si128(_mm_cmpeq_epi8(units, _mm_set1_epi8('\n')),
                                      _mm_cmpeq_epi8(units, _mm_set1_epi8('\r')));
    const __m128i odd = _mm_or_si128(_mm_cmplt_epi16(units, _mm_set1_epi16(1)),
                                     _mm_cmpgt_epi16(units, _mm_set1_epi16(0x7F)));
    return {bits(ends), bits(odd)};
}

#else

inline Marks CopyBlock(const char* p, char* out)
{
    Marks marks{};
    for (std::size_t i = 0; i < kBlock; ++i) {
        const char c = out[i] = p[i];
        marks.nLineEnds |= static_cast<std::uint32_t>(c == '\n' || c == '\r') << i;
        marks.nOdd |= static_cast<std::uint32_t>(static_cast<signed char>(c) < 1) << i;
    }
    return marks;
}

inline Marks CopyWideBlock(const char* p, char* out)
{
    Marks marks{};
    for (std::size_t i = 0; i < kBlock; i += 2) {
        const char c = out[i / 2] = p[i];
        const bool bOdd = static_cast<signed char>(c) < 1 || p[i + 1] != 0;
        marks.nLineEnds |= static_cast<std::uint32_t>(c == '\n' || c == '\r') << i;
        marks.nLineEnds |= static_cast<std::uint32_t>(p[i + 1] == '\n' || p[i + 1] == '\r')
                           << (i + 1);
        marks.nOdd |= (bOdd ? std::uint32_t{3} : 0) << i;
    }
    return marks;
}

#endif

} // namespace details

// Bytes a character.
enum class Width
{
    One = 1,
    Two = 2
};

// Copies the bytes from p on up to the first CR or LF, without the zero bytes of characters of two,
// and gives the number of bytes passed. kNone where that isn't such a line: it has other bytes,
// more than kMaxLine of them, or its end isn't followed by enough bytes before pEnd to be sure.
// Writes kRoom bytes to `out` at most, whatever it gives.
template <Width width>
std::size_t Copy(const char* p, const char* pEnd, char* out)
{
    constexpr bool bWide = width == Width::Two;
    for (std::size_t n = 0; n <= kMaxLine - kBlock; n += kBlock) {
        if (pEnd - p < static_cast<std::ptrdiff_t>(n + kBlock))
            return kNone;
        const details::Marks marks =
            bWide ? details::CopyWideBlock(p + n, out + n / 2) : details::CopyBlock(p + n, out + n);
        if (marks.nLineEnds == 0 && marks.nOdd == 0)
            continue;
        const int nEnd = std::countr_zero(marks.nLineEnds); // 32 without one
        // The second byte of a character that ends the line belongs to the gap behind it.
        const bool bWhole = std::countr_zero(marks.nOdd) >= nEnd && (!bWide || nEnd % 2 == 0);
        return bWhole ? n + static_cast<std::size_t>(nEnd) : kNone;
    }
    return kNone;
}

} // namespace Hesperon::specifics::PlainLine
