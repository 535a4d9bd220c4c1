// Sixteen bytes at a time become a mask with a bit for each divider; cells end at the bits. A line
// with a quotation mark is gone through byte by byte instead, and so is one whose cells are parted
// by any number of blanks.

#include "intake/CellCutter.h"

#include <algorithm>
#include <bit>
#include <cstdint>

#ifdef __SSE2__
#include <emmintrin.h>
#endif

namespace tabulex::intake {

namespace {

constexpr std::size_t kBlock = 16;

constexpr bool IsBlankOrTab(char c)
{
    return c == ' ' || c == '\t';
}

std::string_view Trim(std::string_view cell)
{
    while (!cell.empty() && IsBlankOrTab(cell.front()))
        cell.remove_prefix(1);
    while (!cell.empty() && IsBlankOrTab(cell.back()))
        cell.remove_suffix(1);
    return cell;
}

#ifdef __SSE2__

std::uint32_t MarksOf(const char* pBlock, char c)
{
    const __m128i bytes = _mm_loadu_si128(reinterpret_cast<const __m128i*>(pBlock));
    return static_cast<std::uint32_t>(_mm_movemask_epi8(_mm_cmpeq_epi8(bytes, _mm_set1_epi8(c))));
}

#else

std::uint32_t MarksOf(const char* pBlock, char c)
{
    std::uint32_t marks = 0;
    for (std::size_t n = 0; n < kBlock; ++n)
        marks |= pBlock[n] == c ? 1u << n : 0;
    return marks;
}

#endif

} // namespace

CellCutter::CellCutter(bool bQuotes, std::size_t nMost) : m_bQuotes(bQuotes), m_nMost(nMost) {}

// False when there are as many as are wanted.
bool CellCutter::Add(std::string_view cell)
{
    m_cells.push_back(Trim(cell));
    return m_cells.size() < m_nMost;
}

// False for a line with a quotation mark, if these count.
bool CellCutter::CutBlocks(std::string_view line, bool bQuotes)
{
    std::size_t nBegin = 0;
    for (std::size_t nAt = 0; nAt < line.size(); nAt += kBlock) {
        const std::size_t nLeft = line.size() - nAt;
        const std::uint32_t within = nLeft < kBlock ? (1u << nLeft) - 1 : 0xFFFF;
        if (bQuotes && (MarksOf(line.data() + nAt, '"') & within))
            return false;
        std::uint32_t bits = MarksOf(line.data() + nAt, m_cDivider) & within;
        for (; bits != 0; bits &= bits - 1) {
            const std::size_t nEnd = nAt + static_cast<std::size_t>(std::countr_zero(bits));
            if (!Add(line.substr(nBegin, nEnd - nBegin)))
                return true;
            nBegin = nEnd + 1;
        }
    }
    Add(line.substr(nBegin));
    return true;
}

void CellCutter::CutAtBlanks(std::string_view line)
{
    line = Trim(line);
    for (bool bMore = true; bMore && !line.empty();) {
        const std::size_t nEnd = std::min(line.find_first_of(" \t"), line.size());
        bMore = Add(line.substr(0, nEnd));
        line = Trim(line.substr(nEnd));
    }
}

// From the character behind an opening mark to that behind the closing one; false without one.
bool CellCutter::TakeQuoted(std::string_view line, std::size_t& nAt)
{
    const std::size_t nBegin = nAt;
    bool bPairs = false;
    while (true) {
        nAt = line.find('"', nAt);
        if (nAt == line.npos)
            return false;
        if (nAt + 1 == line.size() || line[nAt + 1] != '"')
            break;
        bPairs = true;
        nAt += 2;
    }
    const std::string_view cell = line.substr(nBegin, nAt++ - nBegin);
    if (!bPairs) {
        Add(cell);
        return true;
    }
    if (m_nUnquoted == m_unquoted.size())
        m_unquoted.emplace_back();
    std::string& text = m_unquoted[m_nUnquoted++];
    text.clear();
    for (std::size_t n = 0; n < cell.size(); ++n) {
        text += cell[n];
        n += cell[n] == '"' ? 1 : 0;
    }
    Add(text);
    return true;
}

bool CellCutter::CutQuoted(std::string_view line)
{
    const bool bBlanks = m_cDivider == ' ';
    const auto isDivider = [this, bBlanks](char c) {
        return c == m_cDivider || (bBlanks && c == '\t');
    };
    std::size_t nAt = 0;
    while (m_cells.size() < m_nMost) {
        while (nAt < line.size() && IsBlankOrTab(line[nAt]) && (bBlanks || line[nAt] != m_cDivider))
            ++nAt;
        if (bBlanks && nAt == line.size())
            return true;
        const bool bMark = nAt < line.size() && line[nAt] == '"';
        if (bMark && !TakeQuoted(line, ++nAt))
            return false;
        // What stands behind a closing mark belongs to nothing.
        const std::size_t nBegin = nAt;
        while (nAt < line.size() && !isDivider(line[nAt]))
            ++nAt;
        if (!bMark)
            Add(line.substr(nBegin, nAt - nBegin));
        if (nAt++ >= line.size())
            return true;
    }
    return true;
}

bool CellCutter::Cut(std::string_view line)
{
    m_cells.clear();
    m_nUnquoted = 0;
    const bool bQuoted = m_bQuotes && m_cDivider == ' ' && line.find('"') != line.npos;
    if (m_cDivider == ' ' && !bQuoted) {
        CutAtBlanks(line);
        return true;
    }
    if (!bQuoted && CutBlocks(line, m_bQuotes))
        return true;
    m_cells.clear();
    return CutQuoted(line);
}

void CellCutter::CutPlain(std::string_view line)
{
    m_cells.clear();
    if (m_cDivider == ' ')
        CutAtBlanks(line);
    else
        CutBlocks(line, false);
}

} // namespace tabulex::intake
