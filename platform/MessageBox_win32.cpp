#include "platform/MessageBox.h"

void ShowSystemWarning(LONG_PTR hWnd, string_view_t text)
{
    MessageBoxW(reinterpret_cast<HWND>(hWnd), string_t(text).c_str(), nullptr, MB_ICONEXCLAMATION);
}
