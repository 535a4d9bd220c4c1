// The module's record of each thread that has called it.
#pragma once

#include <cstddef>
#include <cstdint>

class CTabulexConvMessageLoop
{
public:
    std::uint32_t m_nModelessProgress = 0;
};

// The calling thread's record, made at first use; null where memory runs out. Good until the
// thread ends.
CTabulexConvMessageLoop* ThisMessageLoop();

// At the end of a thread: its record goes. A later thread may have the same number.
void ForgetMessageLoop();

// How many threads have a record.
std::size_t MessageLoopCount();
