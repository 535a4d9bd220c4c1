// RowCopy: a batch of delivered rows with a memory of their own, which the next batch uses again.
#pragma once

#include <cstdint>
#include <vector>

#include "platform/component.h"

namespace tabulex {

class RowCopy
{
public:
    // Cells of the kinds that conversions deliver: texts, and values that own nothing. What was
    // copied before is gone. Throws std::bad_alloc, and is then empty.
    void Assign(const VARIANT* cells, std::size_t nCells);
    const VARIANT* Data() const { return m_cells.data(); }

private:
    void CopyTexts(std::size_t nWords);

    std::vector<VARIANT> m_cells;       // their texts lie in m_texts
    std::vector<std::uint32_t> m_texts; // count of bytes, units, and a null, text after text
};

} // namespace tabulex
