// A host that loads the library, converts with it, and unloads it again.

#include <gtest/gtest.h>

#include <chrono>
#include <filesystem>
#include <fstream>
#include <thread>

#include "examples/common/RowSink.h"
#include "interfaces/ClassIds.h"
#include "interfaces/IqrlTabulexConvertor.h"
#include "platform/values.h"
#include "tests/front/Minutes.h"
#include "tests/front/ProcessCounts.h"
#include "tests/windows/ComponentLibrary.h"
#include "tests/windows/LoadsAndUnloads.h"
#include "tests/windows/OwnWindows.h"

using namespace IQRL_TabulexConverter;

namespace {

constexpr int kRows = 2000;

void Dispatch()
{
    MSG message;
    while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) {
        TranslateMessage(&message);
        DispatchMessageW(&message);
    }
}

template <class Done>
void PumpUntil(Done done)
{
    constexpr DWORD kTurn = 5; // milliseconds
    const auto tLast = std::chrono::steady_clock::now() + std::chrono::seconds(60);
    while (!done() && std::chrono::steady_clock::now() < tLast) {
        MsgWaitForMultipleObjects(0, nullptr, FALSE, kTurn, QS_ALLINPUT);
        Dispatch();
    }
    EXPECT_TRUE(done());
}

// A file of quotes for all tests.
class Quotes
{
public:
    Quotes() : m_path(std::filesystem::temp_directory_path() / "tabulex_dll_test.csv")
    {
        std::ofstream(m_path, std::ios::binary) << "Symbol,Date,Time,Open,High,Low,Close,Volume\n"
                                                << Minutes(kRows, "ABC");
    }
    ~Quotes()
    {
        std::error_code ignored;
        std::filesystem::remove(m_path, ignored);
    }

    Bstr Path() const { return Bstr(m_path.native()); }

private:
    const std::filesystem::path m_path;
};

// A converter of the library's, and its sessions.
class Host
{
public:
    Host(const ComponentLibrary& library, const Quotes& quotes)
    {
        EXPECT_EQ(library.Create(CLSID_CqrlTabulexConvertor, m_converter), S_OK);
        EXPECT_EQ(m_converter->AddResolutionTemplate(2, Bstr(L"Minutes").get()), S_OK);
        EXPECT_EQ(m_converter->put_FileName(quotes.Path().get()), S_OK);
    }

    void Convert(bool bCancel = false)
    {
        auto* pSink = NewSink();
        if (bCancel)
            pSink->m_onBatch = [&] { EXPECT_EQ(m_converter->Unadvise(pSink), S_OK); };
        EXPECT_EQ(m_converter->DoConvert(pSink, 0), S_OK);
        PumpUntil([&] { return pSink->HasEnded(); });
        EXPECT_EQ(pSink->IsCommitted(), !bCancel);
        EXPECT_EQ(pSink->Batches(), bCancel ? 1u : kRows / 1000);
    }

    void EnumSymbols(bool bCancel = false)
    {
        auto* pSink = NewSink();
        EXPECT_EQ(m_converter->DoEnumSymbols(pSink), S_OK);
        if (bCancel)
            m_converter->Unadvise(pSink);
        else
            PumpUntil([&] { return pSink->HasEnded(); });
    }

    void StartAndLeave() { EXPECT_EQ(m_converter->DoConvert(NewSink(), 0), S_OK); }

private:
    RowSink* NewSink()
    {
        m_sink = com_ptr<RowSink>(new RowSink);
        return m_sink.get();
    }

    com_ptr<IqrlTabulexConvertor> m_converter;
    com_ptr<RowSink> m_sink;
};

class Dll : public testing::Test
{
protected:
    void SetUp() override { ASSERT_EQ(CoInitialize(nullptr), S_OK); }
    void TearDown() override { CoUninitialize(); }

    void RunHost(const ComponentLibrary& library, bool bSymbols = true)
    {
        {
            Host host(library, quotes);
            host.Convert();
            host.Convert(true);
            if (bSymbols) {
                host.EnumSymbols();
                host.EnumSymbols(true);
            }
        }
        AwaitNothingLives(library);
    }

    static HRESULT CanUnload(const ComponentLibrary& library)
    {
        return library.Entry<decltype(DllCanUnloadNow)>("DllCanUnloadNow")();
    }
    static void AwaitNothingLives(const ComponentLibrary& library)
    {
        PumpUntil([&] { return CanUnload(library) == S_OK; });
    }

