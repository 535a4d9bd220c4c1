// LineBuffer: the lines of a batch, in one block of memory.
//
// Each line has the form of a BSTR (its length in bytes as 32 bits, its text, a null), so it
// can be an argument of the record parser's calls, which only read it. Used by one thread.
#pragma once

#include <cstdint>
#include <cstring>
#include <iterator>
#include <vector>

#include "platform/component.h"

namespace Hesperon::specifics {

class LineBuffer
{
public:
    // Throws std::bad_alloc, and then holds what it held before.
    void Add(string_view_t line)
    {
        const auto nBytes = static_cast<std::uint32_t>(line.size() * sizeof(OLECHAR));
        OLECHAR length[kLengthUnits];
        std::memcpy(length, &nBytes, sizeof nBytes);
        m_memory.insert(m_memory.end(), std::begin(length), std::end(length));
        const std::size_t nText = m_memory.size();
        m_memory.insert(m_memory.end(), line.begin(), line.end());
        do
            m_memory.push_back(0);
        while (m_memory.size() % kLengthUnits != 0); // so that the next length is aligned
        m_texts.push_back(nText);
    }

    std::size_t size() const { return m_texts.size(); }
    bool empty() const { return m_texts.empty(); }
    // For reading only, and only until the next line is added.
    BSTR operator[](std::size_t i) { return &m_memory[m_texts[i]]; }
    BSTR back() { return (*this)[size() - 1]; }

    // Keeps the memory for the next batch; Release() doesn't.
    void clear()
    {
        m_memory.clear();
        m_texts.clear();
    }
    void Release() { *this = {}; }

private:
    static constexpr std::size_t kLengthUnits = sizeof(std::uint32_t) / sizeof(OLECHAR);

    std::vector<OLECHAR> m_memory;
    std::vector<std::size_t> m_texts; // where each line's text begins
};

} // namespace Hesperon::specifics
