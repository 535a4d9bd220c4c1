#include "module/TypeLibrary.h"

#include "platform/Module_win32.h"
#include "platform/com_ptr.h"

bool HasTypeLibrary()
{
    return FindResourceW(ThisModule(), MAKEINTRESOURCEW(1), L"TYPELIB") != nullptr;
}

// The system keeps a library as long as somebody holds one of its descriptions, so it isn't
// kept here as well: a module would have to release it while it is being unloaded.
HRESULT LoadTypeInfo(REFIID iid, ITypeInfo** info)
{
    *info = nullptr;
    if (!HasTypeLibrary())
        return TYPE_E_CANTLOADLIBRARY;
    com_ptr<ITypeLib> library;
    const HRESULT hr = LoadTypeLibEx(PathOf(ThisModule()).c_str(), REGKIND_NONE, library.put());
    return FAILED(hr) ? hr : library->GetTypeInfoOfGuid(iid, info);
}
