#include <cstdio>
#include <cstdlib>

#include "fuzz/Targets.h"

void fuzz::Require(bool bHolds, const char* szWhat)
{
    if (bHolds)
        return;
    std::fprintf(stderr, "broken: %s\n", szWhat);
    std::abort();
}
