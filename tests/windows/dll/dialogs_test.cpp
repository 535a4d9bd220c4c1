// A host that opens the library's import dialog, and unloads the library.

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

#include "interfaces/ClassIds.h"
#include "interfaces/IqrlTabulexConvertor.h"
#include "platform/values.h"
#include "tests/front/Minutes.h"
#include "tests/front/ProcessCounts.h"
#include "tests/windows/ComponentLibrary.h"
#include "tests/windows/LoadsAndUnloads.h"
#include "tests/windows/SystemObjects.h"

using namespace IQRL_TabulexConverter;

namespace {

constexpr int kCancel = 2;

HWND OwnDialog()
{
    HWND hDialog = nullptr;
    EnumThreadWindows(
        GetCurrentThreadId(),
        [](HWND hWnd, LPARAM lParam) -> BOOL {
            if (IsWindowVisible(hWnd) && GetDlgItem(hWnd, kCancel))
                *reinterpret_cast<HWND*>(lParam) = hWnd;
            return TRUE;
        },
        reinterpret_cast<LPARAM>(&hDialog));
    return hDialog;
}

// Cancels the dialogs that open while it lives, and counts them.
class Canceller
{
public:
    Canceller() : m_nTimer(SetTimer(nullptr, 0, 10, &OnTimer)) { s_nCancelled = 0; }
    ~Canceller() { KillTimer(nullptr, m_nTimer); }
    Canceller(const Canceller&) = delete;
    Canceller& operator=(const Canceller&) = delete;

    int Cancelled() const { return s_nCancelled; }

private:
    static void CALLBACK OnTimer(HWND, UINT, UINT_PTR, DWORD)
    {
        const HWND hDialog = OwnDialog();
        if (!hDialog || hDialog == s_hLast)
            return;
        s_hLast = hDialog;
        ++s_nCancelled;
        PostMessageW(hDialog, WM_COMMAND, kCancel, 0);
    }

    static inline int s_nCancelled = 0;
    static inline HWND s_hLast = nullptr;
    const UINT_PTR m_nTimer;
};

class DllDialogs : public testing::Test
{
protected:
    DllDialogs()
    {
        std::ofstream(m_path, std::ios::binary) << "Symbol,Date,Time,Open,High,Low,Close,Volume\n"
                                                << Minutes(1000, "ABC");
    }
    ~DllDialogs() override
    {
        std::error_code ignored;
        std::filesystem::remove(m_path, ignored);
    }
    void SetUp() override
    {
        ShowFirstWindow();
        ASSERT_EQ(CoInitialize(nullptr), S_OK);
    }
    void TearDown() override { CoUninitialize(); }

    void OpenDialogs(const ComponentLibrary& library, int nDialogs)
    {
        com_ptr<IqrlTabulexConvertor> converter;
        ASSERT_EQ(library.Create(CLSID_CqrlTabulexConvertor, converter), S_OK);
        ASSERT_EQ(converter->put_FileName(Bstr(m_path.native()).get()), S_OK);
        const Canceller canceller;
        for (int i = 0; i < nDialogs; ++i) {
            VARIANT_BOOL bStatus = VARIANT_TRUE;
            EXPECT_EQ(converter->DoAnalyse(&bStatus, 0), S_OK);
            EXPECT_EQ(bStatus, VARIANT_FALSE);
        }
        EXPECT_EQ(canceller.Cancelled(), nDialogs);
    }
    static void AwaitNothingLives(const ComponentLibrary& library)
    {
        auto* const pfnCanUnload = library.Entry<decltype(DllCanUnloadNow)>("DllCanUnloadNow");
        const ULONGLONG nEnd = GetTickCount64() + 60'000;
        while (pfnCanUnload() != S_OK && GetTickCount64() < nEnd) {
            MsgWaitForMultipleObjects(0, nullptr, FALSE, 5, QS_ALLINPUT);
            MSG message;
            while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE))
                DispatchMessageW(&message);
        }
        EXPECT_EQ(pfnCanUnload(), S_OK);
    }

    const std::filesystem::path m_path =
        std::filesystem::temp_directory_path() / "tabulex_dll_dialogs_test.csv";
};

// The first dialogs also fill the caches of the system.
TEST_F(DllDialogs, TheLibraryGoesWithItsWindowsAndItsClasses)
{
    constexpr std::size_t kLoads = 4;
    unsigned nFirstObjects = 0;
    ProcessCounts first, last;
    for (std::size_t i = 0; i < kLoads; ++i) {
        ComponentLibrary library;
        ASSERT_TRUE(library) << i;
        OpenDialogs(library, 5);
        AwaitNothingLives(library);
        const HMODULE hModule = GetModuleHandleW(L"TabulexConverter.dll");
        library.Free();
        EXPECT_EQ(GetModuleHandleW(L"TabulexConverter.dll"), nullptr) << i;
        WNDCLASSEXW info{};
        info.cbSize = sizeof info;
        EXPECT_FALSE(GetClassInfoExW(hModule, L"TabulexGrid", &info)) << i;
        last = CountProcessAtRest();
        if (i == 0) {
            first = last;
            nFirstObjects = CountGdiObjects();
        }
    }
    ExpectNothingKept(first, last, kLoads - 1);
    EXPECT_LE(CountGdiObjects(), nFirstObjects);
}

} // namespace
