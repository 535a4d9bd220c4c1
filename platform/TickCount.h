// Milliseconds of a clock that only runs forward, modulo 2^32: only differences mean
// anything. The clock moves in steps of up to some 16 ms, and reading it is very cheap.
#pragma once

#include <cstdint>

std::uint32_t TickCount();
