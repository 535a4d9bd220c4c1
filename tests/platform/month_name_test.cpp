#include <gtest/gtest.h>

#include "Values.h"
#include "platform/values.h"

namespace {

// The tests run as an English user.
TEST(MonthName, IsThatOfTheUsersLanguage)
{
    struct Row
    {
        int nMonth;
        string_view_t name;
        string_view_t abbreviation;
    };
    const Row rows[] = {
        {1, OLESTR("January"), OLESTR("Jan")},   {2, OLESTR("February"), OLESTR("Feb")},
        {3, OLESTR("March"), OLESTR("Mar")},     {4, OLESTR("April"), OLESTR("Apr")},
        {5, OLESTR("May"), OLESTR("May")},       {6, OLESTR("June"), OLESTR("Jun")},
        {7, OLESTR("July"), OLESTR("Jul")},      {8, OLESTR("August"), OLESTR("Aug")},
        {9, OLESTR("September"), OLESTR("Sep")}, {10, OLESTR("October"), OLESTR("Oct")},
        {11, OLESTR("November"), OLESTR("Nov")}, {12, OLESTR("December"), OLESTR("Dec")},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.nMonth);
        Bstr name;
        EXPECT_EQ(Result{VarMonthName(row.nMonth, 0, 0, name.put())}, Result{S_OK});
        EXPECT_EQ(Narrow(name.view()), Narrow(row.name));
        EXPECT_EQ(Result{VarMonthName(row.nMonth, 1, 0, name.put())}, Result{S_OK});
        EXPECT_EQ(Narrow(name.view()), Narrow(row.abbreviation));
    }
}

TEST(MonthName, ExistsForTheMonthsOneToTwelveOnly)
{
    for (const int nMonth : {-1, 0, 13, 100}) {
        Bstr name;
        EXPECT_EQ(Result{VarMonthName(nMonth, 0, 0, name.put())}, Result{E_INVALIDARG}) << nMonth;
    }
}

} // namespace
