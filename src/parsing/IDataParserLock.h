// IDataParserLock: lets a record parser take the lock of the data parser that it is
// linked to before its own, since a data parser calls its record parser with its lock
// held. Internal to the library; a data parser that doesn't offer it is simply called.
#pragma once

#include "platform/component.h"

struct IDataParserLock : IUnknown
{
    virtual void STDMETHODCALLTYPE EnterParser() = 0;
    virtual void STDMETHODCALLTYPE LeaveParser() = 0;
};

// {3D8B6C54-51F7-4E0A-9C2E-6B0A4D97E8A1}
template <>
inline constexpr GUID iid_of<IDataParserLock> = {
    0x3D8B6C54, 0x51F7, 0x4E0A, {0x9C, 0x2E, 0x6B, 0x0A, 0x4D, 0x97, 0xE8, 0xA1}};
