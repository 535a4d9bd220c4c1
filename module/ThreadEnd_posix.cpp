#include "module/ThreadEnd.h"

#include "module/MessageLoops.h"

// A variable of the thread, whose destructor runs when the thread ends.
void ExpectThreadEnd()
{
    static thread_local const struct End
    {
        ~End() { ForgetMessageLoop(); }
    } end;
    static_cast<void>(end);
}
