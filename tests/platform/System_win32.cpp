#include "System.h"

#include "platform/component.h"

bool RunsOnWine()
{
    const HMODULE system = GetModuleHandleW(L"ntdll.dll");
    return system && GetProcAddress(system, "wine_get_version") != nullptr;
}

int LastYearOfTwoDigits()
{
    DWORD nYear = 0;
    GetCalendarInfoW(LOCALE_USER_DEFAULT, CAL_GREGORIAN, CAL_ITWODIGITYEARMAX | CAL_RETURN_NUMBER,
                     nullptr, 0, &nYear);
    return static_cast<int>(nYear);
}
