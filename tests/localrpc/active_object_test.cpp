#include <gtest/gtest.h>

#include "LocalRPC/ActiveObject.h"
#include "platform/threads/MessageWindow.h"
#include "tests/localrpc/Tasks.h"

using namespace LocalRPC;

namespace {

TEST(ActiveObject, OfAThreadRunsTasksFromStartToStop)
{
    Log log;
    CActiveObject_thread object;
    EXPECT_FALSE(object.Post(log.Task("early")));
    EXPECT_FALSE(object.Stop(false));
    object.Start();
    EXPECT_TRUE(object.Post(log.Task("a")));
    EXPECT_TRUE(object.Post(log.Task("b")));
    EXPECT_TRUE(object.Stop(false));
    EXPECT_FALSE(object.Post(log.Task("late")));
    EXPECT_EQ("a b", log.Words());
}

// A dialog posts member functions with their arguments.
class Dialog
{
public:
    Dialog() { m_worker.Start(); }
    void OnRecordCountChanged() { Attach(0); }
    std::string Words() const { return m_log.Words(); }

private:
    void Attach(int nAttempt)
    {
        m_worker.Post(MakeAsyncTask([this, nAttempt] { DoAttach(nAttempt); }));
    }
    void DoAttach(int nAttempt)
    {
        m_log.Say(std::to_string(nAttempt));
        if (nAttempt < 2)
            Attach(nAttempt + 1);
    }

    Log m_log;
    CActiveObject_WndMsg m_worker;
};

TEST(ActiveObject, OfAWindowRunsTasksOfWorkersOnTheDialogsThread)
{
    Dialog dialog;
    std::thread([&] { dialog.OnRecordCountChanged(); }).join();
    EXPECT_EQ("", dialog.Words());
    while (PumpMessages(std::chrono::milliseconds(0)) > 0)
        ;
    EXPECT_EQ("0 1 2", dialog.Words());
}

TEST(ActiveObject, ThatTerminatesItselfThrowsAwayItsQueueAndWaits)
{
    Log log;
    Hold hold;
    std::thread opener;
    {
        CTerminate_Local_RPC_Proxy object;
        object.Start();
        EXPECT_TRUE(object.Post(hold.Task()));
        ASSERT_TRUE(hold.entered.Pass());
        const auto pUsed = std::make_shared<int>(0);
        EXPECT_TRUE(object.Post(MakeAsyncTask([&log, pUsed] { log.Say("queued"); })));
        // Releases the thread once the queue has been thrown away.
        opener = std::thread([&hold, pGone = std::weak_ptr(pUsed)] {
            EXPECT_TRUE(Eventually([&] { return pGone.expired(); }));
            hold.leave.Open();
        });
    }
    opener.join();
    EXPECT_EQ("", log.Words());
}

TEST(ActiveObject, WithoutATransportThrows)
{
    struct Bare : CActiveObject_base
    {
        Bare() : CActiveObject_base(nullptr) {}
    };
    Bare object;
    const auto told = [](const std::function<void()>& call) -> std::string {
        try {
            call();
            return "nothing";
        } catch (const local_rpc_exception& error) {
            return error.what();
        }
    };
    constexpr const char* kText = "object wasn't initialized!";
    EXPECT_EQ(kText, told([&] { object.Start(); }));
    EXPECT_EQ(kText, told([&] { object.Post(MakeAsyncTask([] {})); }));
    EXPECT_EQ(kText, told([&] { object.Stop(true); }));
}

} // namespace
