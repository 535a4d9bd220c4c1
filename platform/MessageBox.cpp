#include "platform/MessageBox.h"

#include <utility>

namespace {

WarningListener& Listener()
{
    static WarningListener listener;
    return listener;
}

} // namespace

WarningListener SetWarningListener(WarningListener listener)
{
    return std::exchange(Listener(), std::move(listener));
}

void ShowWarning(LONG_PTR hWnd, string_view_t text)
{
    if (const WarningListener& listener = Listener())
        listener(hWnd, text);
    else
        ShowSystemWarning(hWnd, text);
}
