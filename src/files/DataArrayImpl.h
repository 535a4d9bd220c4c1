// The operations of CDataArray, for the sources that instantiate it.
//
// The method: Locate answers from the page asked for last, without a search. Any other page
// is searched from the newest slot on; if it isn't there, the slot of the oldest page takes
// it. Only a page that was read to its end stays in a slot.
#pragma once

#include <algorithm>
#include <new>
#include <stdexcept>

#include "diagnostics/FaultmereClient.h"
#include "src/files/DataArray.h"

namespace Hesperon::specifics {

template <class T, std::size_t nPages, std::size_t nBlockSize>
bool CDataArray<T, nPages, nBlockSize>::Attach(std::shared_ptr<SharedFile> pFile)
{
    if (m_hFile || !pFile || !pFile->IsOpen())
        return false;
    const ULONGLONG nSize = pFile->Size().value_or(0);
    if (nSize == 0)
        return false;
    // Left uninitialised, so that only slots in use take memory.
    m_pData.reset(new (std::nothrow) T[nPages * nBlockSize]);
    if (!FaultmereUtil::Assert(m_pData != nullptr, "m_pData"))
        return false;
    m_nSize.store(nSize, std::memory_order_relaxed);
    m_hFile = std::move(pFile);
    return true;
}

template <class T, std::size_t nPages, std::size_t nBlockSize>
void CDataArray<T, nPages, nBlockSize>::Enter(ULONGLONG iElement)
{
    if (!FaultmereUtil::Assert(iElement < GetSize(), "iElement < m_nSize"))
        throw std::invalid_argument("position beyond the end of the file");
    const ULONGLONG nOffset = iElement - iElement % nBlockSize;
    m_nHotCount = 0; // the slot may be taken, and its read may fail
    m_pHot = GetPage(nOffset);
    m_nHotOffset = nOffset;
    m_nHotCount = CountAt(nOffset);
}

template <class T, std::size_t nPages, std::size_t nBlockSize>
T* CDataArray<T, nPages, nBlockSize>::GetPage(ULONGLONG nOffset)
{
    FaultmereUtil::Assert(m_hFile != nullptr, "((HANDLE)(LONG_PTR)-1) != m_hFile");
    if (!m_hFile)
        throw std::invalid_argument("no file");
    if (T* pPage = FindPage(nOffset))
        return pPage;
    T* pPage = TakeSlot(nOffset);
    MoveFilePos(nOffset);
    ReadPage(nOffset, pPage);
    return pPage;
}

template <class T, std::size_t nPages, std::size_t nBlockSize>
T* CDataArray<T, nPages, nBlockSize>::FindPage(ULONGLONG nOffset) const
{
    ULONGLONG nSlot = m_nFirstPage;
    for (ULONGLONG n = 0; n < m_nPageCount; ++n, nSlot = (nSlot + 1) % nPages)
        if (m_pageOffsets[nSlot] == nOffset)
            return SlotData(nSlot);
    return nullptr;
}

template <class T, std::size_t nPages, std::size_t nBlockSize>
T* CDataArray<T, nPages, nBlockSize>::TakeSlot(ULONGLONG nOffset)
{
    m_nPageCount = std::min<ULONGLONG>(m_nPageCount + 1, nPages);
    m_nFirstPage = (m_nFirstPage + nPages - 1) % nPages;
    m_pageOffsets[m_nFirstPage] = nOffset;
    return SlotData(m_nFirstPage);
}

// Frees the slot that was taken last, since its page couldn't be read. The page that it held
// before is lost.
template <class T, std::size_t nPages, std::size_t nBlockSize>
void CDataArray<T, nPages, nBlockSize>::GiveSlotBack()
{
    m_nFirstPage = (m_nFirstPage + 1) % nPages;
    --m_nPageCount;
}

// All pages but the last of the file are whole, so going on from there by less than a
// page means that the file has grown.
template <class T, std::size_t nPages, std::size_t nBlockSize>
void CDataArray<T, nPages, nBlockSize>::MoveFilePos(ULONGLONG nOffset)
{
    if (nOffset > m_nFilePos)
        FaultmereUtil::Assert((nOffset - m_nFilePos) % nBlockSize == 0,
                              "0 == nDistanceToMove % nBlockSize");
    m_nFilePos = nOffset;
}

template <class T, std::size_t nPages, std::size_t nBlockSize>
void CDataArray<T, nPages, nBlockSize>::ReadPage(ULONGLONG nOffset, T* pPage)
{
    const ULONGLONG nCount = CountAt(nOffset);
    if (!m_hFile->Read(nOffset, pPage, static_cast<std::size_t>(nCount))) {
        GiveSlotBack();
        FaultmereUtil::ReportAssertion("0");
        throw std::invalid_argument("file can't be read");
    }
    m_nFilePos += nCount;
}

template <class T, std::size_t nPages, std::size_t nBlockSize>
ULONGLONG CDataArray<T, nPages, nBlockSize>::CountAt(ULONGLONG nOffset) const
{
    return std::min<ULONGLONG>(GetSize() - nOffset, nBlockSize);
}

template <class T, std::size_t nPages, std::size_t nBlockSize>
void CDataArray<T, nPages, nBlockSize>::RefreshFileSize()
{
    if (m_hFile)
        m_nSize.store(m_hFile->Size().value_or(GetSize()), std::memory_order_relaxed);
    m_nPageCount = 0;
    m_nFirstPage = 0;
    m_nHotCount = 0;
}

} // namespace Hesperon::specifics
