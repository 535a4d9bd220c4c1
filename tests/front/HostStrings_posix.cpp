#include "tests/front/HostStrings.h"

#include "platform/StringTable.h"

LONG_PTR HostStrings()
{
    static constexpr TabulexString kStrings[] = {{141, OLESTR("Who knows")}};
    static constexpr TabulexStringTable kTable{kStrings, 1};
    return reinterpret_cast<LONG_PTR>(&kTable);
}
