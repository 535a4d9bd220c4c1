// RowWriter: a text format in which delivered records leave the tool.
//
// Text is appended to a buffer that the caller empties. Used by one thread.
#pragma once

#include "platform/component.h"
#include "tools/tabulex/output/Column.h"
#include "tools/tabulex/output/TextBuffer.h"

namespace tabulex {

class RowWriter
{
public:
    virtual ~RowWriter() = default;

    // Appends what comes before the first row.
    virtual void Begin(TextBuffer& out) = 0;
    // Records: row after row, each with a cell for each column.
    virtual void Rows(const VARIANT* cells, ULONGLONG nRows, TextBuffer& out) = 0;
};

} // namespace tabulex
