#include <gtest/gtest.h>

#include <random>

#include "datetime/qrlDateTime.h"
#include "tests/datetime/faults.h"
#include "tests/datetime/values.h"
#include "tests/support/Seed.h"

namespace {

using namespace qrlDateTime;

struct TicksRow
{
    double value;
    std::int64_t nTicks;
};

// One unit of the rounding is 10 microseconds: 1 / 8.64e9 of a day.
constexpr double kUnit = 1 / 8.64e9;

constexpr TicksRow kTicksOfDates[] = {
    {0.0, 599264352000000000},
    {-0.0, 599264352000000000},
    {0.4 * kUnit, 599264352000000000},
    {0.5 * kUnit, 599264352000000100},
    {1.4 * kUnit, 599264352000000100},
    {1.0, 599265216000000000},
    {2.0, 599266080000000000},
    {2.5, 599266512000000000},
    {36526.0 + 0.25, 630822816000000000 + 216000000000},
    {65380.0, 655752672000000000},
    {65381.0, 655753536000000000},
};

TEST(OleDate, KnownValues)
{
    for (const TicksRow& row : kTicksOfDates) {
        SCOPED_TRACE(testing::Message() << std::hexfloat << row.value);
        EXPECT_EQ(row.nTicks, SDateTime::OleDate2Ticks(row.value));
    }
}

TEST(OleDate, ConversionLeavesTheObjectAlone)
{
    SDateTime value;
    EXPECT_EQ(630822816000000000, value.OleDate2Ticks(36526.0));
    EXPECT_EQ(599266080000000000, value.m_ticks);
}

TEST(OleDate, RandomTimesComeBackToTheMillisecond)
{
    std::mt19937 random(Seed());
    std::uniform_int_distribution<std::int64_t> milliseconds(2 * 86'400'000LL,
                                                             65381 * 86'400'000LL - 1);
    for (int n = 0; n < Rounds(20000); ++n) {
        const std::int64_t nMilliseconds = milliseconds(random);
        const double value = static_cast<double>(nMilliseconds) / 86'400'000.0;
        ASSERT_EQ(599264352000000000 + nMilliseconds * 10000, SDateTime::OleDate2Ticks(value))
            << nMilliseconds;
    }
}

TEST(OleDate, ATimeWithoutADateIsNoSystemTime)
{
    const SDateTime value = FromTicks(SDateTime::OleDate2Ticks(0.0));
    EXPECT_EQ("qrlDateTime::ReplaceDateInSYSTEMTIME: value of 'aDate' is out of range [2..65380]; "
              "aDate = 0",
              FaultOf([&] { value.ToSYSTEMTIME(); }));
    EXPECT_EQ(string_t(OLESTR("1899-12-30")), value.Format(OLESTR("%Y-%m-%d")));
}

TEST(OleDate, TheUpperEndIsNoSystemTime)
{
    const SDateTime value = FromTicks(SDateTime::OleDate2Ticks(65381.0));
    EXPECT_EQ("qrlDateTime::ReplaceDateInSYSTEMTIME: value of 'aDate' is out of range [2..65380]; "
              "aDate = 65381",
              FaultOf([&] { value.ToSYSTEMTIME(); }));
}

} // namespace
