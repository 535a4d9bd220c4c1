// The figures of a progress box.
#pragma once

#include <cstdint>

#include "platform/component.h"
#include "src/UIComponents/DecimalText.h"

namespace Hesperon::specifics::UILayer {

// 0 to 100.
ULONG ProgressPercent(ULONGLONG nPos, ULONGLONG nMax);

// Milliseconds left if the first nElapsed ones brought the work to fRelative of the file,
// which isn't 0. Above 1 the result wraps around 32 bits.
std::uint32_t RemainingTime(std::uint32_t nElapsed, FLOAT fRelative);

std::uint32_t WholeSeconds(std::uint32_t nMilliseconds);   // rounded down
std::uint32_t StartedSeconds(std::uint32_t nMilliseconds); // rounded up

string_t DurationText(std::uint32_t nSeconds); // "%u min %u sec" in every language

} // namespace Hesperon::specifics::UILayer
