// What a run keeps from line to line.
#pragma once

#include "src/data/DateWithStatus.h"
#include "src/data/run/BatchArray.h"
#include "src/files/LineBuffer.h"

namespace Hesperon::specifics {

// The record before, for the check of order.
struct RunOrder
{
    DateWithStatus dtLast;
    ULONGLONG nLastSymbolHash = ~0ull; // no hash has this value: the first symbol is a new one
};

// The lines that wait for their batch, and the array that they go to.
struct BatchMemory
{
    LineBuffer lines;
    BatchArray array;

    void Release()
    {
        lines.Release();
        array.Release();
    }
};

} // namespace Hesperon::specifics
