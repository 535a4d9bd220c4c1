// Which thread this is, as cheaply as the system tells.
#pragma once

#if defined(_WIN32)
#include "platform/component.h"
#endif

// An address that no two live threads share.
inline const void* ThreadToken()
{
#if defined(_WIN32)
    return NtCurrentTeb(); // thread_local takes the compiler a call and two locks there
#else
    static thread_local const char token = 0;
    return &token;
#endif
}
