// What a host has back when its sessions are over: every thread, window and handle.

#include "tests/front/ProcessCounts.h"
#include "tests/front/ScriptedHost.h"

#include "interfaces/Module.h"
#include "tests/support/Seed.h"

namespace {

constexpr int kHosts = 50; // of four conversions each

class Leftovers : public FrontFixture
{
protected:
    // Four conversions with an end of each kind.
    void Convert()
    {
        Convert([](std::size_t) { return S_OK; });
        Convert([](std::size_t) { return E_FAIL; });
        Convert([this](std::size_t) { return front->Unadvise(sink.get()); });
        sink = NewSink();
        ASSERT_EQ(front->DoConvertPortion(0, sink.get(), 100, 1200), S_OK);
        PumpToTheEnd();
    }

    // One to its end, and one cancelled.
    void EnumSymbols()
    {
        sink = NewSink();
        ASSERT_EQ(front->DoEnumSymbols(sink.get()), S_OK);
        PumpToTheEnd();
        sink = NewSink();
        ASSERT_EQ(front->DoEnumSymbols(sink.get()), S_OK);
        front->Unadvise(sink.get());
    }

    void Convert(std::function<HRESULT(std::size_t)> onData)
    {
        sink = NewSink();
        sink->onData = std::move(onData);
        ASSERT_EQ(front->DoConvert(sink.get(), 0), S_OK);
        PumpToTheEnd();
    }

    void LetGo()
    {
        sink.reset();
        front.reset();
        PumpUntil([] { return ModuleLockCount() == 0 && !OwnsWindows(); });
        EXPECT_EQ(DllCanUnloadNow(), S_OK);
    }

    void RunHosts()
    {
        for (int i = 0; i < Rounds(kHosts); ++i) {
            front = NewFront();
            ASSERT_EQ(Open(*front.get(), file), S_OK);
            Convert();
            if (i % 10 == 0)
                EnumSymbols();
            LetGo();
        }
    }

    const TempFile file{"Symbol,Date,Time,Open,High,Low,Close,Volume\n" + Minutes(1500, "ABC") +
                        Minutes(500, "XYZ")};
};

TEST_F(Leftovers, CountsSeeASession)
{
    LetGo();
    const ProcessCounts before = CountProcessAtRest();
    front = NewFront();
    sink = NewSink();
    ASSERT_EQ(Open(*front.get(), file), S_OK);
    ASSERT_EQ(front->DoConvert(sink.get(), 0), S_OK);
    const ProcessCounts during = CountProcess();
    EXPECT_GT(during.nThreads, before.nThreads);
    EXPECT_GT(during.nWindows, before.nWindows);
    EXPECT_GT(during.nHandles, before.nHandles);
    PumpToTheEnd();
}

// Some handles are made once and kept: a lock of the compiler's library may get one the
// first time that two threads want it at once. So one lot of sessions may still add a
// handle, but not every lot.
TEST_F(Leftovers, ManySessionsLeaveNothing)
{
    constexpr int kLots = 6;
    LetGo();
    RunHosts();
    ProcessCounts before, after = CountProcessAtRest();
    for (int i = 0; i < kLots && after.nHandles != before.nHandles; ++i) {
        before = after;
        RunHosts();
        after = CountProcessAtRest();
        EXPECT_EQ(after.nThreads, before.nThreads);
        EXPECT_EQ(after.nWindows, before.nWindows);
    }
    EXPECT_EQ(after, before);
}

} // namespace
