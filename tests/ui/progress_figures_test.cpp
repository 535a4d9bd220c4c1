// The figures that DoProgress writes.

#include "tests/ui/ProgressFixture.h"

using namespace ui_test;

namespace {

class ProgressFigures : public ProgressFixture
{
protected:
    // Opens the box and starts its time at the clock's current tick.
    void Start()
    {
        Open();
        EXPECT_EQ(Progress(1, 100), S_OK);
        EXPECT_THAT(log.Take(), IsEmpty()) << "no time has passed";
    }
};

TEST_F(ProgressFigures, AreWrittenInOrder)
{
    Start();
    nNow += 61500;
    parser->m_fRelative = 0.5f;
    EXPECT_EQ(Progress(30, 100), S_OK);
    EXPECT_EQ(log.Take(),
              Calls({"percent 30", "text 406 1 min 2 sec", "text 402 30", "text 404 1 min 1 sec"}));
}

TEST_F(ProgressFigures, StayAtAPositionOfZero)
{
    Start();
    nNow += 5000;
    EXPECT_EQ(Progress(0, 100), S_OK);
    EXPECT_THAT(log.Take(), IsEmpty());
}

TEST_F(ProgressFigures, APositionOfZeroStartsTheTime)
{
    Open();
    EXPECT_EQ(Progress(0, 100), S_OK);
    nNow += 2000;
    EXPECT_EQ(Progress(1, 100), S_OK);
    EXPECT_EQ(log.Take(), Calls({"percent 1", "text 402 1", "text 404 0 min 2 sec"}));
}

TEST_F(ProgressFigures, StayWithinTheTickOfTheStart)
{
    Start();
    EXPECT_EQ(Progress(50, 100), S_OK);
    EXPECT_EQ(Progress(60, 100), S_OK);
    EXPECT_THAT(log.Take(), IsEmpty());
    nNow += 1;
    EXPECT_EQ(Progress(60, 100), S_OK);
    EXPECT_EQ(log.Take(), Calls({"percent 60", "text 402 60", "text 404 0 min 0 sec"}));
}

// A start tick of 0 means that the time hasn't begun.
TEST_F(ProgressFigures, ATickOfZeroDoesNotStartTheTime)
{
    nNow = 0;
    Start();
    nNow = 700;
    EXPECT_EQ(Progress(1, 100), S_OK);
    EXPECT_THAT(log.Take(), IsEmpty());
    nNow = 1700;
    EXPECT_EQ(Progress(1, 100), S_OK);
    EXPECT_EQ(log.Take(), Calls({"percent 1", "text 402 1", "text 404 0 min 1 sec"}));
}

TEST_F(ProgressFigures, SurviveTheTurnOfTheClock)
{
    nNow = 0xFFFFFFFF - 999;
    Start();
    nNow += 61000;
    EXPECT_EQ(Progress(1, 100), S_OK);
    EXPECT_EQ(log.Take(), Calls({"percent 1", "text 402 1", "text 404 1 min 1 sec"}));
}

TEST_F(ProgressFigures, TheTimeGoesOnInABoxThatIsOpenedAgain)
{
    Start();
    Close();
    nNow += 3000;
    Open();
    EXPECT_EQ(Progress(1, 100), S_OK);
    EXPECT_EQ(log.Take(), Calls({"percent 1", "text 402 1", "text 404 0 min 3 sec"}));
}

TEST_F(ProgressFigures, OfTheBar)
{
    struct Row
    {
        ULONGLONG nPos, nMax;
        ULONG nPercent;
    };
    constexpr Row kRows[] = {
        {1, 100, 1},
        {1, 101, 0},
        {199, 200, 99},
        {200, 200, 100},
        {201, 200, 100},
        {7, 0, 100},
        {29, 100, 28}, // as doubles 29 / 100 * 100 is below 29
        {0x4000000000000000, 0x8000000000000000, 50},
        {0x8000000000000000, 0xC000000000000000, 66},
        {0xFFFFFFFFFFFFFFFE, 0xFFFFFFFFFFFFFFFF, 100}, // the same double
        {0xFFFFFFFFFFFFFFFF, 1, 100},
    };
    Start();
    nNow += 1;
    for (const Row& row : kRows) {
        SCOPED_TRACE(std::to_string(row.nPos) + " of " + std::to_string(row.nMax));
        EXPECT_EQ(Progress(row.nPos, row.nMax), S_OK);
        EXPECT_EQ(log.Take(),
                  Calls({"percent " + std::to_string(row.nPercent),
                         "text 402 " + std::to_string(row.nPos), "text 404 0 min 0 sec"}));
    }
}

TEST_F(ProgressFigures, OfTheTimes)
{
    struct Row
    {
        std::uint32_t nElapsed;
        FLOAT fRelative;
        const char* sElapsed;
        const char* sRemaining; // null: isn't written
    };
    constexpr Row kRows[] = {
        {61500, 0.0f, "1 min 1 sec", nullptr},
        {61001, 0.5f, "1 min 1 sec", "1 min 2 sec"},
        {61000, 0.5f, "1 min 1 sec", "1 min 1 sec"},
        {59999, 0.5f, "0 min 59 sec", "1 min 0 sec"},
        {1, 0.5f, "0 min 0 sec", "0 min 1 sec"},
        {1000, 1.0f, "0 min 1 sec", "0 min 0 sec"},
        {1000, 0.75f, "0 min 1 sec", "0 min 1 sec"},       // 1333 - 1000
        {3600000, 0.25f, "60 min 0 sec", "180 min 0 sec"}, // no hours
        // Single precision holds 16777216, a millisecond less than there was.
        {16777217, 1.0f, "279 min 37 sec", "71582 min 48 sec"},
        {1000, 2.0f, "0 min 1 sec", "71582 min 47 sec"},   // 500 - 1000
        {1000, 1e-30f, "0 min 1 sec", "71582 min 47 sec"}, // beyond any whole number: 0 - 1000
        {0xFFFFFFFF, 0.0f, "71582 min 47 sec", nullptr},
    };
    Start();
    const std::uint32_t nStart = nNow;
    for (const Row& row : kRows) {
        SCOPED_TRACE(std::to_string(row.nElapsed) + " at " + std::to_string(row.fRelative));
        nNow = nStart + row.nElapsed;
        parser->m_fRelative = row.fRelative;
        EXPECT_EQ(Progress(100, 100), S_OK);
        Calls expected{"percent 100"};
        if (row.sRemaining)
            expected.push_back(std::string("text 406 ") + row.sRemaining);
        expected.push_back("text 402 100");
        expected.push_back(std::string("text 404 ") + row.sElapsed);
        EXPECT_EQ(log.Take(), expected);
    }
}

TEST_F(ProgressFigures, WithoutAParserHaveNoRemainingTime)
{
    box->put_DataParser(nullptr);
    Start();
    nNow += 1000;
    EXPECT_EQ(Progress(5, 10), S_OK);
    EXPECT_EQ(log.Take(), Calls({"percent 50", "text 402 5", "text 404 0 min 1 sec"}));
}

TEST_F(ProgressFigures, AreAlsoTakenOnTheBoxsOwnThread)
{
    Start();
    nNow += 1000;
    EXPECT_EQ(box->DoProgress(5, 10), S_OK);
    EXPECT_EQ(log.Take(), Calls({"percent 50", "text 402 5", "text 404 0 min 1 sec"}));
}

TEST_F(ProgressFigures, AreAskedOfTheParserOnTheBoxsThread)
{
    Start();
    nNow += 1000;
    std::thread::id asked;
    parser->m_onRelativePos = [&] { asked = std::this_thread::get_id(); };
    Progress(5, 10);
    EXPECT_EQ(asked, std::this_thread::get_id());
}

// The parser may wait for a lock, and dispatch messages while it waits.
TEST_F(ProgressFigures, AreDroppedWhereTheBoxClosesMeanwhile)
{
    Start();
    nNow += 1000;
    parser->m_onRelativePos = [this] { EXPECT_EQ(box->Close(), S_OK); };
    EXPECT_EQ(Progress(5, 10), S_FALSE);
    EXPECT_EQ(log.Take(), Calls({"close", "release"}));
}

} // namespace
