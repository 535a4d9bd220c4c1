// What a consumer of a file hears from the file's worker. All calls come on the
// worker's thread, without any lock of the file held.
#pragma once

#include "platform/component.h"

namespace IQRL_TabulexConverter {

// Dual.
struct IFileHandlerEvents : IDispatch
{
    // The file is now known to hold nNewCount lines; bComplete says that there are no
    // more. Sent with bComplete once.
    virtual HRESULT STDMETHODCALLTYPE RecordCountChange(ULONGLONG nNewCount,
                                                        VARIANT_BOOL bComplete) = 0;
    // Rows nFrom to nFrom + nCount of parsed fields; not sent by the file's worker.
    virtual HRESULT STDMETHODCALLTYPE PutData(VARIANT vFields, ULONGLONG nFrom,
                                              ULONGLONG nCount) = 0;
    // One step of a conversion: the record at position nIndex is due. bsRecord is
    // null; the consumer reads the text. S_OK goes on, anything else ends the
    // conversion.
    virtual HRESULT STDMETHODCALLTYPE ProcessRecord(ULONGLONG nIndex, BSTR bsRecord,
                                                    VARIANT_BOOL bComplete) = 0;
};

// Dual. Offered by a consumer whose conversion begins at a position other than 0.
struct IFileHandlerEvents2 : IDispatch
{
    virtual HRESULT STDMETHODCALLTYPE get_StartPosition(ULONGLONG* pVal) = 0;
};

} // namespace IQRL_TabulexConverter

// {2285CB54-7BC5-4C7B-80A9-EB1531E847C9}
template <>
inline constexpr GUID iid_of<IQRL_TabulexConverter::IFileHandlerEvents> = {
    0x2285CB54, 0x7BC5, 0x4C7B, {0x80, 0xA9, 0xEB, 0x15, 0x31, 0xE8, 0x47, 0xC9}};
// {B513CE04-DD5D-4861-B84B-86E26B7F3D7B}
template <>
inline constexpr GUID iid_of<IQRL_TabulexConverter::IFileHandlerEvents2> = {
    0xB513CE04, 0xDD5D, 0x4861, {0xB8, 0x4B, 0x86, 0xE2, 0x6B, 0x7F, 0x3D, 0x7B}};
