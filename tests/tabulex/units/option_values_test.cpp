// Option values with a form of their own, and the host's list of resolutions.
#include <stdexcept>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tools/tabulex/options/OptionValues.h"
#include "tools/tabulex/run/ProgressBar.h"

using namespace tabulex;

TEST(Dividers, BecomeAMask)
{
    struct Row
    {
        const char* pszText;
        LONG nMask;
    };
    const Row rows[] = {{":", 1},   {" ", 2},    {",", 4},     {";", 8},   {"|", 16},
                        {"\t", 32}, {"\\t", 32}, {",\\t", 36}, {", ,", 6}, {": ,;|\\t", 63}};
    for (const Row& row : rows) {
        SCOPED_TRACE(row.pszText);
        EXPECT_EQ(ReadDividers(row.pszText), row.nMask);
    }
    for (const char* pszText : {"", "x", ",x", "\\", "\\n"}) {
        SCOPED_TRACE(pszText);
        EXPECT_THROW(ReadDividers(pszText), std::invalid_argument);
    }
}

TEST(ColumnSettings, NameColumnTypeAndTemplate)
{
    struct Row
    {
        const char* pszText;
        ULONG nField;
        const char* pszType;
        const char* pszTemplate;
    };
    const Row rows[] = {
        {"1=Date", 0, "Date", ""},
        {"12=Up Volume", 11, "Up Volume", ""},
        {"2=Time:*h:*m", 1, "Time", "*h:*m"},
        {"3=none", 2, "none", ""},
        {"1=Date:", 0, "Date", ""},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.pszText);
        const ColumnSetting column = ReadColumn(row.pszText);
        EXPECT_EQ(column.nField, row.nField);
        EXPECT_EQ(column.sType, row.pszType);
        EXPECT_EQ(column.sTemplate, row.pszTemplate);
    }
    for (const char* pszText : {"", "Date", "0=Date", "x=Date", "1=", "1=:*h", "-1=Date"}) {
        SCOPED_TRACE(pszText);
        EXPECT_THROW(ReadColumn(pszText), std::invalid_argument);
    }
}

TEST(Portions, AreStartAndCount)
{
    const Portion portion = ReadPortion("10:25");
    EXPECT_EQ(portion.nStart, 10u);
    EXPECT_EQ(portion.nCount, 25u);
    for (const char* pszText : {"", "10", ":", "10:", ":25", "a:b", "1:2:3", "-1:2"}) {
        SCOPED_TRACE(pszText);
        EXPECT_THROW(ReadPortion(pszText), std::invalid_argument);
    }
}

TEST(Offers, AreIdsAndNames)
{
    const auto offers = ReadOffers("2=Minutes|5,4=Days");
    ASSERT_EQ(offers.size(), 2u);
    EXPECT_EQ(offers[0].nHostId, 2);
    EXPECT_EQ(offers[0].sName, "Minutes|5");
    EXPECT_EQ(offers[1].sName, "Days");
    EXPECT_TRUE(ReadOffers("").empty());
    for (const char* pszText : {"2", "=Days", "x=Days", "2=", "2=a,,4=b"}) {
        SCOPED_TRACE(pszText);
        EXPECT_THROW(ReadOffers(pszText), std::invalid_argument);
    }
}

// ---- resolutions by the component's ids

namespace {

std::vector<std::pair<LONG, std::string>> RowsOf(const std::vector<ResolutionOffer>& resolutions)
{
    ResolutionOffers offers("None");
    for (const auto& resolution : resolutions)
        offers.Add(resolution);
    std::vector<std::pair<LONG, std::string>> rows;
    for (const auto& row : offers.Rows())
        rows.emplace_back(row.nId, row.sName);
    return rows;
}

using NamedRows = std::vector<std::pair<LONG, std::string>>;

} // namespace

TEST(OfferedResolutions, TakeTheComponentsIdsInTheOrderOfTheOffer)
{
    const NamedRows expected = {{0, "None"},    {1, "Ticks"},   {2, "Tick Bars"}, {3, "Count Bars"},
                                {4, "Seconds"}, {5, "Minutes"}, {6, "Days"},      {7, "Weeks"}};
    EXPECT_EQ(RowsOf(DefaultResolutions()), expected);
    EXPECT_EQ(RowsOf({{5, "W"}, {2, "M"}}), (NamedRows{{0, "None"}, {7, "W"}, {5, "M"}}));
}

TEST(OfferedResolutions, TakeTheirPlaceByRuleWhereIdsRepeat)
{
    // A third offer for ticks renames the second.
    EXPECT_EQ(RowsOf({{1, "A"}, {1, "B"}, {1, "C"}}), (NamedRows{{0, "None"}, {1, "A"}, {2, "C"}}));
    // Another name for the same resolution replaces the first in its place.
    EXPECT_EQ(RowsOf({{2, "M"}, {4, "D"}, {2, "M5"}}),
              (NamedRows{{0, "None"}, {5, "M5"}, {6, "D"}}));
    // An id that names nothing renames the row for none.
    EXPECT_EQ(RowsOf({{77, "Odd"}}), (NamedRows{{0, "Odd"}}));
}

TEST(OfferedResolutions, RefuseANameThatIsTaken)
{
    ResolutionOffers offers("None");
    EXPECT_TRUE(offers.Add({2, "Minutes"}));
    EXPECT_FALSE(offers.Add({4, "Minutes"}));
    EXPECT_FALSE(offers.Add({4, "None"}));
    EXPECT_EQ(offers.Rows().size(), 2u);
}

TEST(OfferedResolutions, AreFoundWithAndWithoutTheirSize)
{
    ResolutionOffers offers("None");
    offers.Add({2, "Minutes|5"});
    for (const char* pszName : {"Minutes|5", "minutes", "MINUTES"}) {
        SCOPED_TRACE(pszName);
        ASSERT_TRUE(offers.FindName(pszName));
        EXPECT_EQ(offers.FindName(pszName)->nId, 5);
    }
    EXPECT_FALSE(offers.FindName("Minutes|6"));
    EXPECT_FALSE(offers.FindId(6));
}

// ---- progress

TEST(ProgressText, SaysHowFarAndHowLong)
{
    using ::testing::HasSubstr;
    EXPECT_EQ(ProgressBar::TextOf({25, 1'000'000, "0 min 2 sec", "0 min 6 sec"}, 2.0, 80),
              "[##......]  25%  1,000,000 records  500,000/s  0 min 2 sec, "
              "0 min 6 sec left");
    EXPECT_EQ(ProgressBar::TextOf({0, 0, "", ""}, 0.0, 80), "[........]   0%  0 records  0/s");
    EXPECT_EQ(ProgressBar::TextOf({100, 5000, "", ""}, 1.0, 80),
              "[########] 100%  5,000 records  5,000/s");
}

TEST(ProgressText, FillsAWideTerminalAndIsCutForANarrowOne)
{
    const Progress progress{50, 10, "0 min 2 sec", ""};
    EXPECT_EQ(ProgressBar::TextOf(progress, 1.0, 100).find(']'), 29u);
    EXPECT_EQ(ProgressBar::TextOf(progress, 1.0, 20), "[####....]  50%  10");
    EXPECT_EQ(ProgressBar::TextOf({0, 0, "\xE5\x88\x86\xE5\x88\x86", ""}, 0.0, 43),
              "[........]   0%  0 records  0/s  \xE5\x88\x86\xE5\x88\x86");
    EXPECT_EQ(ProgressBar::TextOf({0, 0, "\xE5\x88\x86\xE5\x88\x86", ""}, 0.0, 37),
              "[........]   0%  0 records  0/s  \xE5\x88\x86");
}
