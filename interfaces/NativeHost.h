// What a native host has in place of the system's message loop, locale and resources.
//
// Sessions call the host's sink on the thread that started them, when that thread
// pumps its messages:
//
//   converter->DoConvert(sink, 0);
//   while (!sink->HasEnded())
//       TabulexPumpMessages(100);
//
// The other calls are made once, before objects are created.
#pragma once

#include "interfaces/IDialogViews.h"
#include "interfaces/IProgressView.h"
#include "platform/StringTable.h"

extern "C" {

enum TabulexLanguage
{
    TABULEX_LANGUAGE_CHINESE, // the component's string table as it stands
    TABULEX_LANGUAGE_ENGLISH, // the second table under the same ids
};

// Language of messages and display names. Chinese unless set. A host with a table of its
// own hands its address, a TabulexStringTable, to IQRLGUITweak::ResourceHandle.
TABULEX_API void TabulexSetLanguage(TabulexLanguage language);

// Code page in which the text of files is read, by name ("windows-1252", "gbk", "utf-8")
// or number. E_INVALIDARG for an unknown one.
TABULEX_API HRESULT TabulexSetEncoding(const char* name);

// Where assertion and trace reports go: a file to append to, "-" for standard
// error, null or "" for nowhere, which is the default.
TABULEX_API void TabulexSetReportLog(const char* path);

// Runs the calls that wait for the calling thread, and gives their number. Waits for
// the first one at most as many milliseconds as given: 0 doesn't wait, 0xFFFFFFFF waits
// without end. A thread may call it at any time; if it never started a session, nothing
// waits for it.
TABULEX_API unsigned TabulexPumpMessages(unsigned nMilliseconds);

// What makes the views of progress boxes, one view for each box; null for none. Called on the
// thread that starts a conversion; a null view counts as none.
typedef IQRL_TabulexConverter::IProgressView* (*TabulexProgressViewFactory)(void* pContext);
TABULEX_API void TabulexSetProgressViews(TabulexProgressViewFactory pfnMake, void* pContext);

// The views on which IqrlTabulexConvertor::DoAnalyse opens the import dialog; null for none.
// They must outlive the calls of DoAnalyse.
TABULEX_API void TabulexSetDialogViews(IQRL_TabulexConverter::IDialogViews* pViews);

// Who is told a warning that has no other place to appear, such as what the settings check of
// the import dialog finds; the text is good for the call, on whose thread it comes. hWnd is the
// window that a box would open over. With null the component shows it: as one line on standard
// error, or in a box of the system. Set it while no warning is shown.
typedef void (*TabulexWarningListener)(void* pContext, LONG_PTR hWnd, const OLECHAR* pszText);
TABULEX_API void TabulexSetWarningListener(TabulexWarningListener pfnListen, void* pContext);

// The label of a control in the current language, or the caption of a dialog or the heading of a
// pane for kWholeView; never null, empty for one without. Good for good.
TABULEX_API const OLECHAR* TabulexDialogText(IQRL_TabulexConverter::DialogId dialog, LONG nControl);
}
