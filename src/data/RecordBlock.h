// A block of parsed records, as the grids of a preview take it.
#pragma once

#include "interfaces/IRecordParser.h"
#include "platform/values.h"
#include "src/data/LineRule.h"
#include "src/files/IFileHandler.h"

namespace Hesperon::specifics {

// Where the records of a block come from. Null pointers stand for nothing bound.
struct BlockSource
{
    IFileHandler* pFile;
    IQRL_TabulexConverter::IRecordParser* pRecordParser;
    const LineRule& lines;
    ULONG nLocale; // code page number
};

// Gives nCount records from position nFrom on as VT_ARRAY|VT_VARIANT, record by field. A field
// that doesn't parse leaves its text, or nothing, in its cell; a line that can't be read fails
// the call. Throws what the file throws.
HRESULT ReadRecordBlock(const BlockSource& source, ULONG nFrom, ULONG nCount, Variant& block);

} // namespace Hesperon::specifics
