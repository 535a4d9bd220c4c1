// The calls of the value layer that this host makes, itself or through Bstr and Variant.
// On Windows the system has them. Here the component library does, by names that begin with
// its own, and since this host isn't linked to it, each call is passed on to the loaded library.
#include "Library.h"
#include "platform/component.h"

#define PASS_ON(function, ...)                                                                     \
    static const auto call = Library::Entry<decltype(function)>("Tabulex" #function);              \
    return call(__VA_ARGS__)

BSTR SysAllocStringLen(const OLECHAR* text, UINT units)
{
    PASS_ON(SysAllocStringLen, text, units);
}

void SysFreeString(BSTR text)
{
    PASS_ON(SysFreeString, text);
}

UINT SysStringLen(BSTR text)
{
    PASS_ON(SysStringLen, text);
}

HRESULT VariantClear(VARIANT* value)
{
    PASS_ON(VariantClear, value);
}

HRESULT SafeArrayGetUBound(SAFEARRAY* array, UINT dimension, LONG* bound)
{
    PASS_ON(SafeArrayGetUBound, array, dimension, bound);
}

HRESULT SafeArrayGetElement(SAFEARRAY* array, LONG* indices, void* value)
{
    PASS_ON(SafeArrayGetElement, array, indices, value);
}
