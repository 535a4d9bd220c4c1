// LockChecker: shows the takes and leaves of a lock of our own to the thread sanitizer, which
// then knows it as it knows the locks of the standard library, and reports two that are taken
// in both orders. Empty in other builds.
//
// What a thread does in the scope of one of these objects is the lock's own work; the
// sanitizer doesn't look at it.
#pragma once

#if defined(__SANITIZE_THREAD__)
#define TABULEX_CHECKS_LOCKS 1
#elif defined(__has_feature)
#if __has_feature(thread_sanitizer)
#define TABULEX_CHECKS_LOCKS 1
#endif
#endif

#if defined(TABULEX_CHECKS_LOCKS)
#include <sanitizer/tsan_interface.h>
#endif

namespace LockChecker {

#if defined(TABULEX_CHECKS_LOCKS)

class Trying
{
public:
    explicit Trying(void* pLock) : m_pLock(pLock)
    {
        __tsan_mutex_pre_lock(m_pLock, __tsan_mutex_try_lock);
    }
    ~Trying()
    {
        const unsigned nFailed = m_bSucceeded ? 0 : __tsan_mutex_try_lock_failed;
        __tsan_mutex_post_lock(m_pLock, __tsan_mutex_try_lock | nFailed, 0);
    }
    void Succeeded() { m_bSucceeded = true; }

private:
    void* const m_pLock;
    bool m_bSucceeded = false;
};

class Taking
{
public:
    explicit Taking(void* pLock) : m_pLock(pLock) { __tsan_mutex_pre_lock(m_pLock, 0); }
    ~Taking() { __tsan_mutex_post_lock(m_pLock, 0, 0); }

private:
    void* const m_pLock;
};

class Leaving
{
public:
    explicit Leaving(void* pLock) : m_pLock(pLock) { __tsan_mutex_pre_unlock(m_pLock, 0); }
    ~Leaving() { __tsan_mutex_post_unlock(m_pLock, 0); }

private:
    void* const m_pLock;
};

#else

struct Trying
{
    explicit Trying(void*) {}
    void Succeeded() {}
};

struct Taking
{
    explicit Taking(void*) {}
    ~Taking() {} // so that an object of it isn't an unused one
};

struct Leaving
{
    explicit Leaving(void*) {}
    ~Leaving() {}
};

#endif

} // namespace LockChecker
