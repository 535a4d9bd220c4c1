// A block of bytes is compared with each range of a set. With instructions on 32 bytes there is a
// shorter way: a byte's lower half chooses the byte of the set that it would have to be, from 16
// that lie in a register, and one comparison says whether it is. Then no two bytes of a set may
// have the same lower half, which a comma and a bar have.

#include "tools/tabulex/account/ByteSets.h"

#include <algorithm>
#include <cstring>
#include <string>

#if defined(__x86_64__)
#include <immintrin.h>
#endif

namespace tabulex {

namespace {

// A bit for each place of a block whose bits are all set or all clear.
template <class Block>
std::uint64_t PlaceBits(Block block)
{
#if defined(__x86_64__)
    return static_cast<std::uint32_t>(_mm_movemask_epi8(reinterpret_cast<__m128i>(block)));
#else
    std::uint64_t halves[2];
    std::memcpy(halves, &block, sizeof halves);
    const auto bits = [](std::uint64_t half) {
        return (half & 0x8040201008040201) * 0x0101010101010101 >> 56;
    };
    return bits(halves[0]) | bits(halves[1]) << 8;
#endif
}

#if defined(__x86_64__)
// Which of 32 bytes are those of the set that their lower halves choose.
[[gnu::target("avx2"), gnu::always_inline]] inline std::uint64_t Chosen(__m256i bytes, __m256i set)
{
    const __m256i same = _mm256_cmpeq_epi8(bytes, _mm256_shuffle_epi8(set, bytes));
    return static_cast<std::uint32_t>(_mm256_movemask_epi8(same));
}
#endif

} // namespace

bool HasWideBytes()
{
#if defined(__x86_64__)
    return __builtin_cpu_supports("avx2");
#else
    return false;
#endif
}

template <std::size_t nSets>
ByteSets<nSets>::ByteSets(const std::array<std::string_view, nSets>& sets, bool bWide)
    : m_bWide(AreApart(sets) && bWide)
{
    for (std::size_t i = 0; i < nSets; ++i) {
        std::string bytes(sets[i]);
        std::ranges::sort(bytes);
        for (std::size_t nFirst = 0, n = 1; nFirst < bytes.size(); nFirst += n, n = 1) {
            while (nFirst + n < bytes.size() && bytes[nFirst + n] - bytes[nFirst] == int(n))
                ++n;
            m_ranges[i].push_back({Block{} + static_cast<unsigned char>(bytes[nFirst]),
                                   Block{} + static_cast<unsigned char>(n)});
        }
    }
}

// The choice from 16 takes bytes beyond ASCII for zero bytes.
template <std::size_t nSets>
bool ByteSets<nSets>::AreApart(const std::array<std::string_view, nSets>& sets)
{
    bool bApart = true;
    for (std::size_t i = 0; i < nSets; ++i) {
        auto& bytes = m_byLowHalf[i];
        bytes[0] = 1;
        std::uint32_t taken = 0;
        for (const char c : sets[i]) {
            const std::size_t nHalf = static_cast<unsigned char>(c) % kBlockBytes;
            bApart = bApart && c >= 0 && (taken >> nHalf & 1) == 0;
            taken |= 1u << nHalf;
            bytes[nHalf] = c;
        }
    }
    return bApart;
}

template <std::size_t nSets>
void ByteSets<nSets>::Find(const char* p, std::size_t nStep, std::span<Masks> windows) const
{
    if (m_bWide)
        FindWide(p, nStep, windows);
    else
        FindNarrow(p, nStep, windows);
}

template <std::size_t nSets>
void ByteSets<nSets>::FindNarrow(const char* p, std::size_t nStep, std::span<Masks> windows) const
{
    constexpr std::size_t kBlocks = kWindowBytes / kBlockBytes;
    for (Masks& masks : windows) {
        Block blocks[kBlocks];
        std::memcpy(blocks, p, sizeof blocks);
        for (std::size_t nSet = 0; nSet < nSets; ++nSet) {
            Block found[kBlocks] = {};
            for (const Range& range : m_ranges[nSet])
                for (std::size_t i = 0; i < kBlocks; ++i)
                    found[i] |= reinterpret_cast<Block>(blocks[i] - range.first < range.count);
            masks[nSet] = 0;
            for (std::size_t i = 0; i < kBlocks; ++i)
                masks[nSet] |= PlaceBits(found[i]) << i * kBlockBytes;
        }
        p += nStep;
    }
}

#if defined(__x86_64__)

template <std::size_t nSets>
[[gnu::target("avx2")]] void ByteSets<nSets>::FindWide(const char* p, std::size_t nStep,
                                                       std::span<Masks> windows) const
{
    for (Masks& masks : windows) {
        const auto* halves = reinterpret_cast<const __m256i*>(p);
        const __m256i low = _mm256_loadu_si256(halves), high = _mm256_loadu_si256(halves + 1);
        for (std::size_t i = 0; i < nSets; ++i) {
            const auto* bytes = reinterpret_cast<const __m128i*>(m_byLowHalf[i].data());
            const __m256i set = _mm256_broadcastsi128_si256(_mm_loadu_si128(bytes));
            masks[i] = Chosen(low, set) | Chosen(high, set) << 32;
        }
        p += nStep;
    }
}

#else

template <std::size_t nSets>
void ByteSets<nSets>::FindWide(const char* p, std::size_t nStep, std::span<Masks> windows) const
{
    FindNarrow(p, nStep, windows);
}

#endif

template class ByteSets<2>;
template class ByteSets<8>;

} // namespace tabulex
