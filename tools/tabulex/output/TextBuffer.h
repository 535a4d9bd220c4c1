// TextBuffer: text that is gathered in one piece of memory, which is kept for what comes next.
//
// A caller asks for room once for many small pieces, puts them there, and tells where they end.
// Used by one thread.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <memory>
#include <string_view>

namespace tabulex {

class TextBuffer
{
public:
    // At least nRoom bytes after the text. Good until the next call that isn't const.
    char* Room(std::size_t nRoom)
    {
        if (m_nCapacity - m_nSize < nRoom)
            Grow(m_nSize + nRoom);
        return m_bytes.get() + m_nSize;
    }
    // What was put into the room ends here, and is now part of the text.
    void EndAt(const char* end) { m_nSize = static_cast<std::size_t>(end - m_bytes.get()); }

    void Append(std::string_view text)
    {
        char* const at = Room(text.size());
        EndAt(std::copy(text.begin(), text.end(), at));
    }
    void Clear() { m_nSize = 0; }

    std::size_t Size() const { return m_nSize; }
    std::string_view View() const { return {m_bytes.get(), m_nSize}; }

private:
    void Grow(std::size_t nLeast)
    {
        const std::size_t nCapacity = std::max(nLeast, m_nCapacity * 2);
        std::unique_ptr<char[]> bytes(new char[nCapacity]);
        if (m_nSize > 0)
            std::memcpy(bytes.get(), m_bytes.get(), m_nSize);
        m_bytes = std::move(bytes);
        m_nCapacity = nCapacity;
    }

    std::unique_ptr<char[]> m_bytes;
    std::size_t m_nSize = 0; // of the text; the rest is room
    std::size_t m_nCapacity = 0;
};

} // namespace tabulex
