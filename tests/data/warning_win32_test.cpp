// A warning in a message box of the system.

#include <gtest/gtest.h>

#include <chrono>
#include <thread>

#include "platform/MessageBox.h"

namespace {

HWND BoxOf(DWORD nThread)
{
    HWND hBox = nullptr;
    EnumThreadWindows(
        nThread,
        [](HWND hWnd, LPARAM pBox) -> BOOL {
            wchar_t name[16] = L"";
            GetClassNameW(hWnd, name, 16);
            if (string_view_t(name) != L"#32770" || !IsWindowVisible(hWnd))
                return TRUE;
            *reinterpret_cast<HWND*>(pBox) = hWnd;
            return FALSE;
        },
        reinterpret_cast<LPARAM>(&hBox));
    return hBox;
}

// The text of the box, which is its last label.
string_t LabelsOf(HWND hBox)
{
    string_t labels;
    HWND hLabel = nullptr;
    while ((hLabel = FindWindowExW(hBox, hLabel, L"Static", nullptr)) != nullptr) {
        wchar_t text[100] = L"";
        GetWindowTextW(hLabel, text, 100);
        labels += text;
    }
    return labels;
}

TEST(WarningTest, StandsInABoxUntilItHasBeenRead)
{
    string_t labels;
    std::thread reader([&labels, nThread = GetCurrentThreadId()] {
        HWND hBox = nullptr;
        while (!(hBox = BoxOf(nThread)))
            std::this_thread::sleep_for(std::chrono::milliseconds(10));
        labels = LabelsOf(hBox);
        PostMessageW(hBox, WM_COMMAND, IDOK, 0);
    });
    ShowWarning(0, L"未选择周期。");
    reader.join();
    EXPECT_EQ(labels, L"未选择周期。");
}

} // namespace
