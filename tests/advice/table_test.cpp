#include <string>

#include <fmt/format.h>
#include <gtest/gtest.h>

#include "advice/Roles.h"
#include "advice/Table.h"

namespace tabulex::advice {

namespace {

// "Open@1 High@2": the roles in the order of the file.
std::string RolesText(const Roles& roles)
{
    constexpr std::pair<Meaning, const char*> kNames[] = {{Meaning::Symbol, "symbol"},
                                                          {Meaning::Open, "open"},
                                                          {Meaning::High, "high"},
                                                          {Meaning::Low, "low"},
                                                          {Meaning::Close, "close"},
                                                          {Meaning::Price, "price"},
                                                          {Meaning::Volume, "volume"},
                                                          {Meaning::Trades, "trades"},
                                                          {Meaning::OpenInterest, "interest"},
                                                          {Meaning::TickVolume, "ticks"}};
    std::string text;
    for (const auto& [meaning, pszName] : kNames)
        if (const auto nColumn = roles.ColumnOf(meaning))
            text += fmt::format("{}{}@{}", text.empty() ? "" : " ", pszName, *nColumn);
    return text;
}

} // namespace

struct TableCase
{
    const char* pszText;
    char cDivider;
    std::size_t nColumns;
    std::size_t nRows;
    const char* pszRoles;
};

TEST(Table, IsFoundInManyDialects)
{
    const TableCase cases[] = {
        {"Date,Open,High,Low,Close,Volume\n2020-01-02,1,2,0.5,1.5,100\n2020-01-03,1,2,0.5,1.5,90\n",
         ',', 6, 2, "open@1 high@2 low@3 close@4 volume@5"},
        {"Datum;Eröffnung;Hoch;Tief;Schlusskurs\n02.01.2020;1,5;2;1,25;1,75\n"
         "03.01.2020;1,5;2;1,25;1,75\n",
         ';', 5, 2, "open@1 high@2 low@3 close@4"},
        {"20110301 090100;133.9;134.01;133.9;133.98;3778\n"
         "20110301 090300;134;134;134;134;400\n20110301 090600;133.96;134;133.9;133.96;127\n",
         ';', 6, 3, "open@1 high@2 low@3 close@4 volume@5"},
        {"19500103 16.66\n19500104 16.85\n19500105 16.93\n", ' ', 2, 3, "price@1"},
        {"A note,with a divider\ndate,symbol,open,high,low,close,Volume BTC,Volume USD\n"
         "2019-10-17 09-AM,BTCUSD,8051,8056.83,8021.23,8035.88,61.25,492394.56\n"
         "2019-10-17 08-AM,BTCUSD,7975.89,8070,7975.89,8051,370.45,2971610.86\n"
         "2019-10-17 07-AM,BTCUSD,7975.89,8070,7975.89,8051,37.5,301610.86\n",
         ',', 8, 3, "symbol@1 open@2 high@3 low@4 close@5 volume@6"},
        {"\"Date\",\"Price\",\"Open\",\"High\",\"Low\",\"Vol.\"\n"
         "\"Nov 02, 2017\",\"54.27\",\"54.26\",\"54.39\",\"54.22\",\"497.30K\"\n"
         "\"Nov 01, 2017\",\"54.24\",\"54.59\",\"55.22\",\"53.89\",\"5.30K\"\n",
         ',', 6, 2, "open@2 high@3 low@4 close@1 volume@5"},
        {"1637971200000|2853|2854|2851|2854|36304.2|1637971259999|103547608.8\n"
         "1637971260000|2854|2860|2854|2859|89196.6|1637971319999|254751330.0\n"
         "1637971320000|2859|2860|2857|2859|26547.3|1637971379999|75867802.4\n",
         '|', 8, 3, "open@1 high@2 low@3 close@4 volume@5"},
        {"Date,Open,High,Low,Close,Volume,OpenInterest\n"
         "2006-01-02,09:01:00,3602.00,3603.00,3597.00,3599.00,5699,0\n"
         "2006-01-02,09:02:00,3600.00,3601.00,3598.00,3599.00,894,0\n",
         ',', 8, 2, "open@2 high@3 low@4 close@5 volume@6 interest@7"},
        {"TIMESTAMP,BID,ASK\n02/03/2010 16:53:50,0.5346,0.5347\n02/03/2010 "
         "16:53:51,0.5343,0.5347\n",
         ',', 3, 2, "price@1"},
        {",BTC:open,BTC:high,BTC:low,BTC:close,ETH:open,ETH:high,ETH:low,ETH:close\n"
         "2014-12-01,300.0,370.0,300.0,370.0,,,,\n2014-12-02,370.0,378.0,370.0,378.0,1,2,1,2\n",
         ',', 9, 2, "open@1 high@2 low@3 close@4"},
    };
    for (const TableCase& one : cases) {
        const FileSample sample{std::string(one.pszText)};
        const Table table = FindTable(sample);
        EXPECT_EQ(table.dialect.cDivider, one.cDivider) << one.pszText;
        EXPECT_EQ(table.columns.size(), one.nColumns) << one.pszText;
        EXPECT_EQ(table.rows.size(), one.nRows) << one.pszText;
        const MomentColumns moments = FindMoments(table);
        EXPECT_FALSE(moments.choices.empty()) << one.pszText;
        EXPECT_EQ(RolesText(FindRoles(table, moments)), one.pszRoles) << one.pszText;
    }
}

TEST(Table, HasNoneInOtherTexts)
{
    for (const char* pszText : {"", "one word\n", "Lorem ipsum\ndolor sit\namet\n", "\n\n\n"}) {
        const FileSample sample{std::string(pszText)};
        const Table table = FindTable(sample);
        EXPECT_TRUE(table.IsEmpty() || FindMoments(table).choices.empty()) << pszText;
    }
}

TEST(Table, StopsAtTooManyColumns)
{
    std::string line;
    for (int i = 0; i < 2000; ++i)
        line += "1,";
    const FileSample sample{line + '\n' + line + '\n'};
    EXPECT_GT(FindTable(sample).columns.size(), kMostColumns);
}

struct OrderCase
{
    const char* pszText;
    std::size_t nChoices;
    intake::DateForm date; // of the first
};

TEST(DayOrder, IsDecidedByWhatTheDatesGive)
{
    using intake::DateForm;
    const OrderCase cases[] = {
        {"Date,Close\n02/03/2010,1\n13/03/2010,1\n", 1, DateForm::DayMonthYear},
        {"Date,Close\n02/03/2010,1\n03/13/2010,1\n", 1, DateForm::MonthDayYear},
        {"Date,Close\n02/03/2010,1\n03/03/2010,1\n", 2, DateForm::DayMonthYear},
        {"Date,Close\n02.03.2010,1\n03.03.2010,1\n", 1, DateForm::DayMonthYear},
        {"Fecha,Cierre\n02/03/2010,1\n03/03/2010,1\n", 1, DateForm::DayMonthYear},
        {"Date (MM/DD/YYYY),Close\n02/03/2010,1\n03/03/2010,1\n", 1, DateForm::MonthDayYear},
        {"Date;Close\n02/03/2010;1,5\n03/03/2010;1,25\n", 1, DateForm::DayMonthYear},
        // A month with weekends between: as months some would lack.
        {"Date,Close\n01/02/2010,1\n02/02/2010,1\n03/02/2010,1\n04/02/2010,1\n05/02/2010,1\n"
         "08/02/2010,1\n09/02/2010,1\n10/02/2010,1\n",
         1, DateForm::DayMonthYear},
        // Every day of a week may as well be the first of seven months.
        {"Date,Close\n01/02/2010,1\n01/03/2010,1\n01/04/2010,1\n01/05/2010,1\n01/06/2010,1\n"
         "01/07/2010,1\n",
         2, DateForm::DayMonthYear},
        {"Date,Close\n01/02/2010 10:00,1\n01/02/2010 11:00,1\n02/02/2010 10:00,1\n"
         "03/02/2010 10:00,1\n04/02/2010 10:00,1\n05/02/2010 10:00,1\n06/02/2010 10:00,1\n",
         1, DateForm::DayMonthYear},
    };
    for (const OrderCase& one : cases) {
        const FileSample sample{std::string(one.pszText)};
        const MomentColumns found = FindMoments(FindTable(sample));
        ASSERT_EQ(found.choices.size(), one.nChoices) << one.pszText;
        EXPECT_EQ(found.choices.front().form.date, one.date) << one.pszText;
    }
}

} // namespace tabulex::advice
