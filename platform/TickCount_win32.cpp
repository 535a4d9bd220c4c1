#include "platform/TickCount.h"

#include "platform/component.h"

std::uint32_t TickCount()
{
    return static_cast<std::uint32_t>(GetTickCount64());
}
