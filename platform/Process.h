// The process as a whole: stopping it, and what its user has set up for it.
#pragma once

#include <string_view>

// Stops in the debugger. Without one the process ends, unless the program handles
// the trap.
void BreakIntoDebugger();

// Ends the process at once: nothing is flushed, no destructor or exit handler runs.
[[noreturn]] void EndProcess(int nStatus);

// Whether the user's registry has a default value under the key, for example
// "Software\\Vendor\\Product". False on systems without a registry.
bool UserKeyHasDefault(std::string_view sKey);

// True in the last moments of a process whose other threads the system has ended, wherever
// they were: what they held will never be let go of, so take no lock and wait for
// nothing. Never so where a process ends its threads by itself.
bool OtherThreadsAreGone();
