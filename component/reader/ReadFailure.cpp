#include "component/reader/ReadFailure.h"

#include <fmt/format.h>

#include "platform/text/Utf8.h"

namespace Hesperon::reader {

std::string ToUtf8(string_view_t text)
{
    std::string result;
    while (!text.empty()) {
        const char32_t c = Utf8::TakeFront(text);
        Utf8::Append(result, Utf8::IsSurrogate(c) ? Utf8::kReplacement : c);
    }
    return result;
}

string_t FromUtf8(std::string_view bytes)
{
    return Utf8::Decode(bytes, [](unsigned char) { return Utf8::kReplacement; });
}

void Require(HRESULT hr, const char* pszWhat)
{
    if (FAILED(hr))
        throw ReadFailure{fmt::format("{} failed: 0x{:08X}", pszWhat, static_cast<ULONG>(hr))};
}

} // namespace Hesperon::reader
