// What the tests need to know about the system that they run on.
#pragma once

// Whether the system's calls are Wine's.
bool RunsOnWine();

// The latest year that a year of two digits can mean. The user may set it on Windows; 2029
// otherwise.
int LastYearOfTwoDigits();

// The year that a year of two digits stands for.
inline int FullYearOf(int nYear)
{
    return nYear + (2000 + nYear <= LastYearOfTwoDigits() ? 2000 : 1900);
}

// Where Wine departs from what is published. The tests fail where it no longer does.

// The day of the week stays that of the day before where a time rounds up to midnight.
inline bool WeekdayStaysBehind()
{
    return RunsOnWine();
}
// A NaN is taken for a date, and converted to the largest whole number.
inline bool NotANumberIsANumber()
{
    return RunsOnWine();
}
// Currency ends with 922337203685476, before its largest value.
inline bool CurrencyEndsEarly()
{
    return RunsOnWine();
}
// A currency below zero becomes a 64-bit number one too low.
inline bool NegativeCurrencyIsOneLess()
{
    return RunsOnWine();
}
// 64-bit numbers are cut to 16 bits without a sign.
inline bool CutsTo16Bits()
{
    return RunsOnWine();
}
// There is no converter for the code page that holds all characters in Chinese bytes.
inline bool LacksGb18030()
{
    return RunsOnWine();
}
// The 29th of February is formatted in any year.
inline bool EachYearHasALeapDay()
{
    return RunsOnWine();
}
