// First and last dates, direction, the range of a conversion.

#include "tests/data/DataParserFixture.h"

using namespace Hesperon::specifics;

namespace {

class DatesTest : public DataParserFixture
{
protected:
    DATE Start()
    {
        Variant v;
        EXPECT_EQ(parser->get_StartDateTime(v.put()), S_OK);
        EXPECT_EQ(v.vt, VT_DATE);
        return v.date;
    }
    DATE End()
    {
        Variant v;
        EXPECT_EQ(parser->get_EndDateTime(v.put()), S_OK);
        EXPECT_EQ(v.vt, VT_DATE);
        return v.date;
    }
};

TEST_F(DatesTest, DirectionAndRangeFollowFromTheFirstAndLastRecord)
{
    struct
    {
        const char* szWhat;
        std::vector<std::string> lines;
        DATE start, end;
        bool bInverted;
    } const rows[] = {
        {"ascending", {"10,1", "99,1", "20,1"}, 10, 20, false},
        {"descending", {"20,1", "99,1", "10,1"}, 10, 20, true},
        {"equal", {"10,1", "11,1", "10,1"}, 10, 10, false},
        {"one record", {"10,1"}, 10, 10, false},
        {"no record", {}, 0, 0, false},
        {"first date unreadable", {"?,1", "20,1"}, 0, 0, false},
        {"last date unreadable", {"10,1", "?,1"}, 0, 0, false},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.szWhat);
        Open(row.lines);
        EXPECT_EQ(Start(), row.start);
        EXPECT_EQ(End(), row.end);
        EXPECT_EQ(Inverted(), row.bInverted);
        // A second search doesn't switch the direction back.
        EXPECT_EQ(parser->RefreshDateInfo(VARIANT_FALSE), S_OK);
        EXPECT_EQ(Inverted(), row.bInverted);
    }
}

TEST_F(DatesTest, RecordThatDoesNotParseLeavesNoRange)
{
    Open(Days(1, 5));
    records->hrParse = E_FAIL;
    EXPECT_EQ(parser->RefreshDateInfo(VARIANT_FALSE), S_OK);
    EXPECT_EQ(Start(), 0);
    EXPECT_EQ(End(), 0);
}

TEST_F(DatesTest, RangeOfAConversionIsClampedToTheFile)
{
    struct
    {
        DATE put, stored;
        HRESULT hr;
    } const rows[] = {
        {5, 5, S_OK},       {9.5, 9.5, S_OK}, {20, 20, S_OK},
        {4.99, 5, S_FALSE}, {0, 5, S_FALSE},  {20.01, 20, S_FALSE},
    };
    for (const bool bDescending : {false, true}) {
        Open(bDescending ? Days(20, 5) : Days(5, 20));
        for (const auto& row : rows) {
            SCOPED_TRACE(row.put);
            EXPECT_EQ(parser->put_StartDateTime(Variant::FromDate(row.put)), row.hr);
            EXPECT_EQ(Start(), row.stored);
            EXPECT_EQ(parser->put_EndDateTime(Variant::FromDate(row.put)), row.hr);
            EXPECT_EQ(End(), row.stored);
        }
    }
}

TEST_F(DatesTest, ValueOfAnotherKindIsReportedAndTakenAllTheSame)
{
    Open(Days(5, 20));
    Variant v = Variant::FromDate(7);
    v.vt = VT_R8;
    ReportLog reports;
    EXPECT_EQ(parser->put_StartDateTime(v), S_OK);
    EXPECT_EQ(Start(), 7);
    EXPECT_EQ(parser->put_EndDateTime(v), S_OK);
    EXPECT_EQ(End(), 7);
    EXPECT_EQ(reports.Texts(),
              (std::vector<std::string>{"VT_DATE == newVal.vt", "VT_DATE == newVal.vt"}));
}

TEST_F(DatesTest, DateWithoutAFileIsStoredAsItIs)
{
    Access::PutFile(*parser.get(), nullptr);
    EXPECT_EQ(parser->put_StartDateTime(Variant::FromDate(7)), S_OK);
    EXPECT_EQ(Start(), 7);
}

TEST_F(DatesTest, LookingForTheFirstDateMovesThePosition)
{
    Open(Days(5, 20));
    parser->put_Position(3);
    Variant v;
    EXPECT_EQ(parser->GetMaxDateTime(v.put()), S_OK);
    EXPECT_EQ(v.date, 20);
    ULONGLONG nPosition = 9;
    parser->get_Position(&nPosition);
    EXPECT_EQ(nPosition, 3u);
    EXPECT_EQ(parser->GetMinDateTime(v.put()), S_OK);
    EXPECT_EQ(v.date, 5);
    parser->get_Position(&nPosition);
    EXPECT_EQ(nPosition, 0u);
}

