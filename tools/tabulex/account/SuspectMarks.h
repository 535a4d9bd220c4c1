// Tests on bytes and their neighbours, for sixteen places at a time: a block holds the bytes from
// the first place on, a mask has all bits of a place set where the test holds. The vectors are the
// compiler's own, so they are instructions where the machine has them and loops elsewhere.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>

namespace tabulex {

inline constexpr std::size_t kPlaces = 16;
using ByteBlock = unsigned char __attribute__((vector_size(kPlaces)));
using ByteMask = signed char __attribute__((vector_size(kPlaces)));

// Of the kPlaces bytes from p on.
inline ByteBlock BlockAt(const char* p)
{
    ByteBlock block;
    std::memcpy(&block, p, sizeof block);
    return block;
}

inline ByteMask Is(ByteBlock block, char c)
{
    return block == static_cast<unsigned char>(c);
}

// nCount bytes from cFirst on.
inline ByteMask IsAmong(ByteBlock block, char cFirst, unsigned char nCount)
{
    return block - static_cast<unsigned char>(cFirst) < nCount;
}

inline ByteMask IsDigitByte(ByteBlock block)
{
    return IsAmong(block, '0', 10);
}

// With this bit set an ASCII letter is a small one. Bytes beyond ASCII count as letters.
inline ByteMask IsLetterByte(ByteBlock block)
{
    constexpr unsigned char kSmall = 0x20, kBeyond = 0x80;
    return IsAmong(block | kSmall, 'a', 26) | (block >= kBeyond);
}

// The first n places, at most kPlaces.
inline ByteMask FirstPlaces(std::size_t n)
{
    constexpr ByteBlock kNumbers = {0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15};
    return kNumbers < static_cast<unsigned char>(n);
}

inline bool IsAnySet(ByteMask mask)
{
    std::uint64_t halves[2];
    std::memcpy(halves, &mask, sizeof halves);
    return (halves[0] | halves[1]) != 0;
}

} // namespace tabulex
