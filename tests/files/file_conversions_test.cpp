#include "src/files/FileConversions.h"

#include "tests/files/Consumers.h"

using namespace Hesperon::specifics;
using namespace files_test;

namespace {

using Texts = std::vector<std::string>;

// Consumers that end after nRecords records each, and the order of all their calls.
class Turns
{
public:
    com_ptr<Consumer> Add(const std::string& sName, ULONGLONG nRecords)
    {
        auto consumer = Make<Consumer>();
        consumer->m_onRecord = [this, sName, nRecords](ULONGLONG nIndex) {
            m_calls.push_back(sName + std::to_string(nIndex));
            return nIndex + 1 < nRecords ? S_OK : S_FALSE;
        };
        m_conversions.Start(com_ptr<IFileHandlerEvents>(consumer.get()));
        return consumer;
    }
    Texts Step(int nTimes)
    {
        m_calls.clear();
        while (nTimes-- > 0)
            m_conversions.StepNext(false);
        return m_calls;
    }
    FileConversions m_conversions;

private:
    Texts m_calls;
};

TEST(FileConversions, TakeTurnsARecordEach)
{
    Turns turns;
    EXPECT_FALSE(turns.m_conversions.IsActive());
    EXPECT_EQ(turns.Step(3), Texts{});
    const auto a = turns.Add("a", 4);
    EXPECT_TRUE(turns.m_conversions.IsActive());
    EXPECT_EQ(turns.Step(1), Texts{"a0"});
    const auto b = turns.Add("b", 2);
    const auto c = turns.Add("c", 3);
    EXPECT_EQ(turns.Step(9), (Texts{"b0", "c0", "a1", "b1", "c1", "a2", "c2", "a3"}));
    EXPECT_FALSE(turns.m_conversions.IsActive());
}

// Takes up to three records in a call, and notes the calls.
class StepsConsumer : public ComObject<StepsConsumer, Dual<IFileHandlerEvents>, IRecordSteps>
{
public:
    Texts m_calls;

    HRESULT STDMETHODCALLTYPE RecordCountChange(ULONGLONG, VARIANT_BOOL) override { return S_OK; }
    HRESULT STDMETHODCALLTYPE PutData(VARIANT, ULONGLONG, ULONGLONG) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE ProcessRecord(ULONGLONG nIndex, BSTR, VARIANT_BOOL) override
    {
        m_calls.push_back(std::to_string(nIndex));
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE ProcessRecords(ULONGLONG nIndex, ULONGLONG nMost,
                                             ULONGLONG& nTaken) override
    {
        nTaken = std::min<ULONGLONG>(nMost, 3);
        m_calls.push_back(std::to_string(nIndex) + "+" + std::to_string(nTaken));
        return nIndex < 6 ? S_OK : S_FALSE;
    }
};

TEST(FileConversions, TheOnlyOneMayTakeManyRecordsInATurn)
{
    const auto steps = Make<StepsConsumer>();
    const auto other = Make<Consumer>();
    other->m_onRecord = [](ULONGLONG) { return S_FALSE; };
    FileConversions conversions;
    conversions.Start(com_ptr<IFileHandlerEvents>(steps.get()));
    conversions.StepNext(false, 1);
    conversions.StepNext(false, 2);
    conversions.Start(com_ptr<IFileHandlerEvents>(other.get()));
    conversions.StepNext(false, 1000); // the other one's turn, and its end
    conversions.StepNext(false, 1000);
    EXPECT_TRUE(conversions.IsActive());
    conversions.StepNext(false, 1000);
    EXPECT_FALSE(conversions.IsActive());
    EXPECT_EQ(other->Records(), std::vector<ULONGLONG>{0});
    EXPECT_EQ(steps->m_calls, (Texts{"0", "1+2", "3+3", "6+3"}));
}

TEST(FileConversions, EndWithAnyResultButSuccess)
{
    for (const HRESULT hr : {S_FALSE, E_FAIL, E_INVALIDARG, HRESULT(2)}) {
        SCOPED_TRACE(hr);
        const auto consumer = Make<Consumer>();
        consumer->m_onRecord = [=](ULONGLONG) { return hr; };
        FileConversions conversions;
        conversions.Start(com_ptr<IFileHandlerEvents>(consumer.get()));
        conversions.StepNext(true);
        EXPECT_FALSE(conversions.IsActive());
        consumer->AddRef();
        EXPECT_EQ(consumer->Release(), 1u);
        EXPECT_FALSE(consumer->TextGiven());
        EXPECT_EQ(consumer->Completes(), std::vector<VARIANT_BOOL>{1});
    }
}

TEST(FileConversions, AnExceptionOfTheConsumerEndsItsConversion)
{
    const auto consumer = Make<Consumer>();
    consumer->m_onRecord = [](ULONGLONG) -> HRESULT { throw std::invalid_argument("unread"); };
    FileConversions conversions;
    conversions.Start(com_ptr<IFileHandlerEvents>(consumer.get()));
    conversions.StepNext(false);
    EXPECT_FALSE(conversions.IsActive());
}

TEST(FileConversions, ASecondOneOfTheSameConsumerIsReported)
{
    const auto consumer = Make<Consumer>();
    FileConversions conversions;
    conversions.Start(com_ptr<IFileHandlerEvents>(consumer.get()));
    conversions.StepNext(false);
    ReportLog reports;
    conversions.Start(com_ptr<IFileHandlerEvents>(consumer.get()));
    EXPECT_EQ(reports.Texts(), Texts{"!pConverter"});
    conversions.StepNext(false);
    conversions.StepNext(false);
    EXPECT_EQ(consumer->Records(), (std::vector<ULONGLONG>{0, 1, 2}));
}

TEST(FileConversions, ClearLetsGoOfAllConsumers)
{
    Turns turns;
    const auto a = turns.Add("a", 4);
    turns.m_conversions.Clear();
    EXPECT_FALSE(turns.m_conversions.IsActive());
    a->AddRef();
    EXPECT_EQ(a->Release(), 1u);
}

} // namespace
