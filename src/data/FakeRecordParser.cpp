#include "src/data/FakeRecordParser.h"

namespace Hesperon::specifics {

HRESULT CFakeRecordParser::Clone(IDispatch** newObj)
{
    if (!newObj)
        return E_POINTER;
    *newObj = nullptr;
    com_ptr<CFakeRecordParser> pClone;
    const HRESULT hr = CreateObject(pClone);
    if (SUCCEEDED(hr))
        *newObj = pClone.detach();
    return hr;
}

} // namespace Hesperon::specifics
