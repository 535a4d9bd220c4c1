// ISymbolEnumerator: a walk over a file that reports each symbol once.
//
// Set DataParser, Receiver and SymbolField, then Start. The walk runs on the one
// thread that serves all enumerations of the process, one after the other.
#pragma once

#include "platform/component.h"

namespace IQRL_TabulexConverter {

// Dual.
struct ISymbolEnumerator : IDispatch
{
    // Put takes a private copy of an IDataParser, so that the source stays free for
    // other work; get gives the copy, E_NOINTERFACE where none is set.
    virtual HRESULT STDMETHODCALLTYPE get_DataParser(IDispatch** pVal) = 0;
    virtual HRESULT STDMETHODCALLTYPE put_DataParser(IDispatch* newVal) = 0;
    // An IDataParserEvents: PutRecords brings a symbol as VT_BSTR with a count of 0, and
    // EndTransaction ends the walk, but for a cancelled one, which ends silently.
    virtual HRESULT STDMETHODCALLTYPE put_Receiver(IDispatch* newVal) = 0;
    // Field of the record, from 0, that holds the symbol; 0xFFFFFFFF for none.
    virtual HRESULT STDMETHODCALLTYPE get_SymbolField(ULONG* pVal) = 0;
    virtual HRESULT STDMETHODCALLTYPE put_SymbolField(ULONG newVal) = 0;
    virtual HRESULT STDMETHODCALLTYPE Start() = 0;
};

} // namespace IQRL_TabulexConverter

// {C111ADE2-5CC4-4792-81C2-61D591A2CEF7}
template <>
inline constexpr GUID iid_of<IQRL_TabulexConverter::ISymbolEnumerator> = {
    0xC111ADE2, 0x5CC4, 0x4792, {0x81, 0xC2, 0x61, 0xD5, 0x91, 0xA2, 0xCE, 0xF7}};
