// What a conversion reports to its sink. All calls come on the file's worker thread;
// PutRecords and EndTransaction come with no lock of the parser held, the error
// calls with the parser's lock held, so an implementation must not call that parser then.
#pragma once

#include "platform/component.h"

namespace IQRL_TabulexConverter {

// Dual.
struct IDataParserEvents : IDispatch
{
    // A batch: VT_ARRAY|VT_VARIANT over two dimensions, column by record, both from
    // 0. It holds only the records that passed; nRecCountWithSkeeped also counts the
    // rejected lines of the batch. The array stays the sender's and is destroyed
    // after the call. Any result but S_OK ends the conversion: a success as if it
    // were complete, a failure as a failed one.
    virtual HRESULT STDMETHODCALLTYPE PutRecords(VARIANT vRecords,
                                                 ULONGLONG nRecCountWithSkeeped) = 0;
    // The conversion is over: VARIANT_TRUE when it went well. Sent once in a run.
    virtual HRESULT STDMETHODCALLTYPE EndTransaction(VARIANT_BOOL bResult) = 0;
    // A fault outside the lines: VT_ARRAY|VT_VARIANT, three elements from 0: a VT_I4
    // code or line, and the text twice.
    virtual HRESULT STDMETHODCALLTYPE OnError(VARIANT Description) = 0;
    // Display name of a resolution (ids 0 to 7), optionally followed by "|size".
    virtual HRESULT STDMETHODCALLTYPE GetResolutionName(LONG Resolution, BSTR* Name) = 0;
    // A bad line. Lines and fields count from 1; field 65535 means the whole record.
    // S_OK rejects the line and goes on; anything else ends the conversion without
    // an EndTransaction, since the sink then knows.
    virtual HRESULT STDMETHODCALLTYPE OnError2(LONG_PTR lptrLineNum, LONG lptrFieldNum,
                                               BSTR bsDescription) = 0;
};

} // namespace IQRL_TabulexConverter

// {03407D6E-AB74-4674-8C17-961B4128FF10}
template <>
inline constexpr GUID iid_of<IQRL_TabulexConverter::IDataParserEvents> = {
    0x03407D6E, 0xAB74, 0x4674, {0x8C, 0x17, 0x96, 0x1B, 0x41, 0x28, 0xFF, 0x10}};
