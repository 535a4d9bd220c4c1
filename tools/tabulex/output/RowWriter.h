// RowWriter: a text format in which delivered records leave the tool.
//
// Text is appended to a buffer that the caller empties. Used by one thread.
#pragma once

#include <string>

#include "platform/component.h"
#include "tools/tabulex/output/Column.h"

namespace tabulex {

class RowWriter
{
public:
    virtual ~RowWriter() = default;

    // Appends what comes before the first row.
    virtual void Begin(std::string& out) = 0;
    // One record: a cell for each column.
    virtual void Row(const VARIANT* cells, std::string& out) = 0;
};

} // namespace tabulex
