// The error description that IDataParserEvents::OnError takes.
#pragma once

#include "platform/values.h"

namespace Hesperon::specifics {

// VT_ARRAY|VT_VARIANT of three elements from 0: VT_I4 nCode, and the text twice as
// VT_BSTR. On failure `description` is VT_EMPTY.
HRESULT MakeErrorDescription(LONG nCode, string_view_t sText, Variant& description);

} // namespace Hesperon::specifics
