// A host that converts a file with bad lines: the library asks in a real box.

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

#include "examples/common/RowSink.h"
#include "interfaces/ClassIds.h"
#include "interfaces/IProgressView.h"
#include "interfaces/IqrlTabulexConvertor.h"
#include "platform/values.h"
#include "tests/front/Minutes.h"
#include "tests/windows/ComponentLibrary.h"

using namespace IQRL_TabulexConverter;

namespace {

constexpr int kGoodLines = 100; // before the bad ones, and as many after them

// Presses a button of the box whenever it asks. Nobody would, otherwise.
class Answerer
{
public:
    explicit Answerer(ProgressControl button)
    {
        s_button = button;
        s_nAsked = 0;
        s_sLine.clear();
        m_nTimer = SetTimer(nullptr, 0, 10, &OnTimer);
    }
    ~Answerer() { KillTimer(nullptr, m_nTimer); }
    Answerer(const Answerer&) = delete;
    Answerer& operator=(const Answerer&) = delete;

    int Asked() const { return s_nAsked; }

private:
    // Pressed once a question: each has another line. As a command, since a click is lost when
    // the box is activated in the middle of it.
    static void CALLBACK OnTimer(HWND, UINT, UINT_PTR, DWORD)
    {
        const HWND hBox = Box();
        wchar_t szLine[32] = L"";
        if (!hBox || !IsWindowVisible(GetDlgItem(hBox, s_button)) ||
            !IsWindowVisible(GetDlgItem(hBox, ProgressErrorLine)))
            return;
        GetDlgItemTextW(hBox, ProgressErrorLine, szLine, std::size(szLine));
        if (s_sLine == szLine)
            return;
        s_sLine = szLine;
        ++s_nAsked;
        SendMessageW(hBox, WM_COMMAND, MAKEWPARAM(s_button, BN_CLICKED),
                     reinterpret_cast<LPARAM>(GetDlgItem(hBox, s_button)));
    }

    static HWND Box()
    {
        HWND hBox = nullptr;
        EnumThreadWindows(
            GetCurrentThreadId(),
            [](HWND hWnd, LPARAM lParam) -> BOOL {
                if (IsWindowVisible(hWnd) && GetDlgItem(hWnd, ProgressBar))
                    *reinterpret_cast<HWND*>(lParam) = hWnd;
                return TRUE;
            },
            reinterpret_cast<LPARAM>(&hBox));
        return hBox;
    }

    static inline ProgressControl s_button = ProgressCancel;
    static inline int s_nAsked = 0;
    static inline std::wstring s_sLine;
    UINT_PTR m_nTimer = 0;
};

class DllProgress : public testing::Test
{
protected:
    DllProgress()
    {
        std::string sLines = Minutes(2 * kGoodLines, "ABC");
        std::size_t nAt = 0;
        for (int i = 0; i < kGoodLines; ++i)
            nAt = sLines.find('\n', nAt) + 1;
        sLines.insert(nAt, "no line of quotes\nnor this one\n");
        std::ofstream(m_path, std::ios::binary) << "Symbol,Date,Time,Open,High,Low,Close,Volume\n"
                                                << sLines;
    }
    ~DllProgress() override
    {
        std::error_code ignored;
        std::filesystem::remove(m_path, ignored);
    }
    void SetUp() override { ASSERT_EQ(CoInitialize(nullptr), S_OK); }
    void TearDown() override { CoUninitialize(); }

    static void DispatchAwhile()
    {
        MsgWaitForMultipleObjects(0, nullptr, FALSE, 5, QS_ALLINPUT);
        MSG message;
        while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) {
            TranslateMessage(&message);
            DispatchMessageW(&message);
        }
    }
    // The library's threads keep the file open until then.
    void AwaitNothingLives()
    {
        auto* const pfnCanUnload = m_library.Entry<decltype(DllCanUnloadNow)>("DllCanUnloadNow");
        const ULONGLONG nEnd = GetTickCount64() + 30'000;
        while (pfnCanUnload() != S_OK && GetTickCount64() < nEnd)
            DispatchAwhile();
        EXPECT_EQ(pfnCanUnload(), S_OK);
    }

    // Converts the file; false for a rollback. Ends after half a minute in any case.
    bool Convert()
    {
        com_ptr<IqrlTabulexConvertor> converter;
        EXPECT_EQ(m_library.Create(CLSID_CqrlTabulexConvertor, converter), S_OK);
        EXPECT_EQ(converter->AddResolutionTemplate(2, Bstr(L"Minutes").get()), S_OK);
        EXPECT_EQ(converter->put_FileName(Bstr(m_path.native()).get()), S_OK);
        const com_ptr<RowSink> sink(new RowSink);
        const HRESULT hr = converter->DoConvert(sink.get(), 0);
        EXPECT_EQ(hr, S_OK);
        const ULONGLONG nEnd = GetTickCount64() + 30'000;
        while (hr == S_OK && !sink->HasEnded() && GetTickCount64() < nEnd)
            DispatchAwhile();
        EXPECT_TRUE(sink->HasEnded());
        converter->Unadvise(sink.get()); // of a session that is late
        const bool bCommitted = sink->IsCommitted();
        converter.reset();
        AwaitNothingLives();
        return bCommitted;
    }

    const std::filesystem::path m_path =
        std::filesystem::temp_directory_path() / "tabulex_dll_progress_test.csv";
    const ComponentLibrary m_library;
};

} // namespace

TEST_F(DllProgress, EachBadLineIsAskedAbout)
{
    const Answerer answerer(ProgressSkip);
    EXPECT_TRUE(Convert());
    EXPECT_EQ(answerer.Asked(), 2);
}

TEST_F(DllProgress, SkippingAllAsksOnce)
{
    const Answerer answerer(ProgressSkipAll);
    EXPECT_TRUE(Convert());
    EXPECT_EQ(answerer.Asked(), 1);
}

TEST_F(DllProgress, CancelRollsBack)
{
    const Answerer answerer(ProgressCancel);
    EXPECT_FALSE(Convert());
    EXPECT_EQ(answerer.Asked(), 1);
}
