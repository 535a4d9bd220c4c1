// How the module hears of a thread's end.
#pragma once

// Has ForgetMessageLoop called at the end of the calling thread, where the system doesn't
// tell a library of it by itself.
void ExpectThreadEnd();
