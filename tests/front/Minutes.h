// Quotes enough for several batches.
#pragma once

#include <chrono>
#include <cstdio>
#include <string>

// One-minute bars from 1990-01-01 on, 1000 a day.
inline std::string Minutes(int nLines, const char* pszSymbol = nullptr)
{
    using namespace std::chrono;
    std::string text;
    for (int i = 0; i < nLines; ++i) {
        const year_month_day date(sys_days(year(1990) / 1 / 1) + days(i / 1000));
        const int nMinute = i % 1000;
        char line[100];
        std::snprintf(line, sizeof line, "%04d-%02u-%02u,%02d:%02d:00,%d.5,%d.75,%d.25,%d.5,%d\n",
                      int(date.year()), unsigned(date.month()), unsigned(date.day()), nMinute / 60,
                      nMinute % 60, 10, 10, 10, 10, 100 + i);
        text += pszSymbol ? pszSymbol + ("," + std::string(line)) : line;
    }
    return text;
}
