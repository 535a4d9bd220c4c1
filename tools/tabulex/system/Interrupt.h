// Ctrl-C and a request to terminate.
//
// Outside of a Deferral the process ends at once with status 130, as there is nothing to
// clean up. Inside, the request is only noted, so that the work can be rolled back; a second
// request ends the process all the same.
#pragma once

namespace tabulex {

// Once, before the work begins.
void CatchInterrupts();

// True once a request has come while there was a Deferral. From any thread.
bool Interrupted();

// Takes a request from the system. False where the process is to end at once. Does no
// more than a signal handler may.
bool NoteInterrupt();

// Puts interrupts off while any object of the class lives.
class Deferral
{
public:
    Deferral();
    ~Deferral();
    Deferral(const Deferral&) = delete;
    Deferral& operator=(const Deferral&) = delete;
};

} // namespace tabulex
