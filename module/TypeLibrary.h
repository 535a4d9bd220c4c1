// The type library in the file of the module that this code lies in.
#pragma once

#include "platform/component.h"

// False where the system has no type libraries, and in a program that links the classes.
bool HasTypeLibrary();

// Describes an interface. TYPE_E_CANTLOADLIBRARY where there is no library, and
// TYPE_E_ELEMENTNOTFOUND for an interface that it doesn't know.
HRESULT LoadTypeInfo(REFIID iid, ITypeInfo** info);
