// The exported entries of the component library.
#pragma once

#include "platform/component.h"

extern "C" {

// A class factory for one of the identifiers in ClassIds.h.
// CLASS_E_CLASSNOTAVAILABLE for any other; E_POINTER for a null ppv.
TABULEX_API HRESULT STDAPICALLTYPE DllGetClassObject(REFCLSID rclsid, REFIID riid, void** ppv);

// S_OK when no object lives and no factory is locked, else S_FALSE.
TABULEX_API HRESULT STDAPICALLTYPE DllCanUnloadNow();
}
