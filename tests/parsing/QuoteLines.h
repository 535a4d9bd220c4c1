// Lines of quotes for tests, by their distance from Monday 2003-01-06 09:30.
#pragma once

#include <string>
#include <vector>

#include "platform/component.h"

inline constexpr const char* kBar = "1.0,2.0,0.5,1.5"; // open, high, low, close

// "20030106"; nDay counts from that day.
std::string DateText(int nDay);
// "20030106,09:30"; nMinute counts from that minute.
std::string StampText(int nMinute);

// "20030106,<rest>", a line a day, and "20030106,09:30,<rest>", a line a stamp. An empty
// rest leaves its comma out.
std::vector<string_t> DayLines(const std::vector<int>& days, const std::string& sRest = {});
std::vector<string_t> MinuteLines(const std::vector<int>& minutes, const std::string& sRest = {});

// 0, nStep, 2 * nStep and so on.
std::vector<int> Evenly(int nStep, int nCount);
