#include "module/ThreadEnd.h"

#include "module/MessageLoops.h"

void ExpectThreadEnd()
{
    static thread_local const struct End
    {
        ~End() { ForgetMessageLoop(); }
    } end;
    static_cast<void>(end);
}
