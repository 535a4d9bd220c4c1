// Stops of the transport over a thread's message queue, and its window.

#include <memory>
#include <optional>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "LocalRPC/AO_WndMsgPumpTransport.h"
#include "tests/localrpc/Pumping.h"
#include "tests/support/ReportLog.h"

using namespace LocalRPC;
using LocalRPC::details::CWndImpl;
using LocalRPC::details::CWndMsgPump;
using LocalRPC::details::utils::CTaskStorage;
using testing::ElementsAre;

namespace {

class WindowStop : public testing::Test
{
protected:
    WindowStop()
    {
        m_pump.emplace();
        m_pump->Start();
    }

    bool Post(const std::string& sWord) { return m_pump->PostTask(m_log.Task(sWord)); }

    Log m_log;
    std::optional<CWndMsgPump> m_pump;
};

struct StopRow
{
    bool bClear;
    bool bSetStop;
    const char* sRun; // of what was queued
};

constexpr StopRow kStops[] = {
    {false, true, "a b"},
    {true, true, ""},
    {false, false, ""},
    {true, false, ""},
};

TEST(WindowStopRules, RunsOrThrowsAwayWhatIsQueuedAtOnceOnItsOwnThread)
{
    for (const StopRow& row : kStops) {
        SCOPED_TRACE(testing::Message() << row.bClear << row.bSetStop);
        Log log;
        CWndMsgPump pump;
        EXPECT_FALSE(pump.StopEx(row.bClear, 0, row.bSetStop));
        pump.Start();
        EXPECT_TRUE(pump.PostTask(log.Task("a")));
        EXPECT_TRUE(pump.PostTask(log.Task("b")));
        EXPECT_TRUE(pump.StopEx(row.bClear, 0, row.bSetStop));
        EXPECT_EQ(row.sRun, log.Words());
        EXPECT_FALSE(pump.IsRunning());
        EXPECT_FALSE(OwnsWindows());
        EXPECT_FALSE(pump.PostTask(log.Task("late")));
        EXPECT_FALSE(pump.StopEx(row.bClear, 0, row.bSetStop));
        PumpAll();
        EXPECT_EQ(row.sRun, log.Words());
    }
}

TEST(WindowStopRules, RunsOrThrowsAwayWhatIsQueuedLaterFromAnotherThread)
{
    for (const StopRow& row : kStops) {
        SCOPED_TRACE(testing::Message() << row.bClear << row.bSetStop);
        Log log;
        std::optional<CWndMsgPump> pump;
        pump.emplace().Start();
        OnAnotherThread([&] {
            EXPECT_TRUE(pump->PostTask(log.Task("a")));
            EXPECT_TRUE(pump->PostTask(log.Task("b")));
            EXPECT_TRUE(pump->StopEx(row.bClear, 0, row.bSetStop));
            EXPECT_FALSE(pump->PostTask(log.Task("late")));
        });
        pump.reset(); // the window doesn't need the transport
        EXPECT_EQ("", log.Words());
        PumpAll();
        EXPECT_EQ(row.sRun, log.Words());
        EXPECT_FALSE(OwnsWindows());
    }
}

TEST_F(WindowStop, MayBeStoppedByATask)
{
    EXPECT_TRUE(m_pump->PostTask(MakeAsyncTask([&] {
        m_log.Say("stop");
        EXPECT_TRUE(m_pump->StopEx(false, 0, true));
        EXPECT_FALSE(Post("late"));
    })));
    EXPECT_TRUE(Post("a"));
    PumpAll();
    EXPECT_EQ("stop a", m_log.Words());
    EXPECT_FALSE(OwnsWindows());
}

TEST_F(WindowStop, MayGoInATask)
{
    EXPECT_TRUE(m_pump->PostTask(MakeAsyncTask([&] { m_pump.reset(); })));
    EXPECT_TRUE(Post("a"));
    PumpAll();
    EXPECT_EQ("", m_log.Words());
    EXPECT_FALSE(OwnsWindows());
}

TEST_F(WindowStop, ThrowsAwayWhatIsQueuedWhenItGoes)
{
    EXPECT_TRUE(Post("a"));
    m_pump.reset();
    PumpAll();
    EXPECT_EQ("", m_log.Words());
    EXPECT_FALSE(OwnsWindows());
}

TEST_F(WindowStop, StartsAnewOnAnyThread)
{
    EXPECT_TRUE(Post("a"));
    m_pump->Start(); // runs what is queued on this thread
    EXPECT_EQ("a", m_log.Words());
    EXPECT_TRUE(Post("b"));
    OnAnotherThread([&] {
        m_pump->Start();
        EXPECT_TRUE(Post("c"));
        PumpAll();
        EXPECT_EQ("a c", m_log.Words());
        EXPECT_TRUE(m_pump->StopEx(true, 0, true));
    });
    PumpAll(); // what is left belongs to this thread
    EXPECT_EQ("a c b", m_log.Words());
    EXPECT_FALSE(OwnsWindows());
}

TEST(WindowStopWithItsThread, TakesTheWindowAlongWhenItEnds)
{
    Log log;
    CWndMsgPump pump;
    OnAnotherThread([&] {
        pump.Start();
        EXPECT_TRUE(pump.PostTask(log.Task("never")));
    });
    EXPECT_FALSE(pump.PostTask(log.Task("late")));
    EXPECT_TRUE(pump.StopEx(false, 0, true));
    PumpAll();
    EXPECT_EQ("", log.Words());
}

// ---- the window

class TransportWindow : public testing::Test
{
protected:
    std::shared_ptr<CTaskStorage> m_pTasks = std::make_shared<CTaskStorage>();
    Log m_log;
    boost::shared_ptr<CWndImpl> m_pWindow = CWndImpl::Open(m_pTasks);
};

TEST_F(TransportWindow, RunsWhatIsQueuedWithItsTimer)
{
    m_pTasks->Add(m_log.Task("a"));
    PumpAll();
    EXPECT_EQ("", m_log.Words());
    m_pWindow->PostTimer(std::chrono::milliseconds(1));
    EXPECT_TRUE(PumpUntil([&] { return m_log.Words() == "a"; }));
    m_pTasks->Add(m_log.Task("b"));
    EXPECT_TRUE(PumpUntil([&] { return m_log.Words() == "a b"; }));

    m_pWindow->PostTimer(kNoWait);
    EXPECT_TRUE(PumpUntil([] { return PumpMessages(std::chrono::milliseconds(5)) == 0; }));
    m_pTasks->Add(m_log.Task("c"));
    EXPECT_EQ(0U, PumpMessages(std::chrono::milliseconds(20)));
    EXPECT_EQ("a b", m_log.Words());
}

TEST_F(TransportWindow, RunsWhatIsQueuedWhenItGoes)
{
    m_pTasks->Add(m_log.Task("a"));
    m_pWindow.reset();
    EXPECT_EQ("a", m_log.Words());
    EXPECT_FALSE(OwnsWindows());
}

TEST_F(TransportWindow, StaysAsLongAsAMessageIsHandled)
{
    m_pTasks->Add(MakeAsyncTask([&] {
        m_pWindow.reset();
        EXPECT_TRUE(OwnsWindows());
        m_log.Say("dropped");
    }));
    m_pTasks->Add(m_log.Task("a"));
    m_pWindow->Wake(false);
    PumpAll();
    EXPECT_EQ("dropped a", m_log.Words());
    EXPECT_FALSE(OwnsWindows());
}

TEST_F(TransportWindow, ReportsProcessingOnAnotherThread)
{
    ReportLog reports;
    m_pTasks->Add(m_log.Task("a"));
    OnAnotherThread([&] { m_pWindow->ProcessEvents(); });
    EXPECT_EQ("", m_log.Words());
    EXPECT_THAT(reports.Texts(), ElementsAre("process events in wrong thread"));
    m_pWindow->ProcessEvents();
    EXPECT_EQ("a", m_log.Words());
}

TEST(TransportTimer, IsSetThroughTheTransport)
{
    CWndMsgPump pump;
    pump.SetTimer(std::chrono::milliseconds(1)); // nothing to set
    EXPECT_EQ(0U, PumpMessages(kNoWait));
    pump.Start();
    pump.SetTimer(std::chrono::milliseconds(1));
    EXPECT_EQ(1U, PumpMessages(std::chrono::milliseconds(kDeadline))); // the set message
    EXPECT_EQ(1U, PumpMessages(std::chrono::milliseconds(kDeadline))); // the timer's
    EXPECT_TRUE(pump.StopEx(true, 0, true));
    EXPECT_EQ(0U, PumpMessages(kNoWait));
}

} // namespace
