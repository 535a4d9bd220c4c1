// The thread that runs all enumerations of the process.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <atomic>
#include <functional>
#include <memory>
#include <random>
#include <thread>

#include "module/ComObject.h"
#include "platform/threads/Event.h"
#include "platform/threads/MessageWindow.h"
#include "src/data/SymbolEnumeratorHost.h"
#include "tests/support/ReportLog.h"
#include "tests/support/Seed.h"
#include "tests/support/Waits.h"

using namespace Hesperon::specifics;

namespace {

constexpr auto kNoWait = std::chrono::milliseconds(0);

// Stands for a front object.
class Front
{
public:
    Front() { SymbolEnumeratorHost::AddConvertor(); }
    ~Front() { SymbolEnumeratorHost::ReleaseConvertor(); }
    Front(const Front&) = delete;
    Front& operator=(const Front&) = delete;
};

using OnStep = std::function<HRESULT(ULONGLONG nPosition)>;
using Gone = std::shared_ptr<Event>;

// An enumeration whose steps a test answers.
class Walk : public ComObject<Walk, Dual<IQRL_TabulexConverter::IFileHandlerEvents>>
{
public:
    OnStep onStep;
    Gone pGone = std::make_shared<Event>(Event::Kind::ManualReset);

    void FinalRelease() { pGone->Set(); }

