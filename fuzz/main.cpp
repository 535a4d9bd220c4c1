// What libFuzzer calls. TARGET is one of the functions of Targets.h.
#include "fuzz/Targets.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t nSize)
{
    fuzz::TARGET(data, nSize);
    return 0;
}
