// IFolderView: the folder list of a dialog, in which the user picks a file.
//
// Its controls are those of FolderControl. The view shows the entries of the folder that the
// component has opened; it may list them by itself, with the system's own means, and ask of
// each whether it is to be shown. All calls come on the thread of the dialog.
//
// Another row of FolderLookIn opens nothing yet. Enter there is FolderOpenSelection; a view in
// which a row can be chosen for good by other means, such as a mouse, reports that by
// OnClick(FolderLookIn).
#pragma once

#include "interfaces/IGridView.h"

namespace IQRL_TabulexConverter {

enum FolderControl : LONG
{
    FolderLookIn = 1001, // a list of the folders from the root to the one that is shown
    FolderList = 1000,
    FolderToolbar = 1003,
};

// Commands of the list's keys, of the toolbar's buttons and of its menu.
enum FolderCommand : LONG
{
    FolderUp = 32772,    // also Backspace in the list
    FolderModes = 32773, // opens the menu
    FolderIcons = 32774,
    FolderSmallIcons = 32775,
    FolderNames = 32776,
    FolderDetails = 32777,
    FolderOpenSelection = 32778, // Enter in the list
};

enum FolderMode : LONG
{
    ModeIcons = 1,
    ModeSmallIcons = 2,
    ModeNames = 3,
    ModeDetails = 4,
};

// A file or folder. The texts are good until the folder is read again.
struct FolderEntry
{
    const OLECHAR* pszPath = OLESTR(""); // whole
    const OLECHAR* pszName = OLESTR(""); // for the user
    bool bFolder = false;
    ULONGLONG nSize = 0; // bytes, of a file
    DATE dtModified = 0; // local time; 0 where it isn't known
};

struct IFolderEvents : IControlEvents
{
    // For a view that lists a folder by itself: whether a thing of this path is shown.
    virtual bool Shows(const OLECHAR* pszPath) = 0;
    // For other views: what the folder holds, folders first.
    virtual LONG EntryCount() = 0;
    virtual FolderEntry Entry(LONG nEntry) = 0;
    // The user has selected a file or folder; empty for nothing.
    virtual void OnSelection(const OLECHAR* pszPath) = 0;
    virtual void OnCommand(FolderCommand command) = 0;
    // The view goes; it isn't called again, and calls nothing again.
    virtual void OnClose() = 0;

protected:
    ~IFolderEvents() = default;
};

struct IFolderView : IControlsView
{
    // Shows a folder, with nothing selected; false if it can't be read.
    virtual bool ShowFolder(const OLECHAR* pszFolder, FolderMode mode) = 0;
    // Selects an entry of the folder that is shown, and scrolls to it. Tells no event.
    virtual void SelectEntry(const OLECHAR* pszPath) = 0;
    // A disabled view shows the folder and the selection, and lets neither change.
    virtual void Freeze(bool bFrozen) = 0;
    // Opens a menu below the button of FolderModes; 0 for none.
    virtual LONG TrackMenu(ViewMenu menu) = 0;

protected:
    ~IFolderView() = default;
};

} // namespace IQRL_TabulexConverter
