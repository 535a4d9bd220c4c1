// IDialogViews: the surface on which the import dialog and its two small dialogs appear.
//
// A host hands in its views (NativeHost.h). Without them the dialog can't be opened.
//
// Opening: the component calls Run with the dialog's number and its events. The view sets
// itself up and calls OnOpen, in which the component asks for the panes and fills all
// controls. Then the view takes the user's input, and Run returns what End was given. When the
// view goes, for whatever reason, it calls OnDestroy, while its controls can still be read;
// then each grid and the folder view call their OnClose.
//
// Labels and captions aren't written by the component: TabulexDialogText gives them. All calls
// come on the thread that called Run. A view that dispatches messages while it waits for
// input calls TabulexPumpMessages, since the component's workers report to this thread.
#pragma once

#include "interfaces/IFolderView.h"
#include "interfaces/IGridView.h"

namespace IQRL_TabulexConverter {

// Dialogs and panes, by number.
enum DialogId : LONG
{
    DialogImport = 210,     // holds the panes from top to bottom
    DialogFolder = 201,     // pane: pick a file
    DialogContent = 212,    // pane: the lines of the file
    DialogSettings = 220,   // pane
    DialogDecode = 244,     // pane: columns and records
    DialogTemplate = 205,   // small dialog: a template of a column
    DialogDelimiters = 222, // small dialog: the field delimiters
    DialogProgress = 250,   // IProgressView.h
};

// What End is given, and Run gives.
inline constexpr LONG kDialogOk = 1;
inline constexpr LONG kDialogCancel = 2;
inline constexpr LONG kDialogFailed = -1; // it couldn't be set up

enum ImportControl : LONG
{
    ImportLabel = -1, // over the file picker
    ImportOk = 300,
    ImportCancel = 2,
};

enum ContentControl : LONG
{
    ContentLanguageLabel = 214,
    ContentLanguage = 216, // list of code pages
};

enum SettingsControl : LONG
{
    SettingsSize = 222, // edit: size of the resolution
    SettingsResolution = 224,
    SettingsField = 226,
    SettingsTimeZone = 228,
    SettingsStartRow = 230, // edit
    SettingsPriceMultiplier = 232,
    SettingsVolumeMultiplier = 234,
    SettingsDateFirst = 236,
    SettingsDateLast = 238,
    SettingsDateLastLabel = 239,
    SettingsDelimiters = 240,  // button
    SettingsBarsEndTime = 242, // check box
};

enum DecodeControl : LONG
{
    DecodeLabel = 214,
};

// Of both small dialogs.
enum SmallDialogControl : LONG
{
    SmallDialogOk = 1,
    SmallDialogCancel = 2,
};

enum TemplateControl : LONG
{
    TemplateText = 450, // edit
    TemplateList = 452,
    TemplateDelete = 454, // button
};

enum DelimiterControl : LONG
{
    DelimiterLabel = -1, // over the check boxes, which follow
    DelimiterSpace = 203,
    DelimiterTab = 204,
    DelimiterSemicolon = 205,
    DelimiterComma = 206,
    DelimiterColon = 207,
    DelimiterBar = 208,
};

struct IPaneView : IControlsView
{
    // The list that the pane shows below its controls; null if it can't be made. It belongs to
    // the pane. A pane has one at most.
    virtual IGridView* MakeGrid(IGridEvents& events) = 0;

protected:
    ~IPaneView() = default;
};

struct IDialogView : IControlsView
{
    // Null where it can't be made. Panes belong to the dialog and live as long as it. Place and
    // Move of kWholeView are a pane's place in the dialog.
    virtual IPaneView* MakePane(DialogId pane, IControlEvents& events) = 0;
    virtual IFolderView* MakeFolderView(IFolderEvents& events) = 0;
    virtual void Centre() = 0; // on the window that the dialog was opened over
    // The handle that boxes are opened over; 0 where there are no windows.
    virtual LONG_PTR Window() = 0;
    // Ends Run with this result, when the event that is being handled returns.
    virtual void End(LONG nResult) = 0;

protected:
    ~IDialogView() = default;
};

// OnClick tells the buttons. Esc and the close box are a click on the button of cancel.
struct IDialogEvents : IControlEvents
{
    virtual void OnOpen(IDialogView& view) = 0;
    // Enter, from wherever the keyboard is, in a dialog without a default button.
    virtual void OnDefaultCommand() = 0;
    virtual void OnDestroy() = 0;

protected:
    ~IDialogEvents() = default;
};

struct IDialogViews
{
    // Runs a dialog over a window, which is off meanwhile; 0 for none. Gives what End was given,
    // or kDialogFailed if it never opened; no event has been told then.
    virtual LONG Run(DialogId dialog, LONG_PTR hwndParent, IDialogEvents& events) = 0;
    // The window of the calling thread that small dialogs open over; 0 for none.
    virtual LONG_PTR ActiveWindow() = 0;
    // A call with true and one with false come in pairs, which may be nested.
    virtual void ShowWaiting(bool bWaiting) = 0;

protected:
    ~IDialogViews() = default;
};

} // namespace IQRL_TabulexConverter
