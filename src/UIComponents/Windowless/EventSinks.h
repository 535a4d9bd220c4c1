// What the panes of the import dialog report to the control. All calls but
// OnRecordCountChanged come on the dialog's thread.
#pragma once

#include "platform/component.h"

namespace Hesperon::specifics::notify {

struct IFileEventSink
{
    virtual void OnFileSelected(const OLECHAR* pszPath) = 0;
    // The file's worker has counted on. On its thread.
    virtual void OnRecordCountChanged() = 0;

protected:
    ~IFileEventSink() = default;
};

struct IDataSettingEventSink
{
    virtual void OnFileLanguageChanged(ULONG nCodePage) = 0;
    virtual void OnDateFirstChanged(const VARIANT& vDate) = 0; // VT_DATE
    virtual void OnDateLastChanged(const VARIANT& vDate) = 0;
    virtual void OnMultiPriceChanged(const OLECHAR* pszName) = 0;
    virtual void OnMultiVolumeChanged(const OLECHAR* pszName) = 0;
    virtual void OnResolutionSizeChanged(const LONG nSize) = 0;
    virtual void OnResolutionTypeChanged(const int nIndex) = 0; // position in the list
    virtual void OnDelimitersClicked() = 0;
    virtual void OnStartRowChanged(const ULONG nRow) = 0; // as shown: from 1, the header counts
    virtual void OnUseBarsEndTimeChanged(bool bChecked) = 0;

protected:
    ~IDataSettingEventSink() = default;
};

struct IDataChangeEventSink
{
    // A column of the grid has another type.
    virtual void OnDataChanged() = 0;

protected:
    ~IDataChangeEventSink() = default;
};

} // namespace Hesperon::specifics::notify
