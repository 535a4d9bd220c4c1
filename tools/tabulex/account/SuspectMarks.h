// Tests on a byte and its neighbours, without branches so that compilers make vector instructions
// of the loops around them.
#pragma once

namespace tabulex {

constexpr bool IsDigitByte(char c)
{
    return static_cast<unsigned char>(c - '0') < 10;
}

// With this bit set an ASCII letter is a small one. Bytes beyond ASCII count as letters.
constexpr bool IsLetterByte(char c)
{
    return static_cast<unsigned char>((c | 0x20) - 'a') < 26 || static_cast<signed char>(c) < 0;
}

} // namespace tabulex
