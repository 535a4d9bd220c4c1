// What a host implements to receive a session: records, symbols, and how it ended.
//
// All calls come on the thread that started the session, while that thread pumps
// its messages (NativeHost.h), and one at a time. No more of the file is read until the
// call has returned.
#pragma once

#include "platform/component.h"

namespace IQRL_TabulexConverter {

// Dual. Called through its slots.
struct IqrlTabulexDataSink : IDispatch
{
    // Of a conversion: a batch of at most 1000 lines, VT_ARRAY|VT_VARIANT over two
    // dimensions, column by record, both from 0. The columns are the fields to which
    // IqrlTabulexConvertor::GetField gives an id other than 0, in field order. Cells
    // are VT_BSTR (Symbol), VT_R8 (prices), VT_I8 (volumes, ticks, open interest),
    // and two that have a form of their own:
    //   Date  VT_I2, days since 1899-12-30, to be read as an unsigned 16-bit number
    //   Time  VT_I4, milliseconds since midnight
    // A batch may have no records: all its lines were rejected.
    //
    // Of an enumeration: one symbol, VT_BSTR.
    //
    // The value stays the sender's: copy what is kept. S_OK goes on; S_FALSE ends the
    // session as a complete one, with Commit; a failure ends it with Rollback.
    virtual HRESULT STDMETHODCALLTYPE DataChanged(VARIANT Data) = 0;
    // The session ended well. This or Rollback is the last call; the sink is released
    // after it.
    virtual HRESULT STDMETHODCALLTYPE Commit() = 0;
    // The session failed or was cancelled: discard what came so far.
    virtual HRESULT STDMETHODCALLTYPE Rollback() = 0;
    // What is wrong with the settings: VT_ARRAY|VT_VARIANT, three elements from 0: a
    // VT_I4 code, and the text twice.
    virtual HRESULT STDMETHODCALLTYPE OnError(VARIANT Description) = 0;
};

} // namespace IQRL_TabulexConverter

// {F5ACAC13-1203-4D35-8A8F-FA2336D3337F}
template <>
inline constexpr GUID iid_of<IQRL_TabulexConverter::IqrlTabulexDataSink> = {
    0xF5ACAC13, 0x1203, 0x4D35, {0x8A, 0x8F, 0xFA, 0x23, 0x36, 0xD3, 0x33, 0x7F}};
