// Operating-system services for threads.
#pragma once

#include <cstdint>

#include "platform/component.h"

// Number of the calling thread, as the system counts it.
std::uint32_t CurrentThreadId();

// Lets other work go first on the calling thread, for as long as it lives.
void LowerThreadPriority();

// The calling thread's last system error, saved and restored around reports.
int LastSystemError();
void SetLastSystemError(int nError);
