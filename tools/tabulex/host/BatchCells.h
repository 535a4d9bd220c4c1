// BatchCells: the cells of a delivered batch, in place: record after record, each with its columns
// side by side. The batch must outlive it, and can't be changed meanwhile.
#pragma once

#include "platform/values.h"

namespace tabulex {

class BatchCells
{
public:
    explicit BatchCells(SAFEARRAY* batch);
    ~BatchCells();
    BatchCells(const BatchCells&) = delete;
    BatchCells& operator=(const BatchCells&) = delete;

    // Null where the batch can't be read.
    const VARIANT* Data() const { return static_cast<const VARIANT*>(m_data); }
    ULONGLONG Columns() const { return m_nColumns; }
    ULONGLONG Rows() const { return m_nRows; }

private:
    SAFEARRAY* m_batch;
    void* m_data = nullptr;
    ULONGLONG m_nColumns;
    ULONGLONG m_nRows;
};

} // namespace tabulex
