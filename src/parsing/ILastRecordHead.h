// ILastRecordHead: IDataParser::get_LastRecord for those who look at 511 characters of a
// record. The last line of a file may be any length, and is asked for once for each template
// that is tried. Internal to the library; of a data parser that doesn't offer it the whole
// record is taken.
#pragma once

#include "platform/component.h"

struct ILastRecordHead : IUnknown
{
    // The first characters of the last record, 511 at least if it has as many. Results are
    // those of get_LastRecord.
    virtual HRESULT STDMETHODCALLTYPE get_LastRecordHead(BSTR* pVal) = 0;
};

// {C6A1F3D2-7B0E-4E63-9A45-18D0F2B7E59C}
template <>
inline constexpr GUID iid_of<ILastRecordHead> = {
    0xC6A1F3D2, 0x7B0E, 0x4E63, {0x9A, 0x45, 0x18, 0xD0, 0xF2, 0xB7, 0xE5, 0x9C}};
