// What tests do with any object.
#pragma once

#include <gtest/gtest.h>

#include "platform/com_ptr.h"
#include "platform/values.h"

// How many references there are.
inline ULONG RefsOf(IUnknown* p)
{
    p->AddRef();
    return p->Release();
}

// What Clone of an interface gives, as that interface.
template <class Interface>
com_ptr<Interface> CloneOf(Interface& source)
{
    com_ptr<IDispatch> clone;
    EXPECT_EQ(source.Clone(clone.put()), S_OK);
    return clone ? clone.as<Interface>() : com_ptr<Interface>();
}
