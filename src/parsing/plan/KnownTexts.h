// KnownTexts: the values of texts that a column had before.
//
// The bars of a day share its date, every day has the same times, and every symbol the same days,
// so most texts of a date or a time column were read before. A text has one place; another text at
// the same place drives it out. The table grows with the texts that it is given, up to a limit.
#pragma once

#include <cstdint>
#include <cstring>
#include <new>
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

    KnownTexts() : m_entries(std::size_t{1} << kFirstBits) {}

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
    void Add(const Key& key, DATE value)
    {
        if (++m_nAdded > m_entries.size() && m_nBits < m_nMostBits)
            Grow();
        m_entries[PlaceOf(key)] = {key, value};
    }

private:
    struct Entry
    {
        Key key; // that of no text where nothing is
        DATE value = 0;
    };

    static std::uint64_t LowBytes(std::size_t n) { return (std::uint64_t{1} << 8 * n) - 1; }

    static constexpr unsigned kFirstBits = 8;
    static constexpr unsigned kMostBits = 14; // 400 KB
    static constexpr unsigned kGrowBits = 2;

    // Without the memory it stays as it is.
    void Grow()
    {
        std::vector<Entry> old;
        try {
            old.resize(m_entries.size() << kGrowBits);
        } catch (const std::bad_alloc&) {
            m_nMostBits = m_nBits;
            return;
        }
        old.swap(m_entries);
        m_nBits += kGrowBits;
        m_nAdded = 0;
        for (const Entry& entry : old)
            if (entry.key != Key()) {
                m_entries[PlaceOf(entry.key)] = entry;
                ++m_nAdded;
            }
    }

    // The constants are odd and have no pattern; the highest bits of a product depend on all bits
    // of its factors.
    std::size_t PlaceOf(const Key& key) const
    {
        const std::uint64_t n =
            key.nLow * 0x9E3779B97F4A7C15 + (key.nHigh ^ key.nLow >> 32) * 0xC2B2AE3D27D4EB4F;
        return static_cast<std::size_t>(n >> (64 - m_nBits));
    }

    std::vector<Entry> m_entries;
    unsigned m_nBits = kFirstBits; // there are 2^m_nBits places
    unsigned m_nMostBits = kMostBits;
    std::size_t m_nAdded = 0; // texts since the table grew, and those it has kept
};

} // namespace Hesperon::specifics
