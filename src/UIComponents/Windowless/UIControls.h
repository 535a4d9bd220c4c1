// IUIControls: what the control of the import dialog asks of the dialog.
//
// A failure is a code, and leaves the controls as they were unless an operation says otherwise.
// Used on the dialog's thread.
#pragma once

#include "platform/component.h"

namespace Hesperon::specifics::UILayer {

// Which controls are enabled.
enum ControlsState : LONG
{
    StateNone = 0,       // nothing but the file picker
    StateUnreadable = 1, // the code page and the delimiters, by which the file may become readable
    StateReady = 2,      // everything
};

struct IUIControls
{
    // The pickers as VT_DATE. E_UNEXPECTED for one without a date.
    virtual HRESULT GetDateFirst(VARIANT* pDate) = 0;
    virtual HRESULT GetDateLast(VARIANT* pDate) = 0;
    // A failure, and 0, for an empty edit.
    virtual HRESULT GetStartRow(ULONG* pnRow) = 0;
    // TYPE_E_ELEMENTNOTFOUND for a code page, or below a name, that the list doesn't have.
    virtual HRESULT SetFileLanguage(ULONG nCodePage) = 0;
    virtual HRESULT SetControlsState(LONG nState) = 0; // a ControlsState
    // A date of which the low 16 bits of the whole days are 0 stands for none.
    virtual HRESULT SetDateFirst(const VARIANT& vDate) = 0;
    virtual HRESULT SetDateFormat(LONG nMode) = 0; // 0 dates, 1 dates and times
    virtual HRESULT SetDateLast(const VARIANT& vDate) = 0;
    virtual HRESULT SetUseBarsEndTime(bool bChecked) = 0;
    virtual HRESULT SetStartRow(ULONG nRow) = 0; // doesn't count as typed
    virtual HRESULT SetMultiPrice(const OLECHAR* pszName) = 0;
    virtual HRESULT SetMultiVolume(const OLECHAR* pszName) = 0;
    // The size is written first; DISP_E_BADINDEX for a row that isn't there.
    virtual HRESULT SetResolution(ULONG nSize, ULONG nIndex) = 0;
    virtual HRESULT ShowUseBarsEndTime(bool bShow) = 0;
    // The next start row typed is reported, also if it is the one reported last.
    virtual HRESULT ResetStartRow() = 0;

protected:
    ~IUIControls() = default;
};

} // namespace Hesperon::specifics::UILayer
