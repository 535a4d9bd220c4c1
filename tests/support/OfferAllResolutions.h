// Offers a record parser all resolutions, as a host does that can store each of them.
#pragma once

#include "interfaces/FieldsAndResolutions.h"
#include "interfaces/IRecordParser.h"
#include "platform/values.h"

inline HRESULT OfferAllResolutions(IQRL_TabulexConverter::IRecordParser& parser)
{
    constexpr LONG nCount = IQRL_TabulexConverter::RESOLUTIONS_COUNT;
    const Variant ids = Variant::FromArray(SafeArrayCreateVector(VT_I4, 0, nCount), VT_I4);
    const Variant names = Variant::FromArray(SafeArrayCreateVector(VT_BSTR, 0, nCount), VT_BSTR);
    for (LONG i = 0; i < nCount; ++i) {
        SafeArrayPutElement(ids.parray, &i, &i);
        SafeArrayPutElement(names.parray, &i, Bstr(OLESTR("Resolution")).get());
    }
    return parser.SetResolutionTemplates(ids, names);
}
