// LineBuffer: the lines of a batch, in one block of memory.
//
// A line of ASCII stays the bytes that it was, so that what reads plain records needs no text of
// it; any other line is text. Each can be had as a BSTR, as an argument of the record parser's
// calls, which only read it. Used by one thread.
#pragma once

#include <cstdint>
#include <cstring>
#include <string_view>
#include <vector>

#include "platform/component.h"
#include "platform/text/AsciiText.h"
#include "src/files/PlainLine.h"

namespace Hesperon::specifics {

class LineBuffer
{
public:
    // Bytes that can be read behind the end of a line of bytes.
    static constexpr std::size_t kPadding = 16;

    // Each throws std::bad_alloc, and then the buffer holds what it held before.
    void Add(string_view_t text)
    {
        Reserve();
        const std::size_t nAt = m_texts.size();
        AppendBstr(text.size(), m_texts);
        m_texts.insert(m_texts.end(), text.begin(), text.end());
        EndBstr(m_texts);
        m_lines.push_back({nAt + kLengthUnits, text.size(), false});
    }
    // REQUIRES: bytes below 0x80.
    void AddBytes(std::string_view bytes)
    {
        bytes.copy(RoomFor(bytes.size()), bytes.size());
        TakeRoom(bytes.size());
    }
    // Adds the line at p if PlainLine::Copy takes it, and gives what that gives.
    template <PlainLine::Width width>
    std::size_t AddPlainLine(const char* p, const char* pEnd)
    {
        const std::size_t nSize = PlainLine::Copy<width>(p, pEnd, RoomFor(PlainLine::kRoom));
        if (nSize != PlainLine::kNone)
            TakeRoom(nSize / static_cast<std::size_t>(width));
        return nSize;
    }

    std::size_t size() const { return m_lines.size(); }
    bool empty() const { return m_lines.empty(); }
    // In characters.
    std::size_t Length(std::size_t i) const { return m_lines[i].nSize; }

    // Empty for a line that was added as text. Good until the next line is added.
    std::string_view Bytes(std::size_t i) const
    {
        const Line& line = m_lines[i];
        return line.bBytes ? std::string_view(m_bytes.data() + line.nAt, line.nSize)
                           : std::string_view();
    }
    // For reading only, and only until a line is added or asked for.
    BSTR operator[](std::size_t i)
    {
        const Line& line = m_lines[i];
        return line.bBytes ? Widened(Bytes(i)) : &m_texts[line.nAt];
    }

    // Keeps the memory for the next batch; Release() doesn't.
    void clear()
    {
        m_nUsed = 0;
        m_texts.clear();
        m_lines.clear();
    }
    void Release() { *this = {}; }

private:
    struct Line
    {
        std::size_t nAt;   // of its text, or its first byte
        std::size_t nSize; // in characters
        bool bBytes;
    };
    static constexpr std::size_t kLengthUnits = sizeof(std::uint32_t) / sizeof(OLECHAR);

    // Room for one line more, so that nothing fails once its text is there.
    void Reserve()
    {
        if (m_lines.size() == m_lines.capacity())
            m_lines.reserve(2 * m_lines.size() + kFirstLines);
    }

    // Room for a line of nMost bytes.
    char* RoomFor(std::size_t nMost)
    {
        Reserve();
        const std::size_t nNeeded = m_nUsed + nMost + kPadding;
        if (m_bytes.size() < nNeeded)
            m_bytes.resize(2 * nNeeded);
        return m_bytes.data() + m_nUsed;
    }
    void TakeRoom(std::size_t nSize)
    {
        m_lines.push_back({m_nUsed, nSize, true});
        m_nUsed += nSize;
    }

    // A BSTR is the length in bytes as 32 bits, then the text, and a null behind it.
    static void AppendBstr(std::size_t nUnits, string_t& out)
    {
        const auto nBytes = static_cast<std::uint32_t>(nUnits * sizeof(OLECHAR));
        OLECHAR length[kLengthUnits];
        std::memcpy(length, &nBytes, sizeof nBytes);
        out.reserve(out.size() + nUnits + 2 * kLengthUnits);
        out.append(length, kLengthUnits);
    }
    static void EndBstr(string_t& out)
    {
        do
            out.push_back(0);
        while (out.size() % kLengthUnits != 0); // so that the next length is aligned
    }
    BSTR Widened(std::string_view bytes)
    {
        m_widened.clear();
        AppendBstr(bytes.size(), m_widened);
        AppendAscii(bytes, m_widened);
        EndBstr(m_widened);
        return &m_widened[kLengthUnits];
    }

    static constexpr std::size_t kFirstLines = 64;

    std::vector<char> m_bytes;
    std::size_t m_nUsed = 0; // of m_bytes
    string_t m_texts;
    string_t m_widened; // the line last asked for, where it is one of bytes
    std::vector<Line> m_lines;
};

} // namespace Hesperon::specifics
