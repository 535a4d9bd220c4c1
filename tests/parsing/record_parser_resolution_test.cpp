// The resolution of a record parser: chosen by hand, offered, judged.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/parsing/Layout.h"
#include "tests/parsing/QuoteLines.h"
#include "tests/support/ReportLog.h"

using namespace Hesperon::specifics;
using namespace IQRL_TabulexConverter;

namespace {

using Lines = std::vector<string_t>;

// ---- chosen by hand ----------------------------------------------------------------------

TEST(ChosenResolution, BuildsTheColumnsAnew)
{
    struct Row
    {
        LONG nResolution;
        const char* szColumns;
        LONG nSize;
    };
    const Row kRows[] = {
        {ResolutionMinutes, "Date yyyymmdd, Time *h:mm, Open, High, Low, Close", 5},
        {ResolutionTick, "Date yyyymmdd, Time *h:mm, Price, Volume, -, -", 1},
        {ResolutionDays, "Date yyyymmdd, Time *h:mm, Open, High, Low, Close", 1},
        {ResolutionSeconds, "Date yyyymmdd, Time *h:mm, Open, High, Low, Close", 0},
        {ResolutionWeeks, "Date yyyymmdd, Time *h:mm, Open, High, Low, Close", 1},
        {ResolutionNone, "Date yyyymmdd, Time *h:mm, Open, High, Low, Close", 0},
    };
    ParsedFile file(MinuteLines(Evenly(5, 12), kBar));
    ASSERT_EQ(S_OK, file.Load());
    for (const Row& row : kRows) {
        SCOPED_TRACE(row.nResolution);
        EXPECT_EQ(S_OK, file->put_ResolutionSize(77));
        EXPECT_EQ(S_OK, file->put_Resolution(row.nResolution));
        EXPECT_EQ(row.nResolution, file.Resolution());
        EXPECT_EQ(row.szColumns, file.Columns());
        EXPECT_EQ(row.nSize, file.Size());
    }
}

TEST(ChosenResolution, ThatStandsChangesNothing)
{
    ParsedFile file(MinuteLines(Evenly(5, 12), kBar));
    ASSERT_EQ(S_OK, file.Load());
    ASSERT_EQ(S_OK, file->put_Resolution(ResolutionMinutes));
    ASSERT_EQ(S_OK, file->put_ResolutionSize(15));
    EXPECT_EQ(S_OK, file->SetFieldType(2, -1));
    file.File().m_positions.clear();
    EXPECT_EQ(S_OK, file->put_Resolution(ResolutionMinutes));
    EXPECT_EQ(15, file.Size());
    EXPECT_EQ("Date yyyymmdd, Time *h:mm, -, High, Low, Close", file.Columns());
    EXPECT_TRUE(file.File().m_positions.empty());
}

TEST(ChosenResolution, KeepsDateAndTimeAsTheyAre)
{
    ParsedFile file(Lines(12, OLESTR("01/02/2003,1.5")));
    ASSERT_EQ(S_OK, file.Load());
    Bstr sTemplate(OLESTR("*d/*m/*y"));
    EXPECT_EQ(S_OK, file->SetFieldTemplate(sTemplate.get(), 0));
    EXPECT_EQ(S_OK, file->put_Resolution(ResolutionTick));
    EXPECT_EQ("Date *d/*m/*y, Price", file.Columns());
}

TEST(ChosenResolution, GivesASoftNoWhereTheFileShowsNoColumns)
{
    ParsedFile file({OLESTR("\x01")});
    EXPECT_EQ(S_FALSE, file->put_Resolution(ResolutionDays));
    EXPECT_EQ(ResolutionDays, file.Resolution());
    EXPECT_EQ(S_OK, file->put_DataParser(nullptr));
    EXPECT_EQ(S_FALSE, file->put_Resolution(ResolutionTick));
}

TEST(ChosenResolution, EmptiesTheColumnsWhereTheFirstRecordCanNotBeRead)
{
    ParsedFile file(MinuteLines(Evenly(5, 12), kBar));
    ASSERT_EQ(S_OK, file.Load());
    file.File().m_badLines = {0};
    EXPECT_EQ(S_FALSE, file->put_Resolution(ResolutionMinutes));
    EXPECT_EQ("", file.Columns());
    EXPECT_EQ(ResolutionMinutes, file.Resolution());
    EXPECT_EQ(0, file.Size());
}

TEST(ChosenResolution, IsOneOfEight)
{
    ParsedFile file(MinuteLines(Evenly(5, 12), kBar));
    EXPECT_EQ(E_INVALIDARG, file->put_Resolution(-1));
    EXPECT_EQ(E_INVALIDARG, file->put_Resolution(8));
    EXPECT_EQ(ResolutionNone, file.Resolution());
}

TEST(ChosenResolution, TakesTheHeaderFromTheFirstPosition)
{
    // Header lines are no longer looked for, and the first position is after the header.
    ParsedFile file({OLESTR("Date,Close"), OLESTR("01/02/2003,1.5"), OLESTR("01/03/2003,1.5")});
    ASSERT_EQ(S_OK, file.Load());
    EXPECT_EQ("Date *m/*d/*y, Close", file.Columns());
    EXPECT_EQ(S_OK, file->put_Resolution(ResolutionDays));
    EXPECT_EQ("Date *m/*d/*y, Open", file.Columns());
}

TEST(ChosenResolution, LeavesTheHeaderLinesWhereTheyWereFound)
{
    ParsedFile file({OLESTR("Foo,Bar"), OLESTR("Date,Close"), OLESTR("01/02/2003,1.5")});
    ASSERT_EQ(S_OK, file.Load());
    ASSERT_EQ(1u, file.File().m_nHeaderOffset);
    EXPECT_EQ(S_OK, file->put_Resolution(ResolutionDays));
    EXPECT_EQ(1u, file.File().m_nHeaderOffset);
}

TEST(ResolutionSize, IsReadByTheResolution)
{
    struct Row
    {
        LONG nResolution;
        LONG nSize; // of a stored 42
    };
    const Row kRows[] = {{ResolutionTick, 1},       {ResolutionTickBars, 42},
                         {ResolutionCountBars, 42}, {ResolutionSeconds, 42},
                         {ResolutionMinutes, 42},   {ResolutionDays, 1},
                         {ResolutionWeeks, 1},      {ResolutionNone, 0}};
    ParsedFile file(DayLines(Evenly(1, 3), kBar));
    ASSERT_EQ(S_OK, file.Load());
    for (const Row& row : kRows) {
        SCOPED_TRACE(row.nResolution);
        EXPECT_EQ(S_OK, file->put_Resolution(row.nResolution));
        EXPECT_EQ(S_OK, file->put_ResolutionSize(42));
        EXPECT_EQ(row.nSize, file.Size());
    }
    EXPECT_EQ(E_POINTER, file->get_ResolutionSize(nullptr));
    EXPECT_EQ(E_POINTER, file->get_Resolution(nullptr));
}

TEST(ResolutionSize, IsNotRecalculated)
{
    ParsedFile file(MinuteLines(Evenly(5, 12), kBar));
    ASSERT_EQ(S_OK, file.Load());
    ASSERT_EQ(S_OK, file->put_Resolution(ResolutionMinutes));
    ASSERT_EQ(S_OK, file->put_ResolutionSize(42));
    file.File().m_positions.clear();
    EXPECT_EQ(S_FALSE, file->RecalcResolutionSize());
    EXPECT_EQ(42, file.Size());
    EXPECT_TRUE(file.File().m_positions.empty());
}

TEST(Flags, AreKeptAsBooleans)
{
    ParsedFile file(MinuteLines(Evenly(5, 12), kBar));
    VARIANT_BOOL b = VARIANT_TRUE;
    EXPECT_EQ(S_OK, file->get_SmartResolutionEnabled(&b));
    EXPECT_EQ(VARIANT_FALSE, b);
    EXPECT_EQ(S_OK, file->get_UseBarsEndTime(&b));
    EXPECT_EQ(VARIANT_FALSE, b);
    EXPECT_EQ(S_OK, file->put_SmartResolutionEnabled(1));
    EXPECT_EQ(S_OK, file->get_SmartResolutionEnabled(&b));
    EXPECT_EQ(VARIANT_TRUE, b);
    EXPECT_EQ(E_POINTER, file->get_SmartResolutionEnabled(nullptr));
    EXPECT_EQ(E_POINTER, file->get_UseBarsEndTime(nullptr));
}

TEST(Flags, OfTheBarsEndRefreshDatesOfMinutes)
{
    ParsedFile file(MinuteLines(Evenly(5, 12), kBar));
    ASSERT_EQ(S_OK, file.Load());
    EXPECT_EQ(S_OK, file->put_UseBarsEndTime(VARIANT_TRUE)); // no bars of minutes
    EXPECT_EQ(S_OK, file->put_UseBarsEndTime(VARIANT_FALSE));
    EXPECT_EQ("", file.File().m_refreshes);
    ASSERT_EQ(S_OK, file->put_Resolution(ResolutionMinutes));
    EXPECT_EQ(S_OK, file->put_UseBarsEndTime(VARIANT_FALSE)); // no change
    EXPECT_EQ("", file.File().m_refreshes);
    EXPECT_EQ(S_OK, file->put_UseBarsEndTime(VARIANT_TRUE));
    EXPECT_EQ(S_OK, file->put_UseBarsEndTime(VARIANT_TRUE));
    EXPECT_EQ(S_OK, file->put_UseBarsEndTime(VARIANT_FALSE));
    EXPECT_EQ("ff", file.File().m_refreshes);
}

// ---- judged --------------------------------------------------------------------------------

TEST(ResolutionsColumns, AreRequiredAndUnique)
{
    struct Row
    {
        LONG nResolution;
        std::vector<LONG> types; // of the columns after the date
        HRESULT hrValid;
        const char* szLacked;
        const char* szDuplicated;
    };
    constexpr LONG kTime = TypeTime, kOpen = TypeOpen, kHigh = TypeHigh, kLow = TypeLow,
                   kClose = TypeClose, kPrice = TypePrice, kNone = -1;
    const Row kRows[] = {
        {ResolutionNone, {kOpen, kHigh, kLow, kClose}, S_FALSE, "", ""},
        {ResolutionSeconds, {kNone, kNone, kNone, kNone}, S_OK, "", ""},
        {ResolutionSeconds, {kOpen, kNone, kOpen, kNone}, S_FALSE, "", "Open"},
        {ResolutionDays, {kOpen, kHigh, kLow, kClose}, S_OK, "", ""},
        {ResolutionDays, {kOpen, kHigh, kNone, kClose}, S_FALSE, "Low", ""},
        {ResolutionDays, {kNone, kNone, kNone, kNone}, S_FALSE, "Open, High, Low, Close", ""},
        {ResolutionDays, {kOpen, kHigh, kHigh, kClose}, S_FALSE, "Low", "High"},
        {ResolutionDays, {kHigh, kOpen, kOpen, kHigh}, S_FALSE, "Low, Close", "High"},
        {ResolutionWeeks, {kOpen, kHigh, kLow, kClose}, S_OK, "", ""},
        {ResolutionMinutes, {kOpen, kHigh, kLow, kClose}, S_FALSE, "Time", ""},
        {ResolutionTickBars, {kOpen, kHigh, kLow, kClose}, S_FALSE, "Time", ""},
        {ResolutionCountBars, {kOpen, kHigh, kLow, kTime}, S_FALSE, "Close", ""},
        {ResolutionTick, {kOpen, kHigh, kLow, kClose}, S_FALSE, "Time", ""}, // Close becomes Price
        {ResolutionTick, {kTime, kPrice, kNone, kNone}, S_OK, "", ""},
    };
    for (const Row& row : kRows) {
        SCOPED_TRACE(testing::PrintToString(row.nResolution) + " with " +
                     testing::PrintToString(row.types));
        ParsedFile file(DayLines(Evenly(1, 3), kBar));
        ASSERT_EQ(S_OK, file.Load());
        ASSERT_EQ(S_OK, file->put_Resolution(row.nResolution));
        for (ULONG i = 0; i < row.types.size(); ++i)
            ASSERT_EQ(S_OK, file->SetFieldType(i + 1, row.types[i]));
        EXPECT_EQ(row.hrValid, file->IsValidResolution());
        Variant lacked;
        EXPECT_EQ(S_OK, file->get_LackedFields(&lacked));
        EXPECT_EQ(row.szLacked, ShownList(lacked));
        Bstr duplicated;
        EXPECT_EQ(S_OK, file->get_DuplicatedField(duplicated.put()));
        EXPECT_EQ(row.szDuplicated, Shown(duplicated.view()));
    }
}

// ---- offered by the host -------------------------------------------------------------------

Variant Ids(std::initializer_list<LONG> ids, UINT nDims = 1)
{
    SAFEARRAYBOUND bounds[2] = {{static_cast<ULONG>(ids.size()), 0}, {1, 0}};
    SAFEARRAY* array = SafeArrayCreate(VT_I4, nDims, bounds);
    LONG indices[2] = {0, 0};
    for (LONG nId : ids) {
        EXPECT_EQ(S_OK, SafeArrayPutElement(array, indices, &nId));
        ++indices[0];
    }
    return Variant::FromArray(array, VT_I4);
}

Variant Names(std::initializer_list<const OLECHAR*> names)
{
    SAFEARRAY* array = SafeArrayCreateVector(VT_BSTR, 0, static_cast<ULONG>(names.size()));
    LONG i = 0;
    for (const OLECHAR* szName : names) {
        if (szName) {
            EXPECT_EQ(S_OK, SafeArrayPutElement(array, &i, Bstr(szName).get()));
        }
        ++i;
    }
    return Variant::FromArray(array, VT_BSTR);
}

TEST(OfferedResolutions, AreTwoListsOfOneDimension)
{
    const ParsedFile file({OLESTR("1.5")});
    EXPECT_EQ(S_OK, file->SetResolutionTemplates(Ids({5, 6}), Names({OLESTR("a"), OLESTR("b")})));
    EXPECT_EQ(S_OK, file->SetResolutionTemplates(Ids({}), Names({})));
    struct Row
    {
        const char* szWhat;
        Variant ids;
        Variant names;
    };
    const Row kRows[] = {
        {"no lists", Variant(), Variant()},
        {"no ids", Variant::FromI4(5), Names({OLESTR("a")})},
        {"no names", Ids({5}), Variant::FromText(OLESTR("a"))},
        {"lists exchanged", Names({OLESTR("a")}), Ids({5})},
        {"two dimensions", Ids({5}, 2), Names({OLESTR("a")})},
        {"a null name", Ids({5}), Names({nullptr})},
    };
    for (const Row& row : kRows) {
        SCOPED_TRACE(row.szWhat);
        ReportLog reports;
        EXPECT_EQ(E_INVALIDARG, file->SetResolutionTemplates(row.ids, row.names));
        EXPECT_THAT(reports.Texts(), testing::ElementsAre("(((HRESULT)(hr)) >= 0)"));
    }
}

TEST(OfferedResolutions, AreReplaced)
{
    ParsedFile file(DayLines(Evenly(7, 12), kBar));
    ASSERT_EQ(S_OK, file.Offer(AllResolutions()));
    ASSERT_EQ(S_OK, file.Offer({{ResolutionDays, OLESTR("Days")}}));
    EXPECT_EQ(S_OK, file.Load());
    EXPECT_EQ(ResolutionDays, file.Resolution());
}

} // namespace
