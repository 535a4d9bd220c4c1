// Ctrl-C, a request to terminate, and a terminal that hangs up.
//
// Outside of a Deferral the process ends at once, as there is nothing to clean up. Inside, the
// request is only noted, so that the work can be rolled back; a second one ends the process all
// the same. Either way its status says which request it was. One that the process was started
// to ignore, as by nohup, stays ignored.
#pragma once

#include "tools/tabulex/system/ExitStatus.h"

namespace tabulex {

// Once, before the work begins.
void CatchInterrupts();

// True once a request has come while there was a Deferral. From any thread.
bool Interrupted();

// What the process ends with because of it; Interrupted as long as there was none.
ExitStatus InterruptStatus();

// From now on a request changes nothing: the work is done, and its status stands while the process
// goes on to its end. A second one ends it all the same.
void PutOffInterrupts();

// Takes a request from the system, and the status that it gives. False where the process is to
// end at once. Does no more than a signal handler may.
bool NoteInterrupt(ExitStatus status);

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
