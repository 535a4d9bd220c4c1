// The locale in which this system's libraries count the cells of characters, whatever the user's.
#pragma once

#include <locale.h>

namespace tabulex {

// Gives the thread that locale while it lives.
class Utf8LocaleOfThread
{
public:
    Utf8LocaleOfThread();
    ~Utf8LocaleOfThread() { ::uselocale(m_before); }
    Utf8LocaleOfThread(const Utf8LocaleOfThread&) = delete;
    Utf8LocaleOfThread& operator=(const Utf8LocaleOfThread&) = delete;

private:
    const locale_t m_before;
};

} // namespace tabulex
