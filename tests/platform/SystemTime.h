// Times to test with.
#pragma once

#include "platform/component.h"

inline SYSTEMTIME Time(int nYear, int nMonth, int nDay, int nHour = 0, int nMinute = 0,
                       int nSecond = 0, int nMilliseconds = 0)
{
    SYSTEMTIME time = {};
    time.wYear = static_cast<WORD>(nYear);
    time.wMonth = static_cast<WORD>(nMonth);
    time.wDay = static_cast<WORD>(nDay);
    time.wHour = static_cast<WORD>(nHour);
    time.wMinute = static_cast<WORD>(nMinute);
    time.wSecond = static_cast<WORD>(nSecond);
    time.wMilliseconds = static_cast<WORD>(nMilliseconds);
    return time;
}
