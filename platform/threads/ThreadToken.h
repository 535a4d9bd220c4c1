// Which thread this is, by the cheapest means of the system.
#pragma once

#if defined(_WIN32)
#include "platform/component.h"
#endif

// An address that no two live threads share; even, so that its lowest bit is free for a mark.
inline const void* ThreadToken()
{
#if defined(_WIN32)
    return NtCurrentTeb(); // a thread_local costs a call and two locks there
#else
    alignas(2) static thread_local const char token = 0;
    return &token;
#endif
}
