#include "platform/SystemVersion.h"

unsigned SystemMajorVersion()
{
    return 6;
}
