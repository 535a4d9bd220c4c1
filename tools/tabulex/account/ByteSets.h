// ByteSets: where the bytes of a few sets stand, a window of 64 bytes at a time.
//
// A window gives a mask of 64 bits for each set, with bit i for its byte i. What stands beside a
// byte is then a shift away, and a rule on bytes and their neighbours is a few operations for a
// whole window. Any thread may use an object that isn't changed.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>
#include <vector>

namespace tabulex {

inline constexpr std::size_t kWindowBytes = 64;

// Whether this machine has instructions on 32 bytes.
bool HasWideBytes();

// Made for 2 and for 8 sets.
template <std::size_t nSets>
class ByteSets
{
public:
    using Masks = std::array<std::uint64_t, nSets>; // by set

    // A byte may be in several sets. bWide: by 32 bytes at a time where the sets allow it, else by
    // 16.
    explicit ByteSets(const std::array<std::string_view, nSets>& sets, bool bWide = HasWideBytes());

    // The first window begins at p and each further one nStep bytes behind the one before; all
    // bytes of all of them are read.
    void Find(const char* p, std::size_t nStep, std::span<Masks> windows) const;

private:
    static constexpr std::size_t kBlockBytes = 16;
    using Block = unsigned char __attribute__((vector_size(kBlockBytes)));

    // Bytes side by side, each number in all places of a block.
    struct Range
    {
        Block first;
        Block count;
    };

    bool AreApart(const std::array<std::string_view, nSets>& sets);
    void FindNarrow(const char* p, std::size_t nStep, std::span<Masks> windows) const;
    void FindWide(const char* p, std::size_t nStep, std::span<Masks> windows) const;

    std::array<std::vector<Range>, nSets> m_ranges; // by set
    // By set and the lower half of a byte: the set's byte with that half, or one with another half.
    std::array<std::array<char, kBlockBytes>, nSets> m_byLowHalf{};
    bool m_bWide;
};

} // namespace tabulex
