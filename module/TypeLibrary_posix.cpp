#include "module/TypeLibrary.h"

bool HasTypeLibrary()
{
    return false;
}

HRESULT LoadTypeInfo(REFIID, ITypeInfo** info)
{
    *info = nullptr;
    return TYPE_E_CANTLOADLIBRARY;
}
