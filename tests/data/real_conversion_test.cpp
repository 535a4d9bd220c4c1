// Conversions of files on disk, by the file's worker and the real record parser.

#include <chrono>
#include <random>
#include <thread>

#include "src/files/AsyncTransactionPool.h"
#include "tests/data/CloneOf.h"
#include "tests/data/RealFileFixture.h"
#include "tests/support/Seed.h"

using namespace Hesperon::specifics;
using namespace IQRL_TabulexConverter;

namespace {

using BadLine = RecordingSink::BadLine;

class RealConversionTest : public RealFileFixture
{};

TEST_F(RealConversionTest, RowsHoldTheTypedValuesOfTheFile)
{
    for (const bool bDescending : {false, true}) {
        SCOPED_TRACE(bDescending);
        CreateObject(sink);
        TempFile file(Daily(2500, bDescending));
        ASSERT_EQ(Open(*parser.get(), file), S_OK);
        ASSERT_TRUE(Convert(*parser.get()));
        ASSERT_EQ(sink->batches.size(), 3u);
        EXPECT_EQ(sink->batches[2].nLines, 500u);
        const auto rows = sink->AllRows();
        ASSERT_EQ(rows.size(), 2500u);
        for (int i = 0; i < 2500; ++i) {
            const int n = bDescending ? 2499 - i : i; // line of the file
            char expected[100];
            std::snprintf(expected, sizeof expected, "%d|%d.5|%d.75|%d.25|%d.5|%d", 36526 + i,
                          n + 10, n + 10, n + 10, n + 10, n * 100);
            ASSERT_EQ(rows[i], expected);
        }
        EXPECT_EQ(sink->ends, std::vector<bool>{true});
        EXPECT_TRUE(sink->badLines.empty());
    }
}

TEST_F(RealConversionTest, TheSourceOfACloneKnowsWhatOfTheFileCouldNotBeRead)
{
    ReadState state{};
    EXPECT_EQ(parser->GetReadState(nullptr), E_POINTER);
    EXPECT_EQ(parser->GetReadState(&state), E_FAIL); // no file
    TempFile file(Daily(200) + std::string(6'000'000, '\n') + "2010-01-01,1,2,0.5,1,100\n");
    ASSERT_EQ(Open(*parser.get(), file), S_OK);
    const auto clone = CloneOf(*parser.get());
    file.Truncate(1'000'000);
    ASSERT_TRUE(Convert(*clone.get()));
    EXPECT_EQ(sink->ends, std::vector<bool>{true}); // what can't be read counts as the end
    EXPECT_EQ(sink->AllRows().size(), 200u);
    ASSERT_EQ(parser->GetReadState(&state), S_OK);
    EXPECT_EQ(state.nFault, ReadFaultCut);
    EXPECT_EQ(state.nFaultLine, 200u);
    EXPECT_EQ(state.nSizeNow, 1'000'000u);
}

TEST_F(RealConversionTest, BadLinesAreReportedWithTheirTexts)
{
    // After the lines in which the layout is found.
    std::string text = Daily(400);
    const auto Replace = [&](const std::string& from, const std::string& to) {
        text.replace(text.find(from), from.size(), to);
    };
    Replace("2000-10-27", "2000-13-33");   // line 301
    Replace("2000-10-28", "2000-10-02");   // line 302
    Replace("312.5,312.75", "312.5,high"); // line 303
    TempFile file(text);
    ASSERT_EQ(Open(*parser.get(), file), S_OK);
    ASSERT_TRUE(Convert(*parser.get()));
    EXPECT_EQ(sink->AllRows().size(), 397u);
    ASSERT_EQ(sink->badLines.size(), 3u);
    EXPECT_EQ(sink->badLines[0],
              (BadLine{301, 1, " \"2000-13-33\" 行无法用 \"*y-*m-*d\" 模板分析。"}));
    EXPECT_EQ(sink->badLines[1], (BadLine{302, 65535, "时间或日期的增量是负的。"}));
    EXPECT_EQ(sink->badLines[2], (BadLine{303, 3, " \"high\" 行无法用 \"float\" 模板分析。"}));
    EXPECT_EQ(sink->ends, std::vector<bool>{true});
}

TEST_F(RealConversionTest, PortionsPutTogetherAreTheWholeFile)
{
    TempFile file(Daily(3300));
    ASSERT_EQ(Open(*parser.get(), file), S_OK);
    std::vector<std::string> rows;
    for (ULONGLONG nStart = 0; nStart < 4000; nStart += 700) {
        CreateObject(sink);
        const auto clone = CloneOf(*parser.get());
        ASSERT_EQ(clone->StartConvertPortion(0, sink.get(), nStart, 700, 1), S_OK);
        ASSERT_TRUE(sink->ended.Wait(kPatience));
        EXPECT_EQ(sink->ends, std::vector<bool>{true});
        const auto part = sink->AllRows();
        rows.insert(rows.end(), part.begin(), part.end());
    }
    CreateObject(sink);
    ASSERT_TRUE(Convert(*parser.get()));
    EXPECT_EQ(rows, sink->AllRows());
}

TEST_F(RealConversionTest, ClonesConvertOneFileSideBySide)
{
    TempFile file(Daily(2200));
    ASSERT_EQ(Open(*parser.get(), file), S_OK);
    std::vector<com_ptr<RecordingSink>> sinks(4);
    for (std::size_t i = 0; i < sinks.size(); ++i) {
        CreateObject(sinks[i]);
        ASSERT_EQ(CloneOf(*parser.get())->StartConversion(sinks[i].get(), i + 1), S_OK);
    }
    parser.reset();
    for (const auto& s : sinks) {
        ASSERT_TRUE(s->ended.Wait(kPatience));
        EXPECT_EQ(s->AllRows().size(), 2200u);
        EXPECT_EQ(s->ends, std::vector<bool>{true});
    }
}

TEST_F(RealConversionTest, OneParserConvertsAgainAndAgain)
{
    TempFile file(Daily(1500));
    ASSERT_EQ(Open(*parser.get(), file), S_OK);
    for (int i = 0; i < 50; ++i) {
        CreateObject(sink);
        ASSERT_TRUE(Convert(*parser.get())) << i;
        ASSERT_EQ(sink->AllRows().size(), 1500u) << i;
    }
}

TEST_F(RealConversionTest, FileThatIsCutWhileItConvertsEndsTheRun)
{
    // Several megabytes, so that the part that is cut off hasn't been read before.
    const std::string text = Daily(28000) + Daily(28000) + Daily(28000);
    TempFile file(text);
    ASSERT_EQ(Open(*parser.get(), file), S_OK);
    parser->put_DisableErrorNotify(VARIANT_TRUE);
    sink->onPutRecords = [&](std::size_t nBatch) {
        if (nBatch == 2)
            file.Truncate(text.size() / 3);
        return S_OK;
    };
    ASSERT_TRUE(Convert(*parser.get()));
    EXPECT_EQ(sink->ends.size(), 1u);
    EXPECT_LT(sink->AllRows().size(), 28000u);
    EXPECT_GE(sink->AllRows().size(), 2000u);
}

TEST_F(RealConversionTest, OneEndARunUnderCancelsAtRandomMoments)
{
    std::mt19937 random(Seed());
    TempFile file(Daily(3000));
    ASSERT_EQ(Open(*parser.get(), file), S_OK);
    int nCutOff = 0;
    const int nRuns = Rounds(100);
    for (int i = 0; i < nRuns; ++i) {
        CreateObject(sink);
        const ULONG_PTR nTransaction = 1000 + i;
        auto clone = CloneOf(*parser.get());
        ASSERT_EQ(clone->StartConversion(sink.get(), nTransaction), S_OK);
        clone.reset(); // the worker holds it from here on
        std::this_thread::sleep_for(std::chrono::microseconds(random() % 20000));
        AsyncTransactionPool::CancelTransaction(nTransaction);
        ASSERT_TRUE(sink->ended.Wait(kPatience)) << i;
        ASSERT_EQ(sink->EndCount(), 1u) << i;
        nCutOff += !sink->ends[0];
    }
    EXPECT_GT(nCutOff, 0);
    parser.reset(); // waits for the workers: nothing ends a second time
    EXPECT_EQ(sink->EndCount(), 1u);
}

TEST_F(RealConversionTest, SinkThatCallsTheParserFromItsBatchIsAnswered)
{
    TempFile file(Daily(1500));
    ASSERT_EQ(Open(*parser.get(), file), S_OK);
    std::vector<ULONGLONG> counts;
    sink->onPutRecords = [&](std::size_t) {
        ULONGLONG nCount = 0;
        VARIANT_BOOL bComplete = VARIANT_FALSE;
        const HRESULT hr = parser->GetCount(&nCount, &bComplete);
        counts.push_back(nCount);
        return hr;
    };
    ASSERT_TRUE(Convert(*parser.get()));
    ASSERT_EQ(counts.size(), 2u);
    EXPECT_EQ(counts[1], 1500u);
}

} // namespace
