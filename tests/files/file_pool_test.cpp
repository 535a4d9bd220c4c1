#include "tests/files/Consumers.h"

using namespace Hesperon::specifics;
using namespace files_test;

namespace {

using Texts = std::vector<std::string>;

std::size_t Threads()
{
    return CFilePool::Instance().ThreadCount();
}

class Pool : public PoolTest
{};

TEST_F(Pool, SharesOneHandlerAndOneThreadAName)
{
    const TestFile file("ab\n");
    const auto first = Attach(file);
    const auto second = Attach(file);
    EXPECT_EQ(first, second);
    first->AddRef();
    EXPECT_EQ(first->Release(), 2u);
    EXPECT_EQ(Threads(), 1u);
}

TEST_F(Pool, GivesEachOpenFileAThread)
{
    const TestFile a("ab\n"), b("cd\n"), c("ef\n");
    const auto first = Attach(a);
    const auto second = Attach(b);
    const auto third = Attach(c);
    EXPECT_NE(first, second);
    EXPECT_EQ(Threads(), 3u);
    EXPECT_EQ(Record(second, 0), "cd");
    EXPECT_EQ(Record(third, 0), "ef");
}

// A worker may still be closing its file when the next one is opened, so their number
// swings; but it doesn't grow with the files that were opened.
TEST_F(Pool, JoinsTheThreadsOfClosedFiles)
{
    const TestFile file("ab\n");
    for (int n = 0; n < 50; ++n)
        EXPECT_EQ(Record(Attach(file), 0), "ab");
    EXPECT_TRUE(Eventually([&] { return Attach(file) && Threads() <= 2; }));
}

TEST_F(Pool, NamesCompareExactly)
{
    const TestFile file("ab\n");
    string_t sOther = file.Name();
    sOther.insert(sOther.rfind('/'), OLESTR("/."));
    const auto first = Attach(file);
    const auto second = FilePool::AttachFile(sOther);
    ASSERT_TRUE(second);
    EXPECT_NE(first, second);
}

TEST_F(Pool, OpensTheFileAfreshOnceAllHaveLetGo)
{
    const TestFile file("ab\n");
    auto pHandler = Attach(file);
    EXPECT_EQ(Record(pHandler, 0), "ab");
    pHandler.reset();
    file.Write("cd\n");
    EXPECT_EQ(Record(Attach(file), 0), "cd");
}

TEST_F(Pool, AReleasedNameOpensASecondHandlerBesideTheFirst)
{
    for (const bool bClose : {false, true}) {
        SCOPED_TRACE(bClose);
        const TestFile file("ab\n");
        const auto first = Attach(file);
        FilePool::ReleaseFile(file.Name(), bClose);
        const auto second = Attach(file);
        EXPECT_NE(first, second);
        EXPECT_EQ(Record(second, 0), "ab");
        EXPECT_EQ(Record(first, 0), "ab") << "from the page that is there";
        first->RefreshFileSize();
        if (bClose)
            EXPECT_THROW(Record(first, 0), std::invalid_argument);
        else
            EXPECT_EQ(Record(first, 0), "ab");
    }
}

// The name goes with the first handler, whoever has it by then.
TEST_F(Pool, TheLastReleaseForgetsTheNameWhateverHandlerHasIt)
{
    const TestFile file("ab\n");
    auto first = Attach(file);
    FilePool::ReleaseFile(file.Name(), false);
    const auto second = Attach(file);
    first.reset();
    const auto third = Attach(file);
    EXPECT_NE(second, third);
    EXPECT_EQ(Record(second, 0), "ab");
}

TEST_F(Pool, ReleasingAnUnknownNameDoesNothing)
{
    FilePool::ReleaseFile(OLESTR("/no/such/file"), false);
    FilePool::ReleaseFile(OLESTR("/no/such/file"), true);
    EXPECT_EQ(Threads(), 0u);
}

TEST_F(Pool, TriesFiveTimesToOpenAMissingFile)
{
    const TestFile file;
    ReportLog reports;
    const auto tBegin = std::chrono::steady_clock::now();
    EXPECT_FALSE(FilePool::AttachFile(file.Name()));
    EXPECT_GE(std::chrono::steady_clock::now() - tBegin, std::chrono::milliseconds(100));
    const std::string sTrace = "InternalAttachFile: CreateFile failed " + file.Bytes() +
                               " (ErrorCode=" + std::to_string(ENOENT) + ")";
    EXPECT_EQ(reports.Texts(), Texts(5, sTrace));
    EXPECT_EQ(Threads(), 0u);
}

TEST_F(Pool, OpensAFileThatAppearsAfterTheSecondAttempt)
{
    const TestFile file;
    int nAttempts = 0;
    ReportLog reports([&](const std::string&) {
        if (++nAttempts == 2)
            file.Write("ab\n");
    });
    const auto pHandler = FilePool::AttachFile(file.Name());
    ASSERT_TRUE(pHandler);
    EXPECT_EQ(nAttempts, 2);
    EXPECT_EQ(Record(pHandler, 0), "ab");
}

TEST_F(Pool, DoesNotOpenAFolder)
{
    ReportLog reports;
    EXPECT_FALSE(FilePool::AttachFile(Wide(std::filesystem::temp_directory_path().string())));
    EXPECT_EQ(reports.Texts().size(), 5u);
}

TEST_F(Pool, NamesMayBeLong)
{
    const TestFile file("ab\n");
    string_t sName = file.Name();
    for (int n = 0; n < 300; ++n)
        sName.insert(sName.rfind('/'), OLESTR("/."));
    const auto pHandler = FilePool::AttachFile(sName);
    ASSERT_TRUE(pHandler);
    Bstr bsName;
    EXPECT_EQ(pHandler->GetFileName(bsName.put()), S_OK);
    EXPECT_EQ(bsName.view(), sName);
    EXPECT_EQ(FilePool::AttachFile(sName), pHandler);
}

// ---- threads and their end ------------------------------------------------------

TEST(PoolShutdown, TheLastParserEndsTheThreads)
{
    const TestFile a("ab\n"), b("cd\n");
    FilePool::AddParser();
    FilePool::AddParser();
    {
        const auto first = FilePool::AttachFile(a.Name());
        const auto second = FilePool::AttachFile(b.Name());
        EXPECT_EQ(Threads(), 2u);
        FilePool::ReleaseParser();
        EXPECT_EQ(Threads(), 2u);
    }
    FilePool::ReleaseParser();
    EXPECT_EQ(Threads(), 0u);
}

TEST(PoolShutdown, TheNextParserFindsThePoolAtWork)
{
    for (int n = 0; n < 10; ++n) {
        const TestFile file("ab\n");
        FilePool::AddParser();
        ASSERT_TRUE(FilePool::AttachFile(file.Name()));
        FilePool::ReleaseParser();
        EXPECT_EQ(Threads(), 0u);
    }
}

TEST(PoolShutdown, APoolThreadMayReleaseTheLastParser)
{
    const TestFile a("ab\n"), b("cd\n");
    FilePool::AddParser();
    auto other = FilePool::AttachFile(b.Name());
    auto pHandler = FilePool::AttachFile(a.Name());
    const auto consumer = Make<Consumer>();
    Signal done;
    consumer->m_onRecord = [&](ULONGLONG) {
        other.reset();
        FilePool::ReleaseParser();
        EXPECT_EQ(Threads(), 1u) << "all but the calling one";
        pHandler.reset();
        done.Raise();
        return S_FALSE;
    };
    {
        const auto pHeld = pHandler;
        pHeld->QueueConversion(AsUnknown(consumer), 1);
    }
    ASSERT_TRUE(done.Await());
    FilePool::AddParser();
    FilePool::ReleaseParser();
    EXPECT_EQ(Threads(), 0u) << "the next shutdown waits for it";
}

TEST(PoolShutdown, ParsersComeAndGoOnSeveralThreads)
{
    const TestFile files[] = {TestFile("ab\n"), TestFile(NumberedLines(3000))};
    std::atomic<int> nFailed = 0;
    std::vector<std::thread> threads;
    for (int nThread = 0; nThread < 4; ++nThread)
        threads.emplace_back([&, nThread] {
            for (int n = 0; n < 50; ++n) {
                FilePool::AddParser();
                nFailed += !FilePool::AttachFile(files[(n + nThread) % 2].Name());
                FilePool::ReleaseParser();
            }
        });
    for (std::thread& thread : threads)
        thread.join();
    EXPECT_EQ(nFailed, 0);
    EXPECT_EQ(Threads(), 0u);
}

TEST_F(Pool, SurvivesAStormOfAttachesAndReleases)
{
    const TestFile files[] = {TestFile("ab\n"), TestFile("ab\ncd\n"), TestFile(NumberedLines(200))};
    std::atomic<int> nFailed = 0;
    std::vector<std::thread> threads;
    for (int nThread = 0; nThread < 6; ++nThread)
        threads.emplace_back([&, nThread] {
            for (int n = 0; n < 100; ++n) {
                const string_t sName = files[(n + nThread) % 3].Name();
                const auto pHandler = FilePool::AttachFile(sName);
                Bstr bsRecord;
                nFailed += !pHandler || pHandler->GetRecord(0, 0, bsRecord.put()) != S_OK;
                if (n % 10 == nThread)
                    FilePool::ReleaseFile(sName, false);
                const auto pAgain = FilePool::AttachFile(sName);
                nFailed += !pAgain;
            }
        });
    for (std::thread& thread : threads)
        thread.join();
    EXPECT_EQ(nFailed, 0);
}

TEST_F(Pool, CallersOfANameThatIsBeingOpenedShareIt)
{
    const TestFile file(NumberedLines(2000));
    std::vector<com_ptr<IFileHandler>> handlers(8);
    std::vector<std::thread> threads;
    for (auto& pHandler : handlers)
        threads.emplace_back([&] { pHandler = FilePool::AttachFile(file.Name()); });
    for (std::thread& thread : threads)
        thread.join();
    for (const auto& pHandler : handlers)
        EXPECT_EQ(pHandler, handlers[0]);
    EXPECT_TRUE(handlers[0]);
    EXPECT_EQ(Threads(), 1u);
}

TEST_F(Pool, ConversionsEndWhenTheirFilesAreReleasedInAStorm)
{
    const TestFile file(NumberedLines(500));
    std::vector<std::thread> threads;
    for (int nThread = 0; nThread < 4; ++nThread)
        threads.emplace_back([&] {
            for (int n = 0; n < 25; ++n) {
                const auto pHandler = FilePool::AttachFile(file.Name());
                const auto consumer = Make<Consumer>();
                pHandler->QueueConversion(AsUnknown(consumer), 1);
                pHandler->QueueCountEvents(AsUnknown(consumer), 2);
            }
        });
    for (std::thread& thread : threads)
        thread.join();
}

} // namespace
