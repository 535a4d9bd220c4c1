// Milliseconds of a clock that only runs forward, modulo 2^32: only differences count. It
// moves in steps of up to some 16 ms, and costs next to nothing.
#pragma once

#include <cstdint>

std::uint32_t TickCount();
