#include "platform/threads/Apartment.h"

#include "platform/component.h"

ThreadApartment::ThreadApartment() : m_bEntered(SUCCEEDED(CoInitialize(nullptr))) {}

ThreadApartment::~ThreadApartment()
{
    if (m_bEntered)
        CoUninitialize();
}
