// ILineReader: a file handler's GetRecord for a run of many records, whose texts go to one
// buffer: making a BSTR of each shows in a run's time (bench/README.md). Internal to the
// library; results, exceptions and threads are those of IFileHandler.
#pragma once

#include "src/files/LineBuffer.h"

struct ILineReader : IUnknown
{
    virtual HRESULT STDMETHODCALLTYPE AppendRecord(ULONGLONG nIndex, ULONG nLocale,
                                                   Hesperon::specifics::CLineBuffer& lines) = 0;
};

// {5E3C9C57-0B62-4B7B-9C51-6C0C0A8E1D27}
template <>
inline constexpr GUID iid_of<ILineReader> = {
    0x5E3C9C57, 0x0B62, 0x4B7B, {0x9C, 0x51, 0x6C, 0x0C, 0x0A, 0x8E, 0x1D, 0x27}};
