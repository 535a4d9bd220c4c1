// TextBuffer: text that is written piece by piece, with room made ahead of each piece.
#pragma once

#include <algorithm>
#include <cstddef>
#include <string_view>
#include <vector>

namespace tabulex::intake {

class TextBuffer
{
public:
    // Where at least nBytes may be written; what was written is taken over by EndAt.
    char* Room(std::size_t nBytes)
    {
        if (m_bytes.size() - m_nSize < nBytes)
            m_bytes.resize(std::max(m_bytes.size() * 2, m_nSize + nBytes));
        return m_bytes.data() + m_nSize;
    }
    void EndAt(const char* pEnd) { m_nSize = static_cast<std::size_t>(pEnd - m_bytes.data()); }

    void Add(std::string_view text)
    {
        std::copy(text.begin(), text.end(), Room(text.size()));
        m_nSize += text.size();
    }
    void Add(char c)
    {
        *Room(1) = c;
        ++m_nSize;
    }

    std::size_t Size() const { return m_nSize; }
    // Drops what was written behind a size.
    void CutTo(std::size_t nSize) { m_nSize = nSize; }
    std::string_view From(std::size_t nStart) const
    {
        return {m_bytes.data() + nStart, m_nSize - nStart};
    }
    std::string_view Text() const { return From(0); }

private:
    std::vector<char> m_bytes;
    std::size_t m_nSize = 0;
};

} // namespace tabulex::intake
