#include "platform/threads/Apartment.h"

ThreadApartment::ThreadApartment() : m_bEntered(false) {}

ThreadApartment::~ThreadApartment() = default;
