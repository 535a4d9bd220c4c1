#include "tools/tabulex/host/Properties.h"

#include <fmt/format.h>

namespace tabulex {

std::vector<std::string> TextsOf(const VARIANT& value)
{
    std::vector<std::string> result;
    if (value.vt != (VT_ARRAY | VT_BSTR) || !value.parray)
        return result;
    LONG nLast = -1;
    SafeArrayGetUBound(value.parray, 1, &nLast);
    for (LONG i = 0; i <= nLast; ++i) {
        Bstr text;
        if (SUCCEEDED(SafeArrayGetElement(value.parray, &i, text.put())))
            result.push_back(ToUtf8(text.view()));
    }
    return result;
}

std::string HexOf(HRESULT hr)
{
    return fmt::format("0x{:08X}", static_cast<unsigned>(hr));
}

} // namespace tabulex
