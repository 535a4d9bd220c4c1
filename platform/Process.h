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

// True at the end of a process when the system has already ended all other threads, wherever
// they were: the locks that they held are never released, so take no lock and wait for
// nothing. Always false on systems that don't end threads in this way.
bool OtherThreadsAreGone();
