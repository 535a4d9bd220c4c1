// LockedArray: the elements of a SAFEARRAY as plain memory while this object lives.
#pragma once

#include <span>

#include "platform/component.h"

namespace Hesperon::specifics {

// Kind of the array elements that lie in memory as a T.
template <class T>
inline constexpr VARTYPE kElementKind = VT_EMPTY;
template <>
inline constexpr VARTYPE kElementKind<VARIANT> = VT_VARIANT;
template <>
inline constexpr VARTYPE kElementKind<BSTR> = VT_BSTR;
template <>
inline constexpr VARTYPE kElementKind<LONG> = VT_I4;

// While one of these lives the array can be neither redimensioned nor destroyed. An array
// that can't be locked, or whose elements are of another kind, has no elements here: what
// an array holds is known from the array alone, not from the VARIANT around it.
template <class T>
class LockedArray
{
public:
    explicit LockedArray(SAFEARRAY* pArray) : m_hr(Lock(pArray)) {}
    ~LockedArray()
    {
        if (m_pArray)
            SafeArrayUnaccessData(m_pArray);
    }
    LockedArray(const LockedArray&) = delete;
    LockedArray& operator=(const LockedArray&) = delete;

    // E_INVALIDARG for elements of another kind, else what the lock gave.
    HRESULT Result() const { return m_hr; }

    // Null where the result is a failure.
    T* Data() const { return m_pData; }
    // i must be below the number of elements.
    T& At(std::size_t i) const { return m_pData[i]; }

    // All elements, whatever the dimensions and bounds; the leftmost index runs fastest.
    std::span<T> Elements() const
    {
        std::size_t nCount = m_pArray ? 1 : 0;
        for (USHORT i = 0; m_pArray && i < m_pArray->cDims; ++i)
            nCount *= m_pArray->rgsabound[i].cElements;
        return {m_pData, nCount};
    }

private:
    HRESULT Lock(SAFEARRAY* pArray)
    {
        static_assert(kElementKind<T> != VT_EMPTY);
        VARTYPE nKind = VT_EMPTY;
        if (!pArray || FAILED(SafeArrayGetVartype(pArray, &nKind)) || nKind != kElementKind<T>)
            return E_INVALIDARG;
        void* pData = nullptr;
        const HRESULT hr = SafeArrayAccessData(pArray, &pData);
        if (FAILED(hr))
            return hr;
        m_pArray = pArray;
        m_pData = static_cast<T*>(pData);
        return S_OK;
    }

    SAFEARRAY* m_pArray = nullptr;
    T* m_pData = nullptr;
    HRESULT m_hr; // last: Lock sets the others
};

} // namespace Hesperon::specifics
