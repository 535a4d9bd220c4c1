// Days of the proleptic Gregorian calendar, counted as the whole part of a DATE
// counts them: day 0 is 1899-12-30.
#pragma once

#include "platform/component.h"

inline constexpr int kFirstDay = -657434; // 0100-01-01
inline constexpr int kLastDay = 2958465;  // 9999-12-31

struct CalendarDate
{
    int nYear;
    int nMonth; // 1 to 12
    int nDay;   // 1 to the month's length
};

// The day of a date; a month or a day outside of its range counts on from the
// year or the month, day 0 being the day before the first.
int DayOfDate(CalendarDate date);

CalendarDate DateOfDay(int nDay);

int DaysInMonth(int nYear, int nMonth);

// Years of two digits: 0 to 29 are 2000 to 2029, 30 to 99 are 1930 to 1999.
int FullYear(int nYear);

// Day and time of day to a DATE. Before day 0 the fraction counts away from zero.
DATE DateValue(int nDay, int nSeconds);

// Day and time of day of a DATE, to the nearest second; false out of range.
bool SplitDate(DATE date, int& nDay, int& nSeconds);
