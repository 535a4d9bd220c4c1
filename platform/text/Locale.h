// The user's locale: names and formats that depend on it.
//
// On Windows the user's default locale; elsewhere that of the environment
// (LC_ALL, LC_TIME, LANG), with the published English forms in "C" and "POSIX".
// Safe from any thread.
#pragma once

#include "platform/component.h"

// Lower-cases as the user's locale does; one unit maps to one unit.
void LowerCase(string_t& text);

// What GetLocaleInfo gives for the user's locale and these types: 42 to 48 long
// day names from Monday, 49 to 55 short ones, 56 to 67 long month names, 68 to
// 79 short ones. Empty for any other type.
string_t LocaleInfo(int nType);

// The day in the user's short date format. Only the date fields are read.
string_t ShortDate(const SYSTEMTIME& time);

// The time of day in the user's format, with seconds: "9:30:00 AM". Blanks are U+0020. Empty
// for no time of day. Only the fields down to the second are read.
string_t TimeText(const SYSTEMTIME& time);

// The time of day in the invariant 24-hour format, HH:mm:ss.
string_t InvariantTime(const SYSTEMTIME& time);

// The pictures of short dates and of times, in the letters d M y H h m s t: "M/d/yyyy" and
// "h:mm:ss tt". Of the system's default locale on Windows, elsewhere of the user's.
string_t DateFormatText();
string_t TimeFormatText();

// True where the environment asks for Chinese texts (a zh locale).
bool PrefersChinese();
