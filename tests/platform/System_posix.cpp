#include "System.h"

bool RunsOnWine()
{
    return false;
}

int LastYearOfTwoDigits()
{
    return 2029;
}
