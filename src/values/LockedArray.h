// LockedArray: the elements of a SAFEARRAY as plain memory while this object lives.
#pragma once

#include <span>

#include "platform/component.h"

namespace Hesperon::specifics {

// The array must hold elements of type T. While one of these lives the array can be
// neither redimensioned nor destroyed.
template <class T>
class LockedArray
{
public:
    explicit LockedArray(SAFEARRAY* pArray) : m_pArray(pArray)
    {
        void* pData = nullptr;
        if (FAILED(SafeArrayAccessData(m_pArray, &pData)))
            m_pArray = nullptr;
        m_pData = static_cast<T*>(pData);
    }
    ~LockedArray()
    {
        if (m_pArray)
            SafeArrayUnaccessData(m_pArray);
    }
    LockedArray(const LockedArray&) = delete;
    LockedArray& operator=(const LockedArray&) = delete;

    T* Data() const { return m_pData; }
    T& At(std::size_t i) const { return m_pData[i]; }

    // All elements, the leftmost index running fastest.
    std::span<T> Elements() const
    {
        std::size_t nCount = m_pArray ? 1 : 0;
        for (USHORT i = 0; m_pArray && i < m_pArray->cDims; ++i)
            nCount *= m_pArray->rgsabound[i].cElements;
        return {m_pData, nCount};
    }

private:
    SAFEARRAY* m_pArray;
    T* m_pData;
};

} // namespace Hesperon::specifics
