// The texts of a batch lie side by side in the published layout of a BSTR: its count of bytes,
// where it points to its units, and a null. Their size is counted first, so that none of them
// moves.

#include "tools/tabulex/run/RowCopy.h"

#include <cstring>

#include "platform/values.h"

namespace tabulex {

namespace {

// Of a text with its count and its null.
std::size_t WordsOf(BSTR text)
{
    return 1 + (TextOf(text).size() + 2) / 2;
}

} // namespace

void RowCopy::Assign(const VARIANT* cells, std::size_t nCells)
{
    m_cells.assign(cells, cells + nCells);
    std::size_t nWords = 0;
    for (const VARIANT& cell : m_cells)
        if (cell.vt == VT_BSTR)
            nWords += WordsOf(cell.bstrVal);
    if (nWords > 0)
        CopyTexts(nWords);
}

// One word more at the front, since a system's header may be longer than the count.
void RowCopy::CopyTexts(std::size_t nWords)
{
    try {
        m_texts.assign(nWords + 1, 0);
    } catch (...) {
        m_cells.clear();
        throw;
    }
    std::uint32_t* at = m_texts.data() + 1;
    for (VARIANT& cell : m_cells) {
        if (cell.vt != VT_BSTR)
            continue;
        const string_view_t text = TextOf(cell.bstrVal);
        const std::size_t nBytes = text.size() * sizeof(OLECHAR);
        const std::size_t nAll = WordsOf(cell.bstrVal);
        at[0] = static_cast<std::uint32_t>(nBytes);
        if (nBytes != 0) // no text may have no address
            std::memcpy(at + 1, text.data(), nBytes);
        cell.bstrVal = reinterpret_cast<BSTR>(at + 1);
        at += nAll;
    }
}

} // namespace tabulex
