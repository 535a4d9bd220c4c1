// Forms of dates and times: what a cell becomes, and what can't be read.

#include <span>
#include <string>

#include <gtest/gtest.h>

#include "tests/intake/Clean.h"

using namespace intake_test;

namespace {

struct MomentCase
{
    const char* pszForm; // of column 1, with other options behind it
    const char* pszCell;
    const char* pszClean; // empty: not read
};

std::string CleanMoment(const MomentCase& row)
{
    const std::string line =
        CleanLine(std::string("--separator bar --take 2=Close --moment 1:") + row.pszForm,
                  std::string(row.pszCell) + "|7");
    return line.ends_with(";7") ? line.substr(0, line.size() - 2) : "";
}

void Check(std::span<const MomentCase> rows)
{
    for (const MomentCase& row : rows)
        EXPECT_EQ(CleanMoment(row), row.pszClean) << row.pszForm << " '" << row.pszCell << "'";
}

constexpr MomentCase kDates[] = {
    {"ymd", "2006-01-02", "2006-01-02"},
    {"ymd", "2006/1/2", "2006-01-02"},
    {"ymd", "2006.01.02", "2006-01-02"},
    {"ymd", "20060102", "2006-01-02"},
    {"ymd", "060102", "2006-01-02"},
    {"ymd", "06-1-2", "2006-01-02"},
    {"ymd", "2006 01 02", "2006-01-02"},
    {"ymd", "2006-Jan-02", "2006-01-02"},
    {"ymd", "2006年1月2日", "2006-01-02"},
    {"ymd", "2006-01-02T09:30:00Z", "2006-01-02"},
    {"ymd", "2006-01-02 09:30", "2006-01-02"},
    {"ymd", "20060102093000", "2006-01-02"},
    {"ymd", "2006-13-02", ""},
    {"ymd", "2006-02-29", ""},
    {"ymd", "2004-02-29", "2004-02-29"},
    {"ymd", "99999-01-02", ""},
    {"ymd", "1899-12-31", ""},
    {"ymd", "2100-01-01", ""},
    {"ymd", "2006-01", ""},
    {"ymd", "2006-01-023", ""},
    {"ymd", "2006x01x02", ""},
    {"ymd", "hello", ""},
    {"ymd", "1637971200", ""},
    {"ymd", "1637971200000", ""},
    {"ydm", "2006-02-01", "2006-01-02"},
    {"dmy", "02.01.2006", "2006-01-02"},
    {"dmy", "2/1/06", "2006-01-02"},
    {"dmy", "02-Jan-2006", "2006-01-02"},
    {"dmy", "2-JAN-06", "2006-01-02"},
    {"dmy", "02Jan2006", "2006-01-02"},
    {"dmy", "02 January, 2006", "2006-01-02"},
    {"dmy", "Mon, 02 Jan 2006", "2006-01-02"},
    {"dmy", "2nd of January 2006", "2006-01-02"},
    {"dmy", "02012006", "2006-01-02"},
    {"dmy", "2012006", "2006-01-02"},
    {"dmy", "020106", "2006-01-02"},
    {"dmy", "20106", "2006-01-02"},
    {"dmy", "31-Dec-99", "1999-12-31"},
    {"dmy", "31-Dec-49", "2049-12-31"},
    {"dmy", "2006-01-02", ""},
    {"dmy", "13/13/2006", ""},
    {"mdy", "Jan 02, 2006", "2006-01-02"},
    {"mdy", "January 2nd, 2006", "2006-01-02"},
    {"mdy", "Sept 25 2003", "2003-09-25"},
    {"mdy", "1/2/2006", "2006-01-02"},
    {"mdy", "01022006", "2006-01-02"},
    {"mdy", "13/02/2006", ""},
    {"ym", "2006-01", "2006-01-01"},
    {"ym", "200601", "2006-01-01"},
    {"ym", "Jan 2006", "2006-01-01"},
    {"my", "01/2006", "2006-01-01"},
};

TEST(IntakeMoments, ReadDates)
{
    Check(kDates);
}

constexpr MomentCase kNames[] = {
    {"dmy", "2 janvier 2006", "2006-01-02"},
    {"dmy", "02-févr.-2006", "2006-02-02"},
    {"dmy", "02-FÉVR.-2006", "2006-02-02"},
    {"dmy", "2. März 2006", "2006-03-02"},
    {"dmy", "2 Mrz 2006", "2006-03-02"},
    {"dmy", "2-Dez-2006", "2006-12-02"},
    {"dmy", "2 de enero de 2006", "2006-01-02"},
    {"dmy", "2 января 2006", "2006-01-02"},
    {"dmy", "2 ЯНВ 2006 г.", "2006-01-02"},
    {"dmy", "2 maggio 2006", "2006-05-02"},
    {"dmy", "2 września 2006", "2006-09-02"},
    {"dmy", "lun. 2 janv. 2006", "2006-01-02"},
    {"dmy", "2 lip 2006", ""}, // July in Polish, June in Croatian
    {"dmy --month-names pl", "2 lip 2006", "2006-07-02"},
    {"dmy --month-names hr", "2 lip 2006", "2006-06-02"},
    {"dmy --month-names pl", "2 May 2006", "2006-05-02"},
    {"dmy", "2 Foo 2006", ""},
};

TEST(IntakeMoments, ReadNamesOfMonths)
{
    Check(kNames);
}

constexpr MomentCase kTimes[] = {
    {"ymd+time", "2006-01-02 09:30", "2006-01-02;09:30:00.000"},
    {"ymd+time", "2006-01-02  9:30:15", "2006-01-02;09:30:15.000"},
    {"ymd+time", "2006-01-02T09:30:15.25Z", "2006-01-02;09:30:15.250"},
    {"ymd+time", "2006-01-02T09:30:15.123456789-05:00", "2006-01-02;09:30:15.123"},
    {"ymd+time", "2006-01-02 09:30:15,5", "2006-01-02;09:30:15.500"},
    {"ymd+time", "2006-01-02 09:30:15:250", "2006-01-02;09:30:15.250"},
    {"ymd+time", "2006-01-02 09:30:15:5", "2006-01-02;09:30:15.005"},
    {"ymd+time", "2006-01-02 09:30:00+0000", "2006-01-02;09:30:00.000"},
    {"ymd+time", "2006-01-02 09:30:00 EST", "2006-01-02;09:30:00.000"},
    {"ymd+time", "2006-01-02T09:30:00+01:00[Europe/Berlin]", "2006-01-02;09:30:00.000"},
    {"ymd+time", "2006-01-02", "2006-01-02;00:00:00.000"},
    {"ymd+time", "2006-01-02 24:00", "2006-01-03;00:00:00.000"},
    {"ymd+time", "2006-01-02 24:01", ""},
    {"ymd+time", "2006-01-02 9:60", ""},
    {"ymd+time", "2006-01-02 9", ""},
    {"ymd+time", "2006-01-02 0", "2006-01-02;00:00:00.000"},
    {"ymd+time", "2006-01-02 xyz", ""},
    {"ymd+time", "20060102 093015", "2006-01-02;09:30:15.000"},
    {"ymd+time", "20060102 93015", "2006-01-02;09:30:15.000"},
    {"ymd+time", "20060102 0930", "2006-01-02;09:30:00.000"},
    {"ymd+time", "20060102 093015250", "2006-01-02;09:30:15.250"},
    {"ymd+time", "20060102093015", "2006-01-02;09:30:15.000"},
    {"ymd+time", "200601020930", "2006-01-02;09:30:00.000"},
    {"ymd+time", "20060102093015250", "2006-01-02;09:30:15.250"},
    {"ymd+time", "20060102T093015Z", "2006-01-02;09:30:15.000"},
    {"ymd+time", "2006.01.02-09.30.15", "2006-01-02;09:30:15.000"},
    {"ymd+time", "2017-3-7 0:0:0", "2017-03-07;00:00:00.000"},
    {"ymd+time", "2019-10-17 09-AM", "2019-10-17;09:00:00.000"},
    {"ymd+time", "2019-10-17 12-AM", "2019-10-17;00:00:00.000"},
    {"mdy+time", "3/3/2015 10:50:00 AM", "2015-03-03;10:50:00.000"},
    {"mdy+time", "3/3/2015 1:50:00PM", "2015-03-03;13:50:00.000"},
    {"mdy+time", "3/3/2015 12:05 p.m.", "2015-03-03;12:05:00.000"},
    {"mdy+time", "3/3/2015 12:05 a.m.", "2015-03-03;00:05:00.000"},
    {"mdy+time", "3/3/2015 PM 1:50", "2015-03-03;13:50:00.000"},
    {"mdy+time", "3/3/2015 1:50p", "2015-03-03;13:50:00.000"},
    {"mdy+time", "9:30 AM 3/4/2015", "2015-03-04;09:30:00.000"},
    {"mdy+time", "09:30:15 Mar 4, 2015", "2015-03-04;09:30:15.000"},
    {"ymd+time", "2006年1月2日 上午9:30", "2006-01-02;09:30:00.000"},
    {"ymd+time", "2006/1/2 下午 1:05", "2006-01-02;13:05:00.000"},
    {"dmy+time", "Mon 02 Jan 2006 at 09:30 GMT", "2006-01-02;09:30:00.000"},
    {"ymd+hhmmss", "20060102 30", "2006-01-02;00:00:30.000"},
    {"ymd+hhmmss", "20060102 84500", "2006-01-02;08:45:00.000"},
    {"ymd+hhmmss", "20060102 84500.5", "2006-01-02;08:45:00.500"},
    {"ymd+hhmmss", "20060102 84560", ""},
    {"ymd+hhmm", "20060102 5", "2006-01-02;00:05:00.000"},
    {"ymd+hhmm", "20060102 1605", "2006-01-02;16:05:00.000"},
    {"ymd+hhmmssfff", "20060102 93015250", "2006-01-02;09:30:15.250"},
    {"ymd+second-of-day", "20060102 34215.5", "2006-01-02;09:30:15.500"},
    {"ymd+ms-of-day", "20060102 34215250", "2006-01-02;09:30:15.250"},
    {"ms-of-day --date 2013-10-07", "14400000", "2013-10-07;04:00:00.000"},
    {"time --date 2013-10-07", "9:30", "2013-10-07;09:30:00.000"},
};

TEST(IntakeMoments, ReadTimes)
{
    Check(kTimes);
}

constexpr MomentCase kCounted[] = {
    {"epoch-s+time", "1315922016", "2011-09-13;13:53:36.000"},
    {"epoch-s+time", "1315922016.25", "2011-09-13;13:53:36.250"},
    {"epoch-s", "1315922016", "2011-09-13"},
    {"epoch-s+time", "-1", "1969-12-31;23:59:59.000"},
    {"epoch-ms+time", "1637971200000", "2021-11-27;00:00:00.000"},
    {"epoch-ms+time", "1637971200001.7", "2021-11-27;00:00:00.001"},
    {"epoch-us+time", "1637971200000250", "2021-11-27;00:00:00.000"},
    {"epoch-us+time", "1637971200250000", "2021-11-27;00:00:00.250"},
    {"epoch-ns+time", "1637971200250000000", "2021-11-27;00:00:00.250"},
    {"epoch-s+time", "99999999999999", ""},
    {"epoch-ns+time", "9999999999999999999", ""},
    {"epoch-s+time", "1315922016x", ""},
    {"epoch-s+time", "", ""},
    {"serial+time", "43831.5", "2020-01-01;12:00:00.000"},
    {"serial+time", "43831.3958333", "2020-01-01;09:30:00.000"},
    {"serial+time", "43831.39583333334", "2020-01-01;09:30:00.000"},
    {"serial", "43831", "2020-01-01"},
    {"serial", "1e9", ""},
};

TEST(IntakeMoments, CountFromEpochs)
{
    Check(kCounted);
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

TEST(IntakeMoments, DatesThatBeginAlikeAreTold)
{
    EXPECT_EQ(Clean("--moment 1:ymd --take 2=Close", "2006-1-1,1\n2006-1-11,2\n2006-1-1,3\n"),
              "Date;Close\n2006-01-01;1\n2006-01-11;2\n2006-01-01;3\n");
}

} // namespace
