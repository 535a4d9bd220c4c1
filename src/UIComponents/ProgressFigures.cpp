// The time left follows from the share of the file that is done: elapsed / share is the
// total, in single precision, and what is elapsed is taken off in 32 bits. Seconds that have
// passed are rounded down, seconds to come are rounded up.

#include "src/UIComponents/ProgressFigures.h"

#include <cmath>
#include <string>

namespace Hesperon::specifics::UILayer {

namespace {

// The low 32 bits of the whole part; 0 where it doesn't fit 64 bits.
std::uint32_t LowBits(float fNumber)
{
    constexpr float kTooLarge = 0x1p63f;
    if (!(std::fabs(fNumber) < kTooLarge))
        return 0;
    return static_cast<std::uint32_t>(static_cast<std::int64_t>(fNumber));
}

} // namespace

ULONG ProgressPercent(ULONGLONG nPos, ULONGLONG nMax)
{
    if (nPos >= nMax)
        return 100;
    return static_cast<ULONG>(static_cast<double>(nPos) / static_cast<double>(nMax) * 100);
}

std::uint32_t RemainingTime(std::uint32_t nElapsed, FLOAT fRelative)
{
    return LowBits(static_cast<float>(nElapsed) / fRelative) - nElapsed;
}

std::uint32_t WholeSeconds(std::uint32_t nMilliseconds)
{
    return nMilliseconds / 1000;
}

std::uint32_t StartedSeconds(std::uint32_t nMilliseconds)
{
    return nMilliseconds / 1000 + (nMilliseconds % 1000 != 0);
}

string_t DurationText(std::uint32_t nSeconds)
{
    return DecimalText(nSeconds / 60) + OLESTR(" min ") + DecimalText(nSeconds % 60) +
           OLESTR(" sec");
}

} // namespace Hesperon::specifics::UILayer
