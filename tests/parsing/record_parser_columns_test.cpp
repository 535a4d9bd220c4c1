// The columns of a record parser, their types, templates and dividers.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/parsing/Layout.h"
#include "tests/support/ReportLog.h"

using namespace Hesperon::specifics;
using namespace IQRL_TabulexConverter;

namespace {

constexpr ULONG kNoIndex = 0xFFFFFFFF;

class Columns : public testing::Test
{
protected:
    // Date *m/*d/*y, Time *h:mm, Open, High
    Columns() : m_file({OLESTR("01/02/2003,09:30,1.5,2.5"), OLESTR("01/03/2003,09:30,1.5,2.5")})
    {
        EXPECT_EQ(S_OK, m_file.Load());
        EXPECT_EQ("Date *m/*d/*y, Time *h:mm, Open, High", m_file.Columns());
        m_file.File().m_positions.clear();
    }

    HRESULT SetName(string_view_t sName, ULONG nField)
    {
        Bstr owner;
        return m_file->SetFieldName(nField, Text(owner, sName));
    }
    const std::string& Refreshes() const { return m_file.File().m_refreshes; }

    ParsedFile m_file;
};

using Types = Columns;
using FileDividers = Columns;

// ---- reading ---------------------------------------------------------------------------

TEST_F(Columns, AreFoundByTheirType)
{
    struct Row
    {
        LONG nType;
        HRESULT hr;
        ULONG nIndex;
    };
    const Row kRows[] = {
        {TypeDate, S_OK, 0},
        {TypeTime, S_OK, 1},
        {TypeHigh, S_OK, 3},
        {TypeSymbol, S_FALSE, kNoIndex},
        {TypeClose, S_FALSE, kNoIndex},
        {99, S_FALSE, kNoIndex},
        {-1, S_FALSE, kNoIndex},
    };
    for (const Row& row : kRows) {
        SCOPED_TRACE(row.nType);
        ULONG nIndex = 77;
        EXPECT_EQ(row.hr, m_file->GetFieldIndex(row.nType, &nIndex));
        EXPECT_EQ(row.nIndex, nIndex);
    }
    EXPECT_EQ(S_OK, m_file->SetFieldType(3, TypeOpen));
    ULONG nIndex = 77;
    EXPECT_EQ(S_OK, m_file->GetFieldIndex(TypeOpen, &nIndex));
    EXPECT_EQ(2u, nIndex);
    EXPECT_EQ(E_POINTER, m_file->GetFieldIndex(TypeOpen, nullptr));
}

TEST_F(Columns, HaveNames)
{
    EXPECT_EQ(S_OK, m_file->SetFieldType(3, -1));
    struct Row
    {
        ULONG nField;
        string_view_t sName;
        string_view_t sLocalized;
    };
    const Row kRows[] = {
        {0, OLESTR("Date"), OLESTR("日期")},
        {2, OLESTR("Open"), OLESTR("开盘价")},
        {3, OLESTR("未定义"), OLESTR("未定义")},
    };
    for (const Row& row : kRows) {
        SCOPED_TRACE(row.nField);
        Bstr name, localized;
        EXPECT_EQ(S_OK, m_file->GetFieldName(name.put(), row.nField));
        EXPECT_EQ(S_OK, m_file->GetFieldNameLocalized(localized.put(), row.nField));
        EXPECT_EQ(Shown(row.sName), Shown(name.view()));
        EXPECT_EQ(Shown(row.sLocalized), Shown(localized.view()));
    }
    Bstr name;
    LONG nType = 0;
    EXPECT_EQ(E_FAIL, m_file->GetFieldName(name.put(), 4));
    EXPECT_EQ(E_FAIL, m_file->GetFieldNameLocalized(name.put(), 4));
    EXPECT_EQ(E_FAIL, m_file->GetFieldTemplate(name.put(), 4));
    EXPECT_EQ(E_FAIL, m_file->GetFieldType(4, &nType));
}

TEST_F(Columns, WriteNothingThroughNullPointers)
{
    EXPECT_EQ(E_POINTER, m_file->GetFieldName(nullptr, 0));
    EXPECT_EQ(E_POINTER, m_file->GetFieldNameLocalized(nullptr, 0));
    EXPECT_EQ(E_POINTER, m_file->GetFieldTemplate(nullptr, 0));
    EXPECT_EQ(E_POINTER, m_file->GetFieldType(0, nullptr));
    EXPECT_EQ(E_POINTER, m_file->get_FieldCount(nullptr));
    EXPECT_EQ(E_POINTER, m_file->get_FieldDividers(nullptr));
    EXPECT_EQ(E_POINTER, m_file->GetTypeNames(nullptr));
    EXPECT_EQ(E_POINTER, m_file->GetTypeNamesLocalized(nullptr));
}

// ---- types -----------------------------------------------------------------------------

TEST_F(Types, AreSetByNumber)
{
    struct Row
    {
        ULONG nField;
        LONG nType;
        HRESULT hr;
        const char* szColumns;
    };
    const Row kRows[] = {
        {3, TypeVolume, S_OK, "Date *m/*d/*y, Time *h:mm, Open, Volume"},
        {3, -1, S_OK, "Date *m/*d/*y, Time *h:mm, Open, -"},
        {3, 17, S_OK, "Date *m/*d/*y, Time *h:mm, Open, Open Interest"},
        {3, 18, S_OK, "Date *m/*d/*y, Time *h:mm, Open, -"},
        {3, 99, S_OK, "Date *m/*d/*y, Time *h:mm, Open, -"},
        {3, TypeSymbol, S_OK, "Date *m/*d/*y, Time *h:mm, Open, Symbol"},
        {3, TypeDate, S_OK, "Date *m/*d/*y, Time *h:mm, Open, Date "},
        {3, -2, E_POINTER, "Date *m/*d/*y, Time *h:mm, Open, Date "},
        {4, TypeOpen, E_INVALIDARG, "Date *m/*d/*y, Time *h:mm, Open, Date "},
        {4, -2, E_POINTER, "Date *m/*d/*y, Time *h:mm, Open, Date "},
    };
    for (const Row& row : kRows) {
        SCOPED_TRACE(testing::PrintToString(row.nField) + " to " +
                     testing::PrintToString(row.nType));
        EXPECT_EQ(row.hr, m_file->SetFieldType(row.nField, row.nType));
        EXPECT_EQ(row.szColumns, m_file.Columns());
    }
    EXPECT_EQ("", Refreshes());
}

TEST(CloseAndPrice, AreOneColumnSeenFromTwoResolutions)
{
    struct Row
    {
        LONG nResolution;
        LONG nType;
        LONG nResult;
    };
    const Row kRows[] = {
        {ResolutionNone, TypeClose, TypeClose},    {ResolutionNone, TypePrice, TypeClose},
        {ResolutionTick, TypeClose, TypePrice},    {ResolutionTick, TypePrice, TypePrice},
        {ResolutionMinutes, TypePrice, TypeClose}, {ResolutionDays, TypeClose, TypeClose},
    };
    for (const Row& row : kRows) {
        SCOPED_TRACE(testing::PrintToString(row.nResolution) + ", " +
                     testing::PrintToString(row.nType));
        ParsedFile file({OLESTR("01/02/2003,1.5")});
        ASSERT_EQ(S_OK, file.Load());
        ASSERT_EQ(S_OK, file->put_Resolution(row.nResolution));
        EXPECT_EQ(S_OK, file->SetFieldType(1, row.nType));
        LONG nType = -7;
        EXPECT_EQ(S_OK, file->GetFieldType(1, &nType));
        EXPECT_EQ(row.nResult, nType);
    }
}

TEST_F(Types, SetForDateAndTimeSurviveTheNextDetection)
{
    EXPECT_EQ(S_OK, m_file->SetFieldType(0, TypeTime));
    EXPECT_EQ(S_OK, m_file->SetFieldType(1, TypeDate));
    EXPECT_EQ(S_OK, m_file->SetFieldType(2, TypeClose));
    Bstr owner;
    EXPECT_EQ(S_OK, m_file->FindResolution(Text(owner, m_file.File().m_lines[0])));
    // Also the emptied templates; the price is found again.
    EXPECT_EQ("Time , Date , Open, High", m_file.Columns());
    EXPECT_EQ(S_OK, m_file->SetFieldType(0, TypeVolume)); // takes the note back
    EXPECT_EQ(S_OK, m_file->SetFieldType(1, -1));
    EXPECT_EQ(S_OK, m_file->FindResolution(Text(owner, m_file.File().m_lines[0])));
    EXPECT_EQ("Date *m/*d/*y, Time *h:mm, Open, High", m_file.Columns());
}

TEST_F(Types, SetByNameRefreshTheDates)
{
    EXPECT_EQ(S_OK, SetName(OLESTR("Volume"), 2));
    EXPECT_EQ("Date *m/*d/*y, Time *h:mm, Volume, High", m_file.Columns());
    EXPECT_EQ("f", Refreshes());
    EXPECT_EQ(S_OK, SetName(OLESTR("volume"), 2)); // the name is exact
    EXPECT_EQ("Date *m/*d/*y, Time *h:mm, -, High", m_file.Columns());
    EXPECT_EQ(S_OK, SetName(OLESTR("Open"), 2));
    EXPECT_EQ(S_OK, m_file->SetFieldName(3, nullptr));
    EXPECT_EQ("Date *m/*d/*y, Time *h:mm, Open, -", m_file.Columns());
    EXPECT_EQ("ffff", Refreshes());
    EXPECT_EQ("1.5", m_file.Value(2)); // parsed by the refresh
}

TEST_F(Types, SetByNameForAColumnThatIsNotThereRefreshNothing)
{
    EXPECT_EQ(E_INVALIDARG, SetName(OLESTR("Open"), 4));
    EXPECT_EQ(E_INVALIDARG, SetName(OLESTR("no name"), 4));
    EXPECT_EQ("", Refreshes());
    EXPECT_EQ("Date *m/*d/*y, Time *h:mm, Open, High", m_file.Columns());
}

TEST(TypeNames, AreThoseThatTheResolutionAdmits)
{
    struct Row
    {
        LONG nResolution;
        string_view_t sNames;
        string_view_t sLocalized;
    };
    const Row kRows[] = {
        {ResolutionNone,
         OLESTR("未定义, Symbol, Date, Time, Open, High, Low, Close, Price, Volume, Up Volume, "
                "Down Volume, Unchanged Volume, Total Volume, Up Ticks, Down Ticks, Unchanged "
                "Ticks, Total Ticks, Open Interest"),
         OLESTR("未定义, 商品, 日期, 时间, 开盘价, 最高价, 最低价, 收盘价, 价格, 成交量, 上涨量, "
                "下跌量, 平盘量, 总成交量, 上涨笔数, 下跌笔数, 平盘笔数, 总笔数, 未平仓")},
        {ResolutionTick, OLESTR("未定义, Symbol, Date, Time, Price, Volume"),
         OLESTR("未定义, 商品, 日期, 时间, 价格, 成交量")},
    };
    for (const Row& row : kRows) {
        SCOPED_TRACE(row.nResolution);
        ParsedFile file({OLESTR("01/02/2003,1.5")});
        ASSERT_EQ(S_OK, file->put_Resolution(row.nResolution));
        Variant names, localized;
        EXPECT_EQ(S_OK, file->GetTypeNames(&names));
        EXPECT_EQ(S_OK, file->GetTypeNamesLocalized(&localized));
        EXPECT_EQ(Shown(row.sNames), ShownList(names));
        EXPECT_EQ(Shown(row.sLocalized), ShownList(localized));
    }
}

// ---- dividers ----------------------------------------------------------------------------

TEST_F(FileDividers, AreAMask)
{
    LONG nMask = 0;
    EXPECT_EQ(S_OK, m_file->get_FieldDividers(&nMask));
    EXPECT_EQ(4 + 32, nMask);
    EXPECT_EQ(S_OK, m_file->put_FieldDividers(2 + 4));
    EXPECT_EQ(S_OK, m_file->get_FieldDividers(&nMask));
    EXPECT_EQ(2 + 4, nMask);
}

TEST_F(FileDividers, SetByHandMakeTheColumnsAnew)
{
    EXPECT_EQ(S_OK, m_file->put_FieldDividers(1)); // the colon alone
    ULONG nCount = 0;
    EXPECT_EQ(S_OK, m_file->get_FieldCount(&nCount));
    EXPECT_EQ(2u, nCount);
    EXPECT_EQ("f", Refreshes());
    EXPECT_EQ(S_OK, m_file->put_FieldDividers(4));
    EXPECT_EQ("Date *m/*d/*y, Time *h:mm, Open, High", m_file.Columns());
    EXPECT_EQ("2003-01-02", m_file.Value(0));
}

TEST_F(FileDividers, AreUnexpectedWithoutAFile)
{
    LONG nMask = 77;
    m_file.File().m_sName.clear();
    EXPECT_EQ(E_UNEXPECTED, m_file->get_FieldDividers(&nMask));
    EXPECT_EQ(E_UNEXPECTED, m_file->put_FieldDividers(4));
    EXPECT_EQ(S_OK, m_file->put_DataParser(nullptr));
    EXPECT_EQ(E_UNEXPECTED, m_file->get_FieldDividers(&nMask));
    EXPECT_EQ(E_UNEXPECTED, m_file->put_FieldDividers(4));
    EXPECT_EQ(77, nMask);
    EXPECT_EQ("Date *m/*d/*y, Time *h:mm, Open, High", m_file.Columns());
}

TEST_F(FileDividers, ThatWereNeverFoundAreReported)
{
    EXPECT_EQ(S_OK, m_file->Reset());
    ReportLog reports;
    LONG nMask = 0;
    EXPECT_EQ(E_UNEXPECTED, m_file->get_FieldDividers(&nMask));
    EXPECT_THAT(reports.Texts(), testing::ElementsAre("m_bDividerFound"));
    EXPECT_EQ(S_OK, m_file->put_FieldDividers(4)); // settles them
    EXPECT_EQ(S_OK, m_file->get_FieldDividers(&nMask));
    EXPECT_EQ(4, nMask);
}

} // namespace
