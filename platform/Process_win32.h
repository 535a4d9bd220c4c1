// What the library's entry point learns about the process.
#pragma once

// The process ends, and this is its last thread: see OtherThreadsAreGone.
void NoteOtherThreadsAreGone();
