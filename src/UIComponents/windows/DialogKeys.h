// DialogKeys: the keyboard of a modeless dialog.
//
// Tab, Enter, Esc and the space bar work in a modeless dialog only if the message loop hands
// their messages to IsDialogMessage, and the loop is the host's. While one of these lives, a
// hook of its thread does so for the messages of the dialog, and the loop gets an empty message
// instead. A thread has one hook for all its dialogs.
//
// Made and ended on the dialog's thread, also in its last steps. It works as soon as it is made.
// Where the system refuses a hook, the dialog has the mouse alone.
#pragma once

#include "platform/component.h"

namespace Hesperon::specifics::UILayer {

class DialogKeys
{
public:
    explicit DialogKeys(HWND hDialog);
    ~DialogKeys();
    DialogKeys(const DialogKeys&) = delete;
    DialogKeys& operator=(const DialogKeys&) = delete;

private:
    const HWND m_hDialog;
};

} // namespace Hesperon::specifics::UILayer
