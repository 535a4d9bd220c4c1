#include <memory>

#include <gtest/gtest.h>

#include "LocalRPC/AO_Transport.h"
#include "tests/localrpc/Tasks.h"

using namespace LocalRPC;
using LocalRPC::details::utils::CTaskStorage;

namespace {

// ---- tasks

TEST(Task, LivesAsLongAsItIsReferred)
{
    auto pUsed = std::make_shared<int>(0);
    TaskPtr task = MakeAsyncTask([pUsed] { ++*pUsed; });
    TaskPtr other = task;
    task.reset();
    other->Execute();
    EXPECT_EQ(1, *pUsed);
    EXPECT_EQ(2, pUsed.use_count());
    other.reset();
    EXPECT_EQ(1, pUsed.use_count());
}

TEST(Task, TellsWhetherItsPosterWaits)
{
    EXPECT_FALSE(MakeAsyncTask([] {})->IsSynchronous());
    EXPECT_TRUE(MakeSyncTask([] {})->IsSynchronous());
}

TEST(Task, IsDoneWhenItHasRun)
{
    const auto task = MakeSyncTask([] {});
    EXPECT_FALSE(task->Wait(std::chrono::milliseconds(0)));
    task->Execute();
    EXPECT_TRUE(task->Wait());
    EXPECT_TRUE(task->Wait());
}

TEST(Task, IsDoneAlsoWhenItThrows)
{
    const auto task = MakeSyncTask([] { throw 1; });
    EXPECT_THROW(task->Execute(), int);
    EXPECT_TRUE(task->Wait(std::chrono::milliseconds(0)));
}

// ---- the store

TEST(TaskStorage, GivesTasksInTheOrderInWhichTheyCame)
{
    CTaskStorage storage;
    Log log;
    for (const char* word : {"a", "b", "c"})
        storage.Add(log.Task(word));
    EXPECT_EQ(3U, storage.Size());
    TaskPtr task;
    for (storage.Take(task); task; storage.Take(task))
        task->Execute();
    EXPECT_EQ("a b c", log.Words());
    EXPECT_EQ(0U, storage.Size());
}

TEST(TaskStorage, EmptiesTheReferenceWhenItHasNone)
{
    CTaskStorage storage;
    TaskPtr task = MakeAsyncTask([] {});
    storage.Take(task);
    EXPECT_FALSE(task);
}

// Uses the store again in its destructor.
class Returner
{
public:
    Returner(CTaskStorage& storage, Log& log) : m_storage(storage), m_log(log) {}
    ~Returner()
    {
        m_storage.Add(m_log.Task("returned"));
        m_log.Say("destroyed");
    }

private:
    CTaskStorage& m_storage;
    Log& m_log;
};

TEST(TaskStorage, DestroysTasksOutsideOfItsLock)
{
    CTaskStorage storage;
    Log log;
    storage.Add(MakeAsyncTask([p = std::make_shared<Returner>(storage, log)] {}));
    storage.Clear();
    EXPECT_EQ("destroyed", log.Words());
    EXPECT_EQ(1U, storage.Size());

    TaskPtr task = MakeAsyncTask([p = std::make_shared<Returner>(storage, log)] {});
    storage.Take(task); // releases what the reference held
    EXPECT_EQ("destroyed destroyed", log.Words());
    storage.Clear();
    EXPECT_EQ(0U, storage.Size());
}

} // namespace