    static HMODULE Module() { return GetModuleHandleW(L"TabulexConverter.dll"); }
    static bool HasWindowClass(HMODULE hModule)
    {
        WNDCLASSEXW info{};
        info.cbSize = sizeof info;
        return GetClassInfoExW(hModule, L"TabulexMessageWindow", &info) != 0;
    }

    const Quotes quotes;
};

TEST_F(Dll, ServesAHostWithAUsualMessageLoop)
{
    const ComponentLibrary library;
    ASSERT_TRUE(library);
    RunHost(library);
}

TEST_F(Dll, StaysWhileSomethingOfItLives)
{
    const ComponentLibrary library;
    ASSERT_TRUE(library);
    EXPECT_EQ(CanUnload(library), S_OK);
    {
        const Host host(library, quotes);
        EXPECT_EQ(CanUnload(library), S_FALSE);
    }
    AwaitNothingLives(library);
}

// The session may have ended long before the host dispatches the message that removes its
// window.
TEST_F(Dll, StaysWhileAWindowOfItStands)
{
    const ComponentLibrary library;
    ASSERT_TRUE(library);
    for (int i = 0; i < 20; ++i) {
        {
            Host host(library, quotes);
            host.EnumSymbols(true);
        }
        while (!OwnMessageWindows().empty()) {
            ASSERT_EQ(CanUnload(library), S_FALSE);
            Dispatch();
        }
        AwaitNothingLives(library);
    }
}

TEST_F(Dll, GoesWithThreadsAndWindowsAndCanBeLoadedAgain)
{
    constexpr std::size_t kLoads = 5;
    ShowFirstWindow();
    ProcessCounts first, last;
    for (std::size_t i = 0; i < kLoads; ++i) {
        ComponentLibrary library;
        ASSERT_TRUE(library) << i;
        RunHost(library);
        const HMODULE hModule = Module();
        EXPECT_TRUE(HasWindowClass(hModule)) << i;
        library.Free();
        EXPECT_EQ(Module(), nullptr) << i;
        EXPECT_FALSE(HasWindowClass(hModule)) << i;
        last = CountProcessAtRest();
        if (i == 0)
            first = last;
        EXPECT_EQ(last.nWindows, first.nWindows) << i;
    }
    ExpectNothingKept(first, last, kLoads - 1);
}

// A host's thread may end while the library's windows are on it.
TEST_F(Dll, GoesAfterAThreadThatEndedInTheMiddleOfASession)
{
    ComponentLibrary library;
    ASSERT_TRUE(library);
    std::thread([&] {
        ASSERT_EQ(CoInitialize(nullptr), S_OK);
        Host(library, quotes).StartAndLeave();
        CoUninitialize();
    }).join();
    AwaitNothingLives(library);
    library.Free();
    EXPECT_EQ(Module(), nullptr);
}

TEST_F(Dll, GoesWhileAThreadThatHasUsedItLivesOn)
{
    const HANDLE hUsed = CreateEventW(nullptr, TRUE, FALSE, nullptr);
    const HANDLE hGone = CreateEventW(nullptr, TRUE, FALSE, nullptr);
    ComponentLibrary library;
    ASSERT_TRUE(library);
    std::thread user([&] {
        ASSERT_EQ(CoInitialize(nullptr), S_OK);
        RunHost(library);
        SetEvent(hUsed);
        WaitForSingleObject(hGone, INFINITE);
        CoUninitialize();
    });
    WaitForSingleObject(hUsed, INFINITE);
    EXPECT_EQ(CanUnload(library), S_OK);
    library.Free();
    EXPECT_EQ(Module(), nullptr);
    SetEvent(hGone);
    user.join();
    CloseHandle(hGone);
    CloseHandle(hUsed);
}

// As for the linked component, a hundred sessions may still leave a handle, but not each
// hundred.
TEST_F(Dll, ManySessionsLeaveNothing)
{
    constexpr int kHosts = 100; // with two conversions each
    constexpr int kLots = 6;
    const ComponentLibrary library;
    ASSERT_TRUE(library);
    ProcessCounts before, after = CountProcessAtRest();
    for (int i = 0; i < kLots && after.nHandles != before.nHandles; ++i) {
        before = after;
        for (int n = 0; n < kHosts; ++n)
            RunHost(library, n % 10 == 0);
        after = CountProcessAtRest();
    }
    EXPECT_EQ(after, before);
}

} // namespace
