// GuardedEvent: the border between presenters, which may throw, and the events of a view.
#pragma once

#include <utility>

#include "module/Guarded.h"

namespace Hesperon::specifics {

// Runs what an event of a view brings about. A view has no use for a failure, and must not be
// thrown at: what is thrown ends the event.
template <class Call>
void GuardedEvent(Call&& call) noexcept
{
    Guarded([&] {
        std::forward<Call>(call)();
        return S_OK;
    });
}

} // namespace Hesperon::specifics
