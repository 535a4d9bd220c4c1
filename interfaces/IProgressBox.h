// IProgressBox: the box that shows a conversion and asks about bad lines.
//
// The box lives on the thread that calls ShowProgress, and needs that thread to pump
// its messages. The other calls may come from any thread; those that show a figure or
// an error are carried over to the box's thread. A box that isn't shown does nothing
// and says so: S_FALSE, or E_UNEXPECTED for an error.
#pragma once

#include "platform/component.h"

namespace IQRL_TabulexConverter {

struct IProgressBox : IUnknown
{
    // nPos of nMax records are done.
    virtual HRESULT STDMETHODCALLTYPE DoProgress(ULONGLONG nPos, ULONGLONG nMax) = 0;
    // Writes the count of records; nothing else of the box changes.
    virtual HRESULT STDMETHODCALLTYPE SetProcessedRecordCount(ULONGLONG nMax) = 0;
    // Opens the box over the parent window (0: the thread's active one), which stays
    // disabled until Close.
    virtual HRESULT STDMETHODCALLTYPE ShowProgress(LONG_PTR hwndParent) = 0;
    virtual HRESULT STDMETHODCALLTYPE Close() = 0;
    // Caption; kept for a box that opens later.
    virtual HRESULT STDMETHODCALLTYPE SetTitle(BSTR bsTitle) = 0;
    virtual HRESULT STDMETHODCALLTYPE SetFileName(BSTR bsFileName) = 0;
    // The parser of the conversion: it gives places in the file, and the cancel button
    // aborts it.
    virtual HRESULT STDMETHODCALLTYPE put_DataParser(IDispatch* pDataParser) = 0;
    // Shows an error and waits until the user has chosen. S_OK goes on; anything else
    // ends the conversion. After a "skip all" it gives S_OK at once.
    virtual HRESULT STDMETHODCALLTYPE OnError(BSTR bsError) = 0;
    // The same with a place: lines and fields from 1, field 65535 for the whole record.
    virtual HRESULT STDMETHODCALLTYPE OnError2(LONG_PTR lptrLineNum, LONG lptrFieldNum,
                                               BSTR bsDescription) = 0;
};

// Dual. Stands for older hosts; both puts give E_NOTIMPL.
struct IProgressDlg : IDispatch
{
    virtual HRESULT STDMETHODCALLTYPE put_onselectdebug(VARIANT newVal) = 0;
    virtual HRESULT STDMETHODCALLTYPE put_onselectnormal(VARIANT newVal) = 0;
};

} // namespace IQRL_TabulexConverter

// {A6008D7D-D691-42BF-BBAA-DE68BA2BE57D}
template <>
inline constexpr GUID iid_of<IQRL_TabulexConverter::IProgressBox> = {
    0xA6008D7D, 0xD691, 0x42BF, {0xBB, 0xAA, 0xDE, 0x68, 0xBA, 0x2B, 0xE5, 0x7D}};
// {937A2C2E-3FF0-45D8-8EDE-EEDFE9F53C15}
template <>
inline constexpr GUID iid_of<IQRL_TabulexConverter::IProgressDlg> = {
    0x937A2C2E, 0x3FF0, 0x45D8, {0x8E, 0xDE, 0xEE, 0xDF, 0xE9, 0xF5, 0x3C, 0x15}};
