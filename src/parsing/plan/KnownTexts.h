// KnownTexts: the values of texts that a column had before.
//
// The bars of a day share its date, and every day has the same times, so most texts of a date or
// a time column were read before. A text has one place; another text at the same place drives it
// out.
#pragma once

#include <cstdint>
#include <cstring>
#include <string_view>
#include <vector>

#include "platform/component.h"

namespace Hesperon::specifics {

class KnownTexts
{
public:
    static constexpr std::size_t kMaxText = 16;

    // A text of 1 to kMaxText bytes, none of them zero.
    struct Key
    {
        std::uint64_t nLow = 0, nHigh = 0;
        bool operator==(const Key&) const = default;
    };

    // nBits: the table has 2^nBits places.
    explicit KnownTexts(unsigned nBits) : m_entries(std::size_t{1} << nBits), m_nShift(64 - nBits)
    {}

    // REQUIRES: 16 bytes can be read at the text's beginning; at most kMaxText of them are it.
    static Key KeyOf(std::string_view sText)
    {
        Key key;
        std::memcpy(&key.nLow, sText.data(), 8);
        std::memcpy(&key.nHigh, sText.data() + 8, 8);
        const std::size_t n = sText.size();
        key.nLow = n < 8 ? key.nLow & LowBytes(n) : key.nLow;
        key.nHigh = n <= 8 ? 0 : n < 16 ? key.nHigh & LowBytes(n - 8) : key.nHigh;
        return key;
    }

    // Null for a text that isn't known. Good until the next one is added.
    const DATE* Find(const Key& key) const
    {
        const Entry& entry = m_entries[PlaceOf(key)];
        return entry.key == key ? &entry.value : nullptr;
    }
    void Add(const Key& key, DATE value) { m_entries[PlaceOf(key)] = {key, value}; }

private:
    struct Entry
    {
        Key key; // that of no text where nothing is
        DATE value = 0;
    };

    static std::uint64_t LowBytes(std::size_t n) { return (std::uint64_t{1} << 8 * n) - 1; }

    // The constants are odd and have no pattern; the highest bits of a product depend on all bits
    // of its factors.
    std::size_t PlaceOf(const Key& key) const
    {
        const std::uint64_t n =
            key.nLow * 0x9E3779B97F4A7C15 + (key.nHigh ^ key.nLow >> 32) * 0xC2B2AE3D27D4EB4F;
        return static_cast<std::size_t>(n >> m_nShift);
    }

    std::vector<Entry> m_entries;
    unsigned m_nShift;
};

} // namespace Hesperon::specifics
