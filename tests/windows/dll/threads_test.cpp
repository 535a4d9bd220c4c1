// What the library does with threads that enter it and leave it.

#include <gtest/gtest.h>

#include <map>
#include <thread>

#include "interfaces/ClassIds.h"
#include "interfaces/IQRLGUITweak.h"
#include "tests/windows/ComponentLibrary.h"

using namespace IQRL_TabulexConverter;

namespace {

constexpr LCID kGerman = 0x0407;

// A thread runs the libraries' entries in the order in which they were loaded.
class GermanThreads
{
public:
    GermanThreads() : m_hModule(LoadLibraryW(PathBeside(nullptr, L"GermanThreads.dll").c_str())) {}
    ~GermanThreads() { FreeLibrary(m_hModule); }
    GermanThreads(const GermanThreads&) = delete;
    GermanThreads& operator=(const GermanThreads&) = delete;

    explicit operator bool() const { return m_hModule != nullptr; }

private:
    const HMODULE m_hModule;
};

LCID LocaleOfNewThread()
{
    LCID locale = 0;
    std::thread([&] { locale = GetThreadLocale(); }).join();
    return locale;
}

// Puts the calling thread's flag and gives what it was.
VARIANT_BOOL ExchangeFlag(const ComponentLibrary& library)
{
    com_ptr<IQRLGUITweak> tweak;
    EXPECT_EQ(S_OK, library.Create(CLSID_CqrlTabulexConvertor, tweak));
    VARIANT_BOOL bBefore = VARIANT_FALSE;
    EXPECT_EQ(S_OK, tweak->get_ModelessProgress(&bBefore));
    EXPECT_EQ(S_OK, tweak->put_ModelessProgress(VARIANT_TRUE));
    return bBefore;
}

} // namespace

TEST(DllThreads, TheThreadThatLoadsItGetsTheSystemsLocale)
{
    ASSERT_NE(kGerman, GetSystemDefaultLCID());
    SetThreadLocale(kGerman);
    const ComponentLibrary library;
    ASSERT_TRUE(library);
    EXPECT_EQ(GetSystemDefaultLCID(), GetThreadLocale());
}

TEST(DllThreads, NewThreadsGetTheSystemsLocaleWhateverTheHostHasSet)
{
    const GermanThreads german;
    ASSERT_TRUE(german);
    ASSERT_EQ(kGerman, LocaleOfNewThread());
    const ComponentLibrary library;
    ASSERT_TRUE(library);
    EXPECT_EQ(GetSystemDefaultLCID(), LocaleOfNewThread());
}

// The system gives the numbers of threads that have ended to later ones.
TEST(DllThreads, TheRecordOfAThreadGoesWhenTheThreadEnds)
{
    constexpr int kThreads = 2000;
    const ComponentLibrary library;
    ASSERT_TRUE(library);
    std::map<DWORD, int> threadsOfNumber;
    int nRepeated = 0;
    for (int n = 0; n < kThreads && nRepeated < 10; ++n)
        std::thread([&] {
            CoInitialize(nullptr);
            nRepeated += threadsOfNumber[GetCurrentThreadId()]++ > 0 ? 1 : 0;
            EXPECT_EQ(VARIANT_FALSE, ExchangeFlag(library));
            EXPECT_EQ(VARIANT_TRUE, ExchangeFlag(library));
            CoUninitialize();
        }).join();
    EXPECT_GE(nRepeated, 10);
}
