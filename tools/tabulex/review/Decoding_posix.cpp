#include <iconv.h>

#include "tools/tabulex/review/Decoding.h"

namespace tabulex {

std::optional<std::string> DecodeBytes(std::string_view bytes, std::string_view encoding)
{
    const iconv_t converter = iconv_open("UTF-8", std::string(encoding).c_str());
    if (converter == reinterpret_cast<iconv_t>(-1))
        return std::nullopt;
    std::string in(bytes);
    std::string out(bytes.size() * 4 + 4, '\0');
    char* pIn = in.data();
    char* pOut = out.data();
    std::size_t nIn = in.size();
    std::size_t nOut = out.size();
    const bool bDone = iconv(converter, &pIn, &nIn, &pOut, &nOut) != static_cast<std::size_t>(-1);
    iconv_close(converter);
    if (!bDone)
        return std::nullopt;
    out.resize(out.size() - nOut);
    return out;
}

} // namespace tabulex
