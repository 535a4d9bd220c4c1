// What the library's entry hears of the process.
#pragma once

// The process ends, and this is its last thread: see OtherThreadsAreGone.
void NoteOtherThreadsAreGone();
