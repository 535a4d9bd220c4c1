// IReadState: whether everything that was asked of a parser's file could be read.
//
// A record that can't be read counts as the end of the file: a conversion then commits
// with the records that came before, and an enumeration ends well. A host that must not
// take a short result for a whole one asks here after the end.
//
// Offered by data parsers, through QueryInterface. All parsers on one open file give the
// same answer, and so does a parser while another one converts. Safe from any thread.
#pragma once

#include "platform/component.h"

namespace IQRL_TabulexConverter {

enum ReadFault : LONG
{
    ReadFaultNone = 0,
    ReadFaultSystem = 1, // the system failed to read
    ReadFaultCut = 2,    // the file ended before the size that it had when it was opened
    ReadFaultMemory = 3, // memory ran out while a line was found or kept
};

// ReadState::nFaultLine: no line was being looked for.
inline constexpr ULONGLONG kNoFaultLine = ~0ULL;

struct ReadState
{
    LONG nFault;              // ReadFault of the first one since the file was opened
    ULONGLONG nFaultPosition; // bytes from the beginning of the file; not for ReadFaultMemory
    ULONGLONG nFaultLine;     // line with content, from 0, that was looked for or walked to
    ULONGLONG nSize;          // bytes of the file as the component knows it: no more are read
    ULONGLONG nSizeNow;       // bytes that the open file has by now
};

struct IReadState : IUnknown
{
    // E_FAIL without a file, and where its size isn't known.
    virtual HRESULT STDMETHODCALLTYPE GetReadState(ReadState* pState) = 0;
};

} // namespace IQRL_TabulexConverter

// {D0B45F33-52A8-4F0E-9B1D-3E8F7A6C2C41}
template <>
inline constexpr GUID iid_of<IQRL_TabulexConverter::IReadState> = {
    0xD0B45F33, 0x52A8, 0x4F0E, {0x9B, 0x1D, 0x3E, 0x8F, 0x7A, 0x6C, 0x2C, 0x41}};
