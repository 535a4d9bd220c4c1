// Pictures of dates and times, in the letters that Windows has for them:
//
//   d M        day and month, two digits where the letter stands twice
//   yyyy       the year in full
//   H h m s    hour of 24 and of 12, minute, second, likewise
//   tt         the mark of the half of the day
//
// Text between apostrophes, and whatever is no letter, stands for itself.
#pragma once

#include "platform/component.h"

// A pattern as Unicode's locale data has it, in those letters. What the letters can't say, such
// as an era, falls out. Blanks that don't break become plain ones.
string_t PictureOf(string_view_t pattern);

// The picture with the fields of a time. sMark is what "tt" becomes.
string_t FillPicture(string_view_t picture, const SYSTEMTIME& time, string_view_t sMark);

// The blanks that don't break become plain ones.
void PlainBlanks(string_t& text);
