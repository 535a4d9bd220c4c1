// IContainedView: the window of a contained control, in which a window of any class is made.
//
// A control without one keeps what it is given. All calls come on the thread of the control's
// window.
#pragma once

#include "platform/component.h"

namespace Hesperon::specifics {

// What CreateControl was given.
struct ContainedWindowArguments
{
    string_t sClassName;
    string_t sWindowName;
    ULONG nStyle = 0;
    ULONG nExStyle = 0;
    ULONGLONG lParam = 0;   // creation parameter
    ULONGLONG pfnSuper = 0; // window procedure of the class; 0 for none

    bool operator==(const ContainedWindowArguments&) const = default;
};

struct IContainedView
{
    // Makes the contained window, as large as the view; there is none yet. A failure is the
    // system's, and leaves none.
    virtual HRESULT Make(const ContainedWindowArguments& arguments) = 0;
    // Ends the contained window, if there is one.
    virtual void Destroy() = 0;
    // The contained window's handle; 0 where there is none.
    virtual ULONGLONG Contained() = 0;
    // Pass a message to the contained window's procedure: the one that it is handling, an empty
    // one outside of any; or a record (MSG), by its address. There is a contained window.
    virtual LONG_PTR PassCurrent() = 0;
    virtual LONG_PTR Pass(ULONGLONG pMessage) = 0;

protected:
    ~IContainedView() = default;
};

} // namespace Hesperon::specifics
