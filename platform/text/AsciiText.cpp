#include "platform/text/AsciiText.h"

#include <algorithm>
#include <cstdint>
#include <cstring>

// Eight bytes at a time: those beyond ASCII have their highest bit set.
std::size_t AsciiPrefix(std::string_view bytes)
{
    constexpr std::uint64_t kHighBits = 0x8080808080808080;
    std::size_t n = 0;
    for (; n + sizeof(std::uint64_t) <= bytes.size(); n += sizeof(std::uint64_t)) {
        std::uint64_t word;
        std::memcpy(&word, bytes.data() + n, sizeof word);
        if (word & kHighBits)
            break;
    }
    while (n < bytes.size() && static_cast<unsigned char>(bytes[n]) < 0x80)
        ++n;
    return n;
}

// Blocks of a fixed size that share no memory with the target, since the compiler
// vectorises those at any level.
void AppendAscii(std::string_view bytes, string_t& out)
{
    constexpr std::size_t kBlock = 16; // a multiple of any vector
    const std::size_t nStart = out.size();
    out.resize(nStart + bytes.size());
    OLECHAR* to = out.data() + nStart;
    for (; bytes.size() >= kBlock; bytes.remove_prefix(kBlock), to += kBlock) {
        unsigned char block[kBlock];
        std::memcpy(block, bytes.data(), kBlock);
        for (std::size_t n = 0; n < kBlock; ++n)
            to[n] = block[n];
    }
    std::copy(bytes.begin(), bytes.end(), to);
}
