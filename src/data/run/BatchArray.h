// BatchArray: the array of the records of a batch. Its first index is the column, its second the
// record; the columns of a record lie side by side.
//
// One array serves batch after batch: to allocate and free 200 KB for each costs time. Used by
// one thread.
#pragma once

#include "platform/values.h"
#include "src/values/LockedArray.h"

namespace Hesperon::specifics {

class BatchArray
{
public:
    // Gives an array of this shape with all cells empty. The array from before is used again,
    // unless somebody has locked it or it has another shape: then it is given up.
    HRESULT Prepare(ULONG nColumns, ULONG nRecords)
    {
        if (!Fits(nColumns, nRecords))
            return Create(nColumns, nRecords);
        const LockedArray<VARIANT> cells(m_array.get());
        for (VARIANT& cell : cells.Elements())
            ClearValue(cell);
        return S_OK;
    }

    SAFEARRAY* get() const { return m_array.get(); }
    void Release() { m_array = {}; }

private:
    // rgsabound holds the bounds in reverse of the order given to SafeArrayCreate. Whoever
    // got the array may have redimensioned it, its lower bound too.
    bool Fits(ULONG nColumns, ULONG nRecords) const
    {
        const SAFEARRAY* p = m_array.get();
        return p && p->cLocks == 0 && p->rgsabound[1].cElements == nColumns &&
               p->rgsabound[0].cElements == nRecords && p->rgsabound[0].lLbound == 0;
    }

    HRESULT Create(ULONG nColumns, ULONG nRecords)
    {
        SAFEARRAYBOUND bounds[] = {{nColumns, 0}, {nRecords, 0}};
        m_array = SafeArray(SafeArrayCreate(VT_VARIANT, 2, bounds));
        return m_array ? S_OK : HRESULT_FROM_WIN32(ERROR_NOT_ENOUGH_MEMORY);
    }

    SafeArray m_array;
};

} // namespace Hesperon::specifics