    HRESULT STDMETHODCALLTYPE RecordCountChange(ULONGLONG, VARIANT_BOOL) override
    {
        ADD_FAILURE() << "RecordCountChange";
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE PutData(VARIANT, ULONGLONG, ULONGLONG) override
    {
        ADD_FAILURE() << "PutData";
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE ProcessRecord(ULONGLONG nIndex, BSTR bsRecord,
                                            VARIANT_BOOL bComplete) override
    {
        EXPECT_EQ(bsRecord, nullptr);
        EXPECT_EQ(bComplete, VARIANT_TRUE);
        return onStep(nIndex);
    }
};

// Gives a walk to the host, without a reference of the test's own; null if it isn't taken.
Gone Start(OnStep onStep)
{
    com_ptr<Walk> walk;
    EXPECT_EQ(CreateObject(walk), S_OK);
    walk->onStep = std::move(onStep);
    const HRESULT hr = SymbolEnumeratorHost::Add(walk.get());
    EXPECT_TRUE(hr == S_OK || hr == S_FALSE) << hr;
    return hr == S_OK ? walk->pGone : nullptr;
}

// Waits until the thread is being ended: from then on no walk is taken.
void AwaitStop()
{
    const auto deadline = std::chrono::steady_clock::now() + kPatience;
    while (Start([](ULONGLONG) { return S_FALSE; })) {
        ASSERT_LT(std::chrono::steady_clock::now(), deadline);
        std::this_thread::yield();
    }
}

struct Gate
{
    Event inside{Event::Kind::ManualReset};
    Event open{Event::Kind::ManualReset};

    void Pass()
    {
        inside.Set();
        open.Wait();
    }
};

// ---- steps

TEST(SymbolEnumeratorHostTest, WalksOnAThreadOfItsOwnFromPositionZeroOn)
{
    const Front front;
    std::vector<ULONGLONG> positions;
    std::set<std::thread::id> threads;
    const Gone pGone = Start([&](ULONGLONG n) {
        positions.push_back(n);
        threads.insert(std::this_thread::get_id());
        return n < 1000 ? S_OK : S_FALSE;
    });
    ASSERT_TRUE(pGone->Wait(kPatience));
    ASSERT_EQ(positions.size(), 1001u);
    for (ULONGLONG n = 0; n < positions.size(); ++n)
        ASSERT_EQ(positions[n], n);
    EXPECT_EQ(threads.size(), 1u);
    EXPECT_FALSE(threads.contains(std::this_thread::get_id()));
}

TEST(SymbolEnumeratorHostTest, AnyResultButSuccessEndsAWalk)
{
    const Front front;
    for (const HRESULT hr : {S_FALSE, HRESULT(2), E_FAIL, E_NOINTERFACE}) {
        SCOPED_TRACE(hr);
        int nSteps = 0;
        const Gone pGone = Start([&](ULONGLONG n) {
            ++nSteps;
            return n < 2 ? S_OK : hr;
        });
        ASSERT_TRUE(pGone->Wait(kPatience));
        EXPECT_EQ(nSteps, 3);
    }
}

TEST(SymbolEnumeratorHostTest, OneWalkRunsToItsEndBeforeTheNext)
{
    const Front front;
    Gate gate;
    std::string log;
    const auto walk = [&](char c) {
        return [&, c](ULONGLONG n) {
            if (log.empty())
                gate.Pass();
            log += c;
            return n < 3 ? S_OK : S_FALSE;
        };
    };
    Start(walk('a'));
    ASSERT_TRUE(gate.inside.Wait(kPatience));
    Start(walk('b'));
    const Gone pGone = Start(walk('c'));
    gate.open.Set();
    ASSERT_TRUE(pGone->Wait(kPatience));
    EXPECT_EQ(log, "aaaabbbbcccc");
}

TEST(SymbolEnumeratorHostTest, AStepMayStartAWalk)
{
    const Front front;
    std::string log;
    Gone pSecond;
    const Gone pFirst = Start([&](ULONGLONG n) {
        if (n == 0)
            pSecond = Start([&](ULONGLONG) {
                log += 'b';
                return S_FALSE;
            });
        log += 'a';
        return n < 2 ? S_OK : S_FALSE;
    });
    ASSERT_TRUE(pFirst->Wait(kPatience));
    ASSERT_TRUE(pSecond && pSecond->Wait(kPatience));
    EXPECT_EQ(log, "aaab");
}

// The thread takes the signal of a walk before the walk's first step, so it doesn't wake again
// to an empty list.
TEST(SymbolEnumeratorHostTest, NeverWakesForAnEmptyList)
{
    ReportLog log;
    const Front front;
    Gone pGone;
    for (int i = 0; i < 3000; ++i) {
        pGone = Start([](ULONGLONG) { return S_FALSE; });
        if (i % 3 == 0) {
            ASSERT_TRUE(pGone->Wait(kPatience));
        }
    }
    ASSERT_TRUE(pGone->Wait(kPatience));
    EXPECT_EQ(log.Texts(), std::vector<std::string>());
}

TEST(SymbolEnumeratorHostTest, NeedsNoFrontObject)
{
    ASSERT_TRUE(Start([](ULONGLONG) { return S_FALSE; })->Wait(kPatience));
}

// ---- the end of the thread

TEST(SymbolEnumeratorHostTest, LastFrontObjectCutsOffWhatRunsAndDropsWhatWaits)
{
    auto pFront = std::make_unique<Front>();
    Event inside(Event::Kind::ManualReset);
    int nRunning = 0, nWaiting = 0;
    const Gone pRunning = Start([&](ULONGLONG n) {
        ++nRunning;
        if (n == 4) {
            inside.Set();
            AwaitStop();
        }
        return S_OK;
    });
    const Gone pWaiting = Start([&](ULONGLONG) {
        ++nWaiting;
        return S_OK;
    });
    ASSERT_TRUE(inside.Wait(kPatience));
    pFront.reset();
    EXPECT_EQ(nRunning, 5);
    EXPECT_EQ(nWaiting, 0);
    EXPECT_TRUE(pRunning->Wait(kNoWait));
    EXPECT_TRUE(pWaiting->Wait(kNoWait));
}

TEST(SymbolEnumeratorHostTest, FrontObjectsThatAreLeftKeepTheThread)
{
    auto pFirst = std::make_unique<Front>();
    const Front second;
    Gate gate;
    const Gone pGone = Start([&](ULONGLONG n) {
        gate.Pass();
        return n < 10 ? S_OK : S_FALSE;
    });
    ASSERT_TRUE(gate.inside.Wait(kPatience));
    pFirst.reset();
    gate.open.Set();
    EXPECT_TRUE(pGone->Wait(kPatience));
}

TEST(SymbolEnumeratorHostTest, TheNextFrontObjectStartsAnew)
{
    for (int i = 0; i < 50; ++i) {
        const Front front;
        Event inside(Event::Kind::ManualReset);
        ASSERT_TRUE(Start([&](ULONGLONG) {
            inside.Set();
            return S_OK;
        }));
        ASSERT_TRUE(inside.Wait(kPatience)) << i;
    }
}

// The last front object of a session may go on another thread, while the next one starts.
TEST(SymbolEnumeratorHostTest, AFrontObjectThatComesWhileTheThreadEndsIsServed)
{
    auto pFront = std::make_unique<Front>();
    Gate gate;
    ULONGLONG nOldSteps = 0;
    const Gone pOld = Start([&](ULONGLONG) {
        ++nOldSteps;
        gate.Pass();
        return S_OK;
    });
    ASSERT_TRUE(gate.inside.Wait(kPatience));
    std::thread releaser([&] { pFront.reset(); });
    AwaitStop();
    {
        const Front next;
        ULONGLONG nLast = 0;
        const Gone pNext = Start([&](ULONGLONG n) {
            nLast = n;
            return n < 100 ? S_OK : S_FALSE;
        });
        EXPECT_TRUE(pNext && pNext->Wait(kPatience));
        EXPECT_EQ(nLast, 100u);
        EXPECT_FALSE(pOld->Wait(kNoWait));
        gate.open.Set();
        releaser.join();
    }
    EXPECT_TRUE(pOld->Wait(kPatience));
    EXPECT_EQ(nOldSteps, 1u);
}

// While the last front object waits for a step, the step may wait for its thread.
TEST(SymbolEnumeratorHostTest, LastReleaseDispatchesTheMessagesOfItsThread)
{
    struct Window : MessageWindow
    {
        int nMessages = 0;
        LONG_PTR OnMessage(UINT, ULONG_PTR wParam, LONG_PTR) override
        {
            ++nMessages;
            return static_cast<LONG_PTR>(wParam) + 1;
        }
    } window;
    const WindowHandle hWnd = window.Create();
    ASSERT_NE(hWnd, 0);
    auto pFront = std::make_unique<Front>();
    Event inside(Event::Kind::ManualReset);
    LONG_PTR nAnswer = 0;
    Start([&](ULONGLONG) {
        inside.Set();
        AwaitStop();
        nAnswer = SendWindowMessage(hWnd, kUserMessage, 41, 0);
        return S_OK;
    });
    ASSERT_TRUE(inside.Wait(kPatience));
    EXPECT_EQ(window.nMessages, 0);
    pFront.reset();
    EXPECT_EQ(window.nMessages, 1);
    EXPECT_EQ(nAnswer, 42);
}

TEST(SymbolEnumeratorHostTest, AStepMayReleaseTheLastFrontObject)
{
    auto pFront = std::make_unique<Front>();
    Gate gate;
    int nRunning = 0, nWaiting = 0;
    const Gone pRunning = Start([&](ULONGLONG) {
        gate.Pass();
        pFront.reset();
        ++nRunning;
        return S_OK;
    });
    const Gone pWaiting = Start([&](ULONGLONG) {
        ++nWaiting;
        return S_OK;
    });
    gate.open.Set();
    EXPECT_TRUE(pRunning->Wait(kPatience));
    EXPECT_TRUE(pWaiting->Wait(kPatience));
    EXPECT_EQ(nRunning, 1);
    EXPECT_EQ(nWaiting, 0);

    const Front front;
    EXPECT_TRUE(Start([](ULONGLONG) { return S_FALSE; })->Wait(kPatience));
}

// A new thread owns the list while the old one is still in its last step. The result of that
// step takes nothing off the list.
TEST(SymbolEnumeratorHostTest, AStepThatEndedItsThreadMayStartTheNext)
{
    for (const HRESULT hrLast : {S_OK, S_FALSE}) {
        SCOPED_TRACE(hrLast);
        auto pFront = std::make_unique<Front>();
        Gate old, next;
        std::thread::id oldThread, nextThread;
        Gone pNext;
        ULONGLONG nLast = 0;
        const Gone pOld = Start([&](ULONGLONG) {
            oldThread = std::this_thread::get_id();
            pFront.reset();
            pFront = std::make_unique<Front>();
            pNext = Start([&](ULONGLONG n) {
                nextThread = std::this_thread::get_id();
                nLast = n;
                if (n == 0)
                    next.Pass();
                return n < 100 ? S_OK : S_FALSE;
            });
            old.Pass();
            return hrLast;
        });
        ASSERT_TRUE(old.inside.Wait(kPatience));
        ASSERT_TRUE(next.inside.Wait(kPatience));
        old.open.Set();
        ASSERT_TRUE(pOld->Wait(kPatience));
        next.open.Set();
        ASSERT_TRUE(pNext->Wait(kPatience));
        EXPECT_EQ(nLast, 100u);
        EXPECT_NE(oldThread, nextThread);
    }
}

TEST(SymbolEnumeratorHostTest, ReleaseTooManyIsReported)
{
    ReportLog log;
    SymbolEnumeratorHost::ReleaseConvertor();
    EXPECT_THAT(log.Texts(), testing::ElementsAre("0 <= (LONG)_host.m_nRefCount"));
    SymbolEnumeratorHost::AddConvertor();
    log.Clear();
    {
        const Front front;
    }
    EXPECT_EQ(log.Texts(), std::vector<std::string>());
}

// Walks and front objects come and go at the same time; each walk that was taken is released.
TEST(SymbolEnumeratorHostTest, FrontObjectsAndWalksOfManyThreads)
{
    std::mutex lock;
    std::vector<Gone> taken;
    const auto user = [&](unsigned nUser) {
        std::mt19937 random(Seed() + nUser);
        for (int i = 0; i < Rounds(300); ++i) {
            const Front front;
            for (auto nWalks = random() % 4; nWalks > 0; --nWalks) {
                const ULONGLONG nEnd = random() % 20;
                const Gone pGone = Start([nEnd](ULONGLONG n) { return n < nEnd ? S_OK : S_FALSE; });
                if (!pGone)
                    continue;
                std::lock_guard guard(lock);
                taken.push_back(pGone);
            }
        }
    };
    std::vector<std::thread> users;
    for (unsigned n = 0; n < 4; ++n)
        users.emplace_back(user, n);
    for (std::thread& t : users)
        t.join();
    for (const Gone& pGone : taken)
        ASSERT_TRUE(pGone->Wait(kPatience));
}

} // namespace
