// The component runtime on a thread of ours.
#pragma once

// Has the runtime on the calling thread, which becomes a single-threaded apartment, for
// as long as the object lives. Does nothing where the runtime needs no such thing, or
// where the thread has made another choice before.
class ThreadApartment
{
public:
    ThreadApartment();
    ~ThreadApartment();
    ThreadApartment(const ThreadApartment&) = delete;
    ThreadApartment& operator=(const ThreadApartment&) = delete;

private:
    [[maybe_unused]] bool m_bEntered; // not where the runtime needs nothing
};
