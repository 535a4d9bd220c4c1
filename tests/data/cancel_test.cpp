// A cancel while the sink is asked about a bad line. The worker waits for the answer and holds
// the parser's lock meanwhile; nobody answers but the cancel.

#include <thread>

#include "module/OpenQuestion.h"
#include "src/files/AsyncTransactionPool.h"
#include "tests/data/DataParserFixture.h"
#include "tests/support/Objects.h"

using namespace Hesperon::specifics;

namespace {

// A sink whose questions stay open until they are ended.
class AskingSink
    : public ComObject<AskingSink, Dual<IQRL_TabulexConverter::IDataParserEvents>, IOpenQuestion>
{
public:
    Event asked{Event::Kind::ManualReset}, endedQuestion{Event::Kind::ManualReset};
    std::function<void()> onEndQuestions;
    std::atomic<int> nQuestions = 0;
    std::vector<bool> ends;
    HRESULT hrAnswer = S_FALSE;

    HRESULT STDMETHODCALLTYPE PutRecords(VARIANT, ULONGLONG) override { return S_OK; }
    HRESULT STDMETHODCALLTYPE EndTransaction(VARIANT_BOOL bResult) override
    {
        ends.push_back(bResult != VARIANT_FALSE);
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE OnError(VARIANT) override { return S_OK; }
    HRESULT STDMETHODCALLTYPE GetResolutionName(LONG, BSTR*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE OnError2(LONG_PTR, LONG, BSTR) override
    {
        ++nQuestions;
        asked.Set();
        EXPECT_TRUE(endedQuestion.Wait(std::chrono::seconds(60)));
        return hrAnswer;
    }
    void STDMETHODCALLTYPE EndQuestions() override
    {
        endedQuestion.Set();
        if (onEndQuestions)
            onEndQuestions();
    }
};

class CancelTest : public DataParserFixture
{
protected:
    void Begin()
    {
        ASSERT_EQ(CreateObject(asking), S_OK);
        Open({"1,1", "?,2", "?,3", "4,4"});
        ASSERT_EQ(parser->StartConversion(asking.get(), kTransaction), S_OK);
    }

    com_ptr<AskingSink> asking;
};

TEST_F(CancelTest, EndsTheOpenQuestionAndIsHeardOnce)
{
    for (const HRESULT hrAnswer : {S_FALSE, S_OK}) {
        SCOPED_TRACE(hrAnswer);
        Begin();
        asking->hrAnswer = hrAnswer;
        std::thread worker([&] { file->RunConversion(); });
        asking->asked.Wait();
        EXPECT_TRUE(AsyncTransactionPool::CancelTransaction(kTransaction));
        EXPECT_EQ(asking->ends, std::vector<bool>{false});
        worker.join();
        EXPECT_EQ(asking->ends, std::vector<bool>{false});
        EXPECT_EQ(asking->nQuestions, 1) << "nothing is asked after a cancel";
        EXPECT_FALSE(Access::HasSink(*parser.get()));
    }
}

// The answer that ends the run may be there before the cancelling thread has the lock.
TEST_F(CancelTest, IsHeardThoughTheAnswerHasEndedTheRun)
{
    Begin();
    std::thread worker([&] { file->RunConversion(); });
    asking->asked.Wait();
    asking->onEndQuestions = [&] { worker.join(); };
    EXPECT_EQ(parser->AbortConversion(), S_OK);
    EXPECT_EQ(asking->ends, std::vector<bool>{false});
    EXPECT_FALSE(Access::HasSink(*parser.get()));
}

TEST_F(CancelTest, ThatComesAfterTheEndFindsNoSink)
{
    Begin();
    asking->endedQuestion.Set();
    EXPECT_EQ(file->RunConversion(), E_INVALIDARG);
    EXPECT_FALSE(Access::HasSink(*parser.get()));
    EXPECT_EQ(parser->AbortConversion(), S_OK);
    EXPECT_TRUE(asking->ends.empty());
    EXPECT_EQ(RefsOf(asking->Identity()), 1u);
}

} // namespace
