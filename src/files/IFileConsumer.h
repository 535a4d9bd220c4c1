// What the library's own consumers of a file offer its worker beside the events, so that it can do
// in one call what nobody can tell from many. Internal to the library; the calls come on the file's
// worker.
#pragma once

#include "platform/com_ptr.h"

struct ICountHearer : IUnknown
{
    // False: RecordCountChange reaches nobody at present.
    virtual bool STDMETHODCALLTYPE HearsCounts() = 0;
};

// {3D1B7F42-6A0E-4B0C-9C55-0F6B8F1E7A26}
template <>
inline constexpr GUID iid_of<ICountHearer> = {
    0x3D1B7F42, 0x6A0E, 0x4B0C, {0x9C, 0x55, 0x0F, 0x6B, 0x8F, 0x1E, 0x7A, 0x26}};

struct IRecordSteps : IUnknown
{
    // ProcessRecord for one record after the other from nIndex on: nMost of them at most, and none
    // after one with which the consumer has called anybody. nTaken: how many. The result is that
    // of the last one; all others had S_OK.
    virtual HRESULT STDMETHODCALLTYPE ProcessRecords(ULONGLONG nIndex, ULONGLONG nMost,
                                                     ULONGLONG& nTaken) = 0;
};

// {A8C0E9D4-52B7-4E1F-8D36-71E4B2C95F03}
template <>
inline constexpr GUID iid_of<IRecordSteps> = {
    0xA8C0E9D4, 0x52B7, 0x4E1F, {0x8D, 0x36, 0x71, 0xE4, 0xB2, 0xC9, 0x5F, 0x03}};
