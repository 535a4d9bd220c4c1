// The component runtime on a thread of ours.
#pragma once

// Starts the runtime on the calling thread, which becomes a single-threaded apartment, and
// ends it there with the object's life. Does nothing on a system whose runtime needs no
// start, or on a thread that is in another kind of apartment already.
class ThreadApartment
{
public:
    ThreadApartment();
    ~ThreadApartment();
    ThreadApartment(const ThreadApartment&) = delete;
    ThreadApartment& operator=(const ThreadApartment&) = delete;

private:
    [[maybe_unused]] bool m_bEntered; // unused where the runtime needs no start
};
