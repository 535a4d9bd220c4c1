// How the module learns that a thread ends.
#pragma once

// Makes the end of the calling thread call ForgetMessageLoop, on systems that don't call
// a library when a thread ends.
void ExpectThreadEnd();
