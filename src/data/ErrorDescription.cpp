#include "src/data/ErrorDescription.h"

#include <iterator>

namespace Hesperon::specifics {

HRESULT MakeErrorDescription(LONG nCode, string_view_t sText, Variant& description)
{
    description = Variant();
    Variant elements[] = {Variant::FromI4(nCode), Variant::FromText(sText),
                          Variant::FromText(sText)};
    SafeArray array(SafeArrayCreateVector(VT_VARIANT, 0, static_cast<ULONG>(std::size(elements))));
    if (!array)
        return E_OUTOFMEMORY;
    LONG i = 0;
    for (Variant& element : elements) {
        const HRESULT hr = SafeArrayPutElement(array.get(), &i, &element);
        if (FAILED(hr))
            return hr;
        ++i;
    }
    description = Variant::FromArray(array.detach(), VT_VARIANT);
    return S_OK;
}

} // namespace Hesperon::specifics
