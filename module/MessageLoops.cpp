#include "module/MessageLoops.h"

#include <map>
#include <new>

#include "module/ThreadEnd.h"
#include "platform/threads/CriticalSection.h"
#include "platform/threads/Thread.h"

namespace {

struct MessageLoops
{
    CriticalSection lock; // guards the table
    std::map<std::uint32_t, CTabulexConvMessageLoop> table;
};

// Never destroyed: a thread may end after the static objects. A record stays where it is while
// others come and go, so the pointer that is handed out needs no lock; its thread alone uses it.
MessageLoops& All()
{
    static MessageLoops& all = *new MessageLoops;
    return all;
}

} // namespace

CTabulexConvMessageLoop* ThisMessageLoop()
try {
    MessageLoops& all = All();
    const LockGuard lock(all.lock);
    const auto [at, bNew] = all.table.try_emplace(CurrentThreadId());
    if (bNew)
        ExpectThreadEnd();
    return &at->second;
} catch (const std::bad_alloc&) {
    return nullptr;
}

void ForgetMessageLoop()
{
    MessageLoops& all = All();
    const LockGuard lock(all.lock);
    all.table.erase(CurrentThreadId());
}

std::size_t MessageLoopCount()
{
    MessageLoops& all = All();
    const LockGuard lock(all.lock);
    return all.table.size();
}
