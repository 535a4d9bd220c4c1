// LineSource: the user's lines behind those of a file that the component reads in their place.
#pragma once

#include <string>

#include "platform/component.h"

namespace tabulex {

class LineSource
{
public:
    virtual ~LineSource() = default;
    // The number of the user's line, from 1; 0 for one that the user's file doesn't have.
    // nNumber is that of the line that the component reads, from 1.
    virtual ULONGLONG NumberOf(ULONGLONG nNumber) = 0;
    // At most nMost bytes of the user's line of that number; empty for none.
    virtual std::string BytesOf(ULONGLONG nUserNumber, ULONGLONG nMost) = 0;
    // The column of the user's line that a field of the component comes from, both from 1; 0 for
    // none.
    virtual ULONG ColumnOf(ULONG nField) = 0;
    // The cell in a column of the user's line of that number.
    virtual std::string CellOf(ULONGLONG nUserNumber, ULONG nColumn) = 0;
};

} // namespace tabulex
