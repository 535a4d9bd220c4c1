#include "platform/threads/Apartment.h"

ThreadApartment::ThreadApartment() : m_bEntered(false) {}

// Not defaulted: on the other system there is work to do, so the class isn't trivial.
ThreadApartment::~ThreadApartment() {}
