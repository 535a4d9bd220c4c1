// Many steps in one call: whoever looks on can't tell them from steps of one record each.

#include "tests/data/DataParserFixture.h"

#include <random>

#include "tests/support/Seed.h"

using namespace Hesperon::specifics;

namespace {

struct Heard
{
    std::vector<RecordingSink::Batch> batches;
    std::vector<RecordingSink::BadLine> badLines;
    std::vector<bool> ends;
    HRESULT hr = S_OK;
    bool operator==(const Heard&) const = default;
};

// What makes a run end early, if anything does.
struct Ends
{
    std::size_t nBadLines = 0; // the sink ends it at this one
    std::size_t nBatches = 0;  // or at this one
    bool bCancels = false;     // by a cancel
};

struct Portion
{
    ULONGLONG nStart, nCount;
};

class ManyStepsTest : public DataParserFixture
{
protected:
    Heard Run(const std::optional<Portion>& portion, const Ends& ends, std::mt19937* random)
    {
        CreateObject(sink);
        const auto answer = [this, ends](std::size_t n, std::size_t nEnd) -> HRESULT {
            if (n != nEnd)
                return S_OK;
            if (ends.bCancels)
                parser->AbortConversion();
            return ends.bCancels ? S_OK : E_ABORT;
        };
        sink->onBadLine = [=, this](const auto&) {
            return answer(sink->badLines.size(), ends.nBadLines);
        };
        sink->onPutRecords = [=](std::size_t n) { return answer(n, ends.nBatches); };
        const HRESULT hrStart = portion
                                    ? parser->StartConvertPortion(0, sink.get(), portion->nStart,
                                                                  portion->nCount, kTransaction)
                                    : Start();
        EXPECT_EQ(hrStart, S_OK);
        const HRESULT hr = !file->pQueued ? S_OK
                           : random       ? RunInStrides(*random)
                                          : file->RunConversion();
        file->pQueued.reset();
        return {sink->batches, sink->badLines, sink->ends, hr};
    }

    HRESULT RunInStrides(std::mt19937& random)
    {
        ULONGLONG nIndex = 0;
        parser->get_StartPosition(&nIndex);
        HRESULT hr = S_OK;
        while (hr == S_OK) {
            const ULONGLONG nMost = 1 + random() % (random() % 2 ? 5 : 3000);
            ULONGLONG nTaken = 0;
            hr = parser->ProcessRecords(nIndex, nMost, nTaken);
            EXPECT_GE(nTaken, 1u);
            EXPECT_LE(nTaken, nMost);
            nIndex += nTaken;
        }
        return hr;
    }
};

TEST_F(ManyStepsTest, AreHeardAsStepsOfOne)
{
    std::mt19937 random(Seed());
    for (int nRound = 0; nRound < Rounds(60) && !HasFailure(); ++nRound) {
        SCOPED_TRACE(nRound);
        const int nLines = static_cast<int>(1 + random() % (random() % 3 ? 3500 : 2003));
        std::vector<std::string> lines = random() % 2 ? Days(1, nLines) : Days(nLines, 1);
        for (unsigned n = random() % 20; n != 0; --n)
            lines[random() % lines.size()] = random() % 2 ? "?,1" : "5,?";
        Open(lines);
        Access::PutDates(*parser.get(), random() % 3 ? 1 : 700, random() % 3 ? 1e6 : 2500);
        parser->put_DisableErrorNotify(random() % 4 ? VARIANT_FALSE : VARIANT_TRUE);
        std::optional<Portion> portion;
        if (random() % 2)
            portion = Portion{random() % lines.size(), 1 + random() % 2500};
        const Ends ends{random() % 3 ? 0 : 1 + random() % 8, random() % 3 ? 0 : 1 + random() % 3,
                        random() % 2 == 0};
        const Heard byOne = Run(portion, ends, nullptr);
        const Heard byMany = Run(portion, ends, &random);
        ASSERT_TRUE(byOne == byMany);
        ASSERT_FALSE(byOne.ends.empty() && ends.nBadLines + ends.nBatches == 0);
    }
}

} // namespace
