// LiveReference: a counted reference from one that isn't counted.
//
// The pointer must be good while this is called: whoever keeps it has a lock that the object's
// FinalRelease takes, too.
#pragma once

#include "module/ComObject.h"

// Empty for an object that has lost its last reference: it may wait in its FinalRelease, and no
// new reference can keep it alive.
template <class Interface>
com_ptr<Interface> LiveReference(Interface* pObject)
{
    const bool bDying = pObject->AddRef() > kDyingRefs;
    com_ptr<Interface> reference(attach_ref, pObject);
    return bDying ? nullptr : reference;
}