TEST_F(DatesTest, InferenceStudiesTheHeaderOrTheFirstRecord)
{
    Open({"junk", "Date,Close", "1,1", "2,2"});
    parser->put_HeaderOffset(1);
    parser->put_HasHeader(VARIANT_TRUE);
    EXPECT_EQ(parser->RefreshDateInfo(VARIANT_TRUE), S_OK);
    parser->put_HasHeader(VARIANT_FALSE);
    EXPECT_EQ(parser->RefreshDateInfo(VARIANT_TRUE), S_OK);
    EXPECT_EQ(parser->RefreshDateInfo(VARIANT_FALSE), S_OK);
    EXPECT_EQ(records->studied,
              (std::vector<string_t>{OLESTR("Date,Close"), OLESTR("Date,Close")}));
    parser->put_HeaderOffset(2);
    EXPECT_EQ(parser->RefreshDateInfo(VARIANT_TRUE), S_OK);
    EXPECT_EQ(records->studied.back(), OLESTR("1,1"));
    parser->put_HeaderOffset(9); // nothing to study; the dates are looked for all the same
    EXPECT_EQ(parser->RefreshDateInfo(VARIANT_TRUE), S_OK);
    EXPECT_EQ(records->studied.size(), 3u);
}

TEST_F(DatesTest, LocaleStartsTheLayoutOver)
{
    struct
    {
        const char* szWhat;
        std::vector<std::string> lines;
        DATE start, end;
        bool bInverted;
    } const rows[] = {
        {"ascending", {"10,1", "20,1"}, 10, 20, false},
        {"descending", {"20,1", "10,1"}, 10, 20, true},
        {"unreadable dates count as 0", {"20,1", "?,1"}, 0, 20, true},
        {"empty", {}, 0, 0, false},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.szWhat);
        Open(row.lines);
        parser->put_HeaderOffset(4);
        parser->put_HasHeader(VARIANT_TRUE);
        file->codePages.clear();
        const int nResets = records->nResets;
        EXPECT_EQ(parser->put_Locale(936), S_OK);
        EXPECT_EQ(records->nResets, nResets + 1);
        ULONG nOffset = 9, nLocale = 0;
        VARIANT_BOOL bHeader = VARIANT_TRUE;
        parser->get_HeaderOffset(&nOffset);
        parser->get_HasHeader(&bHeader);
        parser->get_Locale(&nLocale);
        EXPECT_EQ(nOffset, 0u);
        EXPECT_EQ(bHeader, VARIANT_FALSE);
        EXPECT_EQ(nLocale, 936u);
        EXPECT_EQ(Start(), row.start);
        EXPECT_EQ(End(), row.end);
        EXPECT_EQ(Inverted(), row.bInverted);
        ASSERT_FALSE(file->codePages.empty());
        EXPECT_EQ(file->codePages.front(), 936u);
    }
}

// ---- dates with status

TEST(DateWithStatusTest, OnlyValidDatesAreEarlierOrLater)
{
    const DateWithStatus early{1, DateWithStatus::kValid}, late{2, DateWithStatus::kValid};
    const DateWithStatus invalid{0, DateWithStatus::kInvalid};
    EXPECT_TRUE(early < late);
    EXPECT_FALSE(late < early);
    EXPECT_FALSE(invalid < late);
    EXPECT_FALSE(early < invalid);
    EXPECT_FALSE(early == DateWithStatus({1, DateWithStatus::kInvalid}));
}

TEST(DateWithStatusTest, ValuesBecomeDates)
{
    Variant text = Variant::FromText(OLESTR("not a date"));
    Variant number;
    number.vt = VT_R8;
    number.dblVal = 12.5;
    EXPECT_EQ(DateOf(Variant::FromDate(7)), (DateWithStatus{7, 0}));
    EXPECT_EQ(DateOf(number), (DateWithStatus{12.5, 0}));
    EXPECT_EQ(DateOf(text), (DateWithStatus{0, DateWithStatus::kInvalid}));
}

TEST(DateWithStatusTest, DayBitsAreTheLowSixteenOfTheWholeDays)
{
    const std::pair<double, unsigned> rows[] = {
        {0, 0},       {0.99, 0}, {1.5, 1},          {65535.7, 0xFFFF}, {65536, 0},  {65537.25, 1},
        {-1, 0xFFFF}, {-0.5, 0}, {131072 * 4.0, 0}, {1e300, 0},        {-1e300, 0},
    };
    for (const auto& [date, expected] : rows)
        EXPECT_EQ(LowDayBits(date), expected) << date;
}

} // namespace
