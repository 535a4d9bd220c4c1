// IQRLDataGridViewCtrl: the preview of a file in a list: its raw lines, or its records decoded
// into fields.
//
// It pulls what it shows from an IDataParser, the rows in sight at each paint, and is told of
// the growing count as an IFileHandlerEvents. All calls on one thread but RecordCountChange.
#pragma once

#include "platform/component.h"

namespace IQRL_TabulexConverter {

using OLE_COLOR = ULONG; // of the system

// Dual. The stock properties are kept and have no effect of their own; Enabled reaches the list.
struct IQRLDataGridViewCtrl : IDispatch
{
    virtual HRESULT STDMETHODCALLTYPE put_AutoSize(VARIANT_BOOL newVal) = 0;
    virtual HRESULT STDMETHODCALLTYPE get_AutoSize(VARIANT_BOOL* pVal) = 0;
    virtual HRESULT STDMETHODCALLTYPE put_BackColor(OLE_COLOR newVal) = 0;
    virtual HRESULT STDMETHODCALLTYPE get_BackColor(OLE_COLOR* pVal) = 0;
    virtual HRESULT STDMETHODCALLTYPE put_BorderStyle(LONG newVal) = 0;
    virtual HRESULT STDMETHODCALLTYPE get_BorderStyle(LONG* pVal) = 0;
    virtual HRESULT STDMETHODCALLTYPE put_BorderWidth(LONG newVal) = 0;
    virtual HRESULT STDMETHODCALLTYPE get_BorderWidth(LONG* pVal) = 0;
    virtual HRESULT STDMETHODCALLTYPE put_Enabled(VARIANT_BOOL newVal) = 0;
    virtual HRESULT STDMETHODCALLTYPE get_Enabled(VARIANT_BOOL* pVal) = 0;
    virtual HRESULT STDMETHODCALLTYPE put_TabStop(VARIANT_BOOL newVal) = 0;
    virtual HRESULT STDMETHODCALLTYPE get_TabStop(VARIANT_BOOL* pVal) = 0;

    // E_POINTER where there is none. A put takes the parser's record parser too, and registers
    // this grid with the file; after a failure there is none.
    virtual HRESULT STDMETHODCALLTYPE get_DataParser(IDispatch** pVal) = 0;
    virtual HRESULT STDMETHODCALLTYPE put_DataParser(IDispatch* newVal) = 0;
    // Empties the list, before the parser gets another file. The parser stays.
    virtual HRESULT STDMETHODCALLTYPE NotifySourceDetach() = 0;
    // Raw lines in one column, in place of decoded fields.
    virtual HRESULT STDMETHODCALLTYPE get_TextMode(VARIANT_BOOL* pVal) = 0;
    virtual HRESULT STDMETHODCALLTYPE put_TextMode(VARIANT_BOOL newVal) = 0;
    // Makes the columns as the parser has them, and sets the row count. E_POINTER without a
    // parser, E_UNEXPECTED without a window.
    virtual HRESULT STDMETHODCALLTYPE CreateFields() = 0;
    virtual HRESULT STDMETHODCALLTYPE put_oncomplexfieldchange(VARIANT newVal) = 0; // E_NOTIMPL
    virtual HRESULT STDMETHODCALLTYPE Refresh() = 0;
    // An IDataChangeSink; E_INVALIDARG for null, E_NOINTERFACE for another object.
    virtual HRESULT STDMETHODCALLTYPE put_DataChangeSink(IDispatch* newVal) = 0;
};

} // namespace IQRL_TabulexConverter

// {6C1E7A52-0B3D-4E7F-9A61-2F4C8D90B517}
template <>
inline constexpr GUID iid_of<IQRL_TabulexConverter::IQRLDataGridViewCtrl> = {
    0x6C1E7A52, 0x0B3D, 0x4E7F, {0x9A, 0x61, 0x2F, 0x4C, 0x8D, 0x90, 0xB5, 0x17}};
