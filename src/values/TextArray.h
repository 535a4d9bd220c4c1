// A list of texts as a value: VT_ARRAY|VT_BSTR, one dimension, lower bound 0.
#pragma once

#include <span>

#include "platform/values.h"

namespace Hesperon::specifics {

// Throws std::bad_alloc.
inline Variant TextArray(std::span<const string_view_t> texts)
{
    SafeArray array(SafeArrayCreateVector(VT_BSTR, 0, static_cast<ULONG>(texts.size())));
    if (!array)
        throw std::bad_alloc();
    for (LONG i = 0; i < static_cast<LONG>(texts.size()); ++i) {
        const Bstr text(texts[i]);
        if (FAILED(SafeArrayPutElement(array.get(), &i, text.get())))
            throw std::bad_alloc();
    }
    return Variant::FromArray(array.detach(), VT_BSTR);
}

} // namespace Hesperon::specifics
