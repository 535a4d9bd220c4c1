// How the worker of a file shows to the system: it runs below normal priority, and it
// sleeps for good once it has nothing to do.
#include <fstream>

#include <sys/resource.h>
#include <sys/syscall.h>
#include <unistd.h>

#include "tests/files/Consumers.h"

using namespace files_test;

namespace {

class FileWorker : public PoolTest
{
protected:
    // What the worker finds out about itself.
    struct Self
    {
        long nThread = 0;
        int nNice = 0;
    };
    static Self AskWorker(const com_ptr<IFileHandler>& pHandler)
    {
        Self self;
        Signal asked;
        const auto consumer = Make<Consumer>();
        consumer->m_onRecord = [&](ULONGLONG) {
            self = {syscall(SYS_gettid), getpriority(PRIO_PROCESS, 0)};
            asked.Raise();
            return S_FALSE;
        };
        pHandler->QueueConversion(AsUnknown(consumer), 1);
        EXPECT_TRUE(asked.Await());
        return self;
    }

    // How often the thread has gone to sleep so far.
    static long Sleeps(long nThread)
    {
        std::ifstream status("/proc/self/task/" + std::to_string(nThread) + "/status");
        const std::string sName = "voluntary_ctxt_switches:";
        for (std::string line; std::getline(status, line);)
            if (line.starts_with(sName))
                return std::stol(line.substr(sName.size()));
        ADD_FAILURE() << "no status of thread " << nThread;
        return 0;
    }

    // Whether it sleeps for a hundred of the pauses that a scan makes.
    static bool SleepsOn(long nThread)
    {
        const long nBefore = Sleeps(nThread);
        std::this_thread::sleep_for(std::chrono::milliseconds(100));
        return Sleeps(nThread) == nBefore;
    }
};

TEST_F(FileWorker, SleepsWithoutATimeoutWhenTheScanIsDone)
{
    for (const std::size_t nLines : {100, 40000}) {
        SCOPED_TRACE(nLines);
        const TestFile file(NumberedLines(nLines));
        const auto pHandler = Attach(file);
        const long nThread = AskWorker(pHandler).nThread;
        EXPECT_TRUE(Eventually([&] { return SleepsOn(nThread); }));
    }
}

TEST_F(FileWorker, RunsBelowNormalPriority)
{
    const int nOwn = getpriority(PRIO_PROCESS, 0);
    const TestFile file(NumberedLines(10));
    const int nWorker = AskWorker(Attach(file)).nNice;
    if (nOwn < 19)
        EXPECT_GT(nWorker, nOwn);
    else
        EXPECT_EQ(nWorker, nOwn);
}

} // namespace
