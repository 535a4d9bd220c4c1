// Why a conversion of a whole file doesn't start.

#include "tests/data/DataParserFixture.h"

#include "src/files/AsyncTransactionPool.h"

using namespace Hesperon::specifics;

namespace {

class RunStartTest : public DataParserFixture
{};

TEST_F(RunStartTest, RefusedStartsGiveTheirReason)
{
    struct
    {
        const char* szWhat;
        std::function<HRESULT()> start;
        HRESULT hr;
    } const rows[] = {
        {"no sink", [&] { return parser->StartConversion(nullptr, 1); }, E_POINTER},
        {"no event interface", [&] { return parser->StartConversion(records.get(), 1); },
         E_NOINTERFACE},
        {"no field names",
         [&] {
             records->hrFieldName = E_FAIL;
             return Start();
         },
         E_FAIL},
        {"no file",
         [&] {
             records->hrFieldName = S_OK;
             Access::PutFile(*parser.get(), nullptr);
             return Start();
         },
         E_INVALIDARG},
        {"refused",
         [&] {
             Access::PutFile(*parser.get(), file.get());
             file->hrQueueConversion = E_FAIL;
             return Start();
         },
         E_FAIL},
    };
    Open(Days(1, 3));
    for (const auto& row : rows) {
        SCOPED_TRACE(row.szWhat);
        EXPECT_EQ(row.start(), row.hr);
        EXPECT_FALSE(Access::HasSink(*parser.get()));
        EXPECT_FALSE(AsyncTransactionPool::CancelTransaction(kTransaction));
    }
    EXPECT_TRUE(sink->ends.empty());
}

TEST_F(RunStartTest, SecondStartTakesTheSinkOfTheRunThatIsOn)
{
    Open(Days(1, 3));
    ASSERT_EQ(Start(), S_OK);
    ASSERT_EQ(file->Step(0), S_OK);
    com_ptr<RecordingSink> second;
    CreateObject(second);
    ReportLog reports;
    EXPECT_EQ(parser->StartConversion(second.get(), 78), E_POINTER);
    EXPECT_EQ(reports.Texts(), std::vector<std::string>{"!m_pDataParserEvents"});
    EXPECT_EQ(file->Step(1), E_INVALIDARG);
    EXPECT_TRUE(sink->ends.empty());
    EXPECT_TRUE(second->ends.empty());
    EXPECT_FALSE(AsyncTransactionPool::CancelTransaction(kTransaction));
}

} // namespace
