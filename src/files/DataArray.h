// CDataArray: a file seen as an array of bytes through a ring of cached pages.
//
// Pages are read whole, at multiples of the page size, when a byte of theirs is
// asked for. The page that entered longest ago makes room for a new one; a hit
// changes nothing in that order. At most nPages * nBlockSize bytes are held, in
// one buffer.
//
// Invariants:
//   1. The slots in use are the m_nPageCount ones from m_nFirstPage on, counted
//      around the ring, newest first. Each holds the page of its offset, whole: a page
//      that couldn't be read isn't kept, and is read again when it is asked for.
//   2. m_nHotCount elements at m_pHot are those of the file from m_nHotOffset on;
//      they lie in one slot in use. 0 where no page has been asked for yet.
//
// Not synchronised. A read past the end and a failed read are reported and throw
// std::invalid_argument. A read that comes short, since the file was cut, has failed.
#pragma once

#include <array>
#include <atomic>
#include <memory>
#include <span>

#include "platform/component.h"
#include "src/files/SharedFile.h"

namespace Hesperon::specifics {

template <class T, std::size_t nPages, std::size_t nBlockSize>
class CDataArray
{
    static_assert(sizeof(T) == 1, "offsets count elements and bytes alike");

public:
    // False, and nothing done, where a file is attached already, for a file that
    // isn't open, and for an empty one. A file can't be exchanged for another.
    bool Attach(std::shared_ptr<SharedFile> pFile);

    // Elements of the file when its size was last asked for; 0 without a file. May be read
    // from any thread.
    ULONGLONG GetSize() const { return m_nSize.load(std::memory_order_relaxed); }

    const T& operator[](ULONGLONG iElement) { return *Locate(iElement); }

    // The elements from iElement to the end of its page or of the file, at least one.
    // Good until the next access.
    std::span<const T> Span(ULONGLONG iElement)
    {
        const T* p = Locate(iElement);
        return {p, static_cast<std::size_t>(m_nHotCount - (iElement - m_nHotOffset))};
    }

    // The elements from the beginning of its page to iElement, at least one.
    // Good until the next access.
    std::span<const T> SpanUpTo(ULONGLONG iElement)
    {
        Locate(iElement);
        return {m_pHot, static_cast<std::size_t>(iElement - m_nHotOffset + 1)};
    }

    // The slot that holds the page at nOffset, a multiple of nBlockSize below the size;
    // read in if need be.
    T* GetPage(ULONGLONG nOffset);

    // Asks for the size again and forgets all pages. Keeps the size if the system
    // gives none; reads then fail.
    void RefreshFileSize();

    // Reading starts over at the beginning of the file.
    void Rewind() { m_nFilePos = 0; }

private:
    // Hits of the page last asked for take the short way.
    const T* Locate(ULONGLONG iElement)
    {
        if (iElement - m_nHotOffset >= m_nHotCount) [[unlikely]]
            Enter(iElement);
        return m_pHot + (iElement - m_nHotOffset);
    }

    void Enter(ULONGLONG iElement);
    T* FindPage(ULONGLONG nOffset) const;
    T* TakeSlot(ULONGLONG nOffset);
    void GiveSlotBack();
    void MoveFilePos(ULONGLONG nOffset);
    void ReadPage(ULONGLONG nOffset, T* pPage);
    ULONGLONG CountAt(ULONGLONG nOffset) const; // elements of the page at nOffset
    T* SlotData(ULONGLONG nSlot) const { return m_pData.get() + nSlot * nBlockSize; }

    std::shared_ptr<SharedFile> m_hFile;
    std::atomic<ULONGLONG> m_nSize = 0;
    std::array<ULONGLONG, nPages> m_pageOffsets{}; // place in the file of each slot's page
    std::unique_ptr<T[]> m_pData;                  // all slots, one after the other
    ULONGLONG m_nPageCount = 0;                    // slots in use
    ULONGLONG m_nFirstPage = 0;                    // slot of the newest page
    ULONGLONG m_nFilePos = 0;                      // where the last read ended

    ULONGLONG m_nHotOffset = 0;
    ULONGLONG m_nHotCount = 0;
    const T* m_pHot = nullptr;
};

// The geometry of quote files: at most 4 MiB of a file in memory.
using FileBytes = CDataArray<char, 16, 262144>;

extern template class CDataArray<char, 16, 262144>;

} // namespace Hesperon::specifics
