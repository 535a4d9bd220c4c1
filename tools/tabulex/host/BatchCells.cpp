#include "tools/tabulex/host/BatchCells.h"

namespace tabulex {

namespace {

ULONGLONG ExtentOf(SAFEARRAY* array, UINT nDimension)
{
    LONG nFirst = 0;
    LONG nLast = -1;
    SafeArrayGetLBound(array, nDimension, &nFirst);
    SafeArrayGetUBound(array, nDimension, &nLast);
    return static_cast<ULONGLONG>(LONGLONG(nLast) - nFirst + 1);
}

} // namespace

BatchCells::BatchCells(SAFEARRAY* batch)
    : m_batch(batch), m_nColumns(ExtentOf(batch, 1)), m_nRows(ExtentOf(batch, 2))
{
    if (FAILED(SafeArrayAccessData(batch, &m_data)))
        m_data = nullptr;
}

BatchCells::~BatchCells()
{
    if (m_data)
        SafeArrayUnaccessData(m_batch);
}

} // namespace tabulex
