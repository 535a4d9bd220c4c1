// Numbers, days and times of day, put digit by digit where the caller has made room.
//
// Each function writes at `at` and gives the end of what it wrote. It may use all of kDigitsRoom
// bytes, also behind that end, so that eight digits are one store.
#pragma once

#include <algorithm>
#include <chrono>
#include <cstddef>
#include <string_view>

#include "platform/component.h"

namespace tabulex {

inline constexpr std::size_t kDigitsRoom = 32;

// Day 0 of a DATE.
inline constexpr std::chrono::sys_days kDayZero =
    std::chrono::sys_days(std::chrono::December / 30 / 1899);

// The shortest decimal that reads back to the same double: in plain notation from 1e-5 up to 1e15,
// in scientific notation outside of that; "inf" and "nan" for what is no number.
char* PutPrice(char* at, double value);
char* PutWhole(char* at, LONGLONG value);

// YYYY-MM-DD of a day counted from kDayZero; the last four digits of a longer year.
char* PutDay(char* at, LONGLONG nDay);
// HH:MM:SS, and .mmm where that isn't 0.
char* PutTimeOfDay(char* at, unsigned nMilliseconds);

// The text alone, of any length: there must be room for it.
inline char* PutText(char* at, std::string_view text)
{
    return std::copy(text.begin(), text.end(), at);
}

} // namespace tabulex
