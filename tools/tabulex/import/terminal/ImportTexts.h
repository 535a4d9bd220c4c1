// Texts of the import dialog in the terminal that are no labels of its controls, in both
// languages. Labels are the component's own (TabulexDialogText).
#pragma once

#include <string>

namespace tabulex {

enum class ImportText
{
    Title,
    HelpKey,
    FileHint,
    FrozenHint,
    RecordOf,  // {} is the number of the row, {} that of all rows
    Imported,  // what "#" means
    Keys,      // the last line, left
    FewKeys,   // the same where there is less room
    OkKey,     // the same, right
    CancelKey, //
    Ready,     // status
    NoFile,    //
    NoDates,
    NotReady,     //
    Waiting,      //
    NoFolder,     // {} is a folder's name
    LayoutAnew,   // about types of dates and times in a column's menu
    GoTo,         // question
    Parent,       // of a folder, in the list
    TooSmall,     // {} columns and {} rows
    Help,         // the page of keys, a line a key
    Records,      // of the progress box
    Elapsed,      //
    Remaining,    //
    BadLine,      // {} is the line's number
    BadLineField, // {} is the line's number, {} the field's
    BadLineKeys,  //
    ProgressKeys, //
    Converting,   //
    Count
};

// For the process; English unless set. Before the dialog is opened.
void SetImportLanguage(bool bChinese);

// UTF-8.
const char* TextOf(ImportText text);

} // namespace tabulex
