// CHeapArray: a growable array that never moves its elements.
//
// Memory is taken in blocks of nBlockElements, when the first element of a block is
// appended, and given back by Clear() only. Not synchronised. If a block or the table
// of blocks can't be allocated, Append throws std::bad_alloc and changes nothing.
#pragma once

#include <memory>
#include <stdexcept>
#include <vector>

#include "diagnostics/FaultmereClient.h"
#include "platform/component.h"

namespace Hesperon::specifics {

template <class T, std::size_t nBlockElements>
class CHeapArray
{
public:
    ULONGLONG GetSize() const { return m_nSize; }

    void Append(const T& value)
    {
        const std::size_t nBlock = m_nSize / nBlockElements;
        if (nBlock == m_blocks.size())
            AddBlock();
        m_blocks[nBlock][m_nSize % nBlockElements] = value;
        ++m_nSize;
    }

    // Reports an index beyond the size and throws std::invalid_argument.
    T& operator[](ULONGLONG iElement)
    {
        if (!FaultmereUtil::Assert(iElement < m_nSize, "iElement < m_nSize"))
            throw std::invalid_argument("index beyond the array");
        return m_blocks[iElement / nBlockElements][iElement % nBlockElements];
    }

    void Clear()
    {
        m_blocks.clear();
        m_blocks.shrink_to_fit();
        m_nSize = 0;
    }

private:
    // Left uninitialised, so that only elements in use take memory.
    void AddBlock()
    {
        m_blocks.reserve(m_blocks.size() + 1);
        m_blocks.emplace_back(new T[nBlockElements]);
    }

    std::vector<std::unique_ptr<T[]>> m_blocks;
    ULONGLONG m_nSize = 0; // elements in use
};

} // namespace Hesperon::specifics
