// What makes a text with a mark, or of two bytes a character, plain UTF-8.
//
// Lines stay lines: nothing is added or taken away but the mark. Memory doesn't grow with the
// file. Both throw Fault where reading or writing fails, and after an interrupt.
#pragma once

#include <cstddef>

#include "platform/component.h"
#include "tools/tabulex/system/InputStream.h"
#include "tools/tabulex/system/SpillFile.h"

namespace tabulex {

// What couldn't be kept.
struct TranscodeLoss
{
    bool bOddByte = false;        // a byte at the end that is half a character was left out
    ULONGLONG nReplaced = 0;      // surrogates without their other half, now U+FFFD
    ULONGLONG nFirstReplaced = 0; // the line of the first, from 1
};

// Two-byte text from its first character on.
TranscodeLoss TranscodeUtf16(InputStream& from, bool bBigEndian, SpillFile& to);

// The rest as it stands.
void CopyBytes(InputStream& from, SpillFile& to);

// Reads bytes that nobody needs.
void SkipBytes(InputStream& from, std::size_t nCount);

} // namespace tabulex
