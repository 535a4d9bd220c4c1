// Names of months in the genitive and zones by their names in the zone database, of which the
// other system knows none.

#include <gtest/gtest.h>

#include "tests/intake/MomentCase.h"

using namespace intake_test;

namespace {

constexpr MomentCase kGenitives[] = {
    {"dmy", "2 января 2006", "2006-01-02"},
    {"dmy", "2 września 2006", "2006-09-02"},
};

TEST(IntakeMoments, ReadNamesOfMonthsInTheGenitive)
{
    Check(kGenitives);
}

constexpr MomentCase kZones[] = {
    {"ymd+time --time-zone America/New_York", "2020-01-02 09:30", "2020-01-02;14:30:00.000"},
    {"ymd+time --time-zone America/New_York", "2020-07-02 09:30", "2020-07-02;13:30:00.000"},
    {"ymd+time --time-zone America/New_York", "2020-01-02 21:00", "2020-01-03;02:00:00.000"},
    {"ymd+time --time-zone UTC:Asia/Tokyo", "2020-01-02 20:00", "2020-01-03;05:00:00.000"},
    {"ymd+time --time-zone UTC:Europe/Berlin", "2020-07-02 09:30", "2020-07-02;11:30:00.000"},
    {"ymd+time --time-zone America/New_York", "2020-01-02T09:30Z", "2020-01-02;09:30:00.000"},
    {"ymd+time --time-zone offset", "2024-11-11T17:30:00-06:00", "2024-11-11;23:30:00.000"},
    {"ymd+time --time-zone offset:America/Chicago", "2024-11-11T17:30:00-06:00",
     "2024-11-11;17:30:00.000"},
    {"ymd+time --time-zone offset", "2024-11-11T17:30:00", ""},
    {"epoch-s+time --time-zone offset:America/New_York", "1315922016", "2011-09-13;09:53:36.000"},
    // Clocks go forward at 2:00 and back at 2:00.
    {"ymd+time --time-zone America/New_York", "2020-03-08 01:59", "2020-03-08;06:59:00.000"},
    {"ymd+time --time-zone America/New_York", "2020-03-08 02:30", "2020-03-08;07:30:00.000"},
    {"ymd+time --time-zone America/New_York", "2020-03-08 03:00", "2020-03-08;07:00:00.000"},
    {"ymd+time --time-zone America/New_York", "2020-11-01 00:59", "2020-11-01;04:59:00.000"},
    {"ymd+time --time-zone America/New_York", "2020-11-01 01:30", "2020-11-01;05:30:00.000"},
    {"ymd+time --time-zone America/New_York", "2020-11-01 02:00", "2020-11-01;07:00:00.000"},
};

TEST(IntakeMoments, MoveBetweenZones)
{
    Check(kZones);
}

TEST(IntakeMoments, TellWhatWasLost)
{
    tabulex::intake::IntakeAccount account;
    Clean("--moment 1:ymd+time --take 2=Close",
          "2006-01-02 09:30:15.1234Z,1\n2006-01-03 09:30-05:00,1\nx,1\n", &account);
    EXPECT_EQ(account.nFiner, 1u);
    EXPECT_EQ(account.nOffsets, 2u);
    EXPECT_TRUE(account.bOffsetsDiffer);
    EXPECT_EQ(account.nMoments, 2u);
    EXPECT_EQ(account.nBadMoments, 1u);
    EXPECT_EQ(account.nFirstBadMoment, 3u);
    Clean("--moment 1:ymd+time --take 2=Close --time-zone America/New_York",
          "2020-03-08 02:30,1\n2020-11-01 01:30,1\n", &account);
    EXPECT_EQ(account.nNoSuchClock, 1u);
    EXPECT_EQ(account.nTwiceClock, 1u);
}

} // namespace
