// The start row of the dialog: the number of the first line with data as a person counts,
// from 1 and with the header line, in terms of IRecordParser::LinesToSkip.
//
// All of it is 32-bit arithmetic that wraps: a row in front of the first data gives a number of
// lines above kMostLinesToSkip.
#pragma once

#include "platform/component.h"

namespace Hesperon::specifics {

inline constexpr ULONG kMostLinesToSkip = 1000000;

inline ULONG ShownRow(ULONG nLinesToSkip, bool bHasHeader)
{
    return nLinesToSkip + (bHasHeader ? 1 : 0) + 1;
}

inline ULONG LinesToSkipOf(ULONG nShownRow, bool bHasHeader)
{
    return nShownRow - (bHasHeader ? 1 : 0) - 1;
}

} // namespace Hesperon::specifics
