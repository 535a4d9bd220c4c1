#include <algorithm>
#include <iterator>

#include <windows.h>

#include "tools/tabulex/review/Decoding.h"
#include "tools/tabulex/text/Text.h"

namespace tabulex {

namespace {

struct CodePageRow
{
    std::string_view sName;
    UINT nPage;
};

constexpr CodePageRow kCodePages[] = {
    {"utf-8", CP_UTF8},     {"gbk", 936},           {"big5", 950},          {"shift_jis", 932},
    {"windows-1250", 1250}, {"windows-1251", 1251}, {"windows-1252", 1252}, {"windows-1254", 1254},
};

} // namespace

std::optional<std::string> DecodeBytes(std::string_view bytes, std::string_view encoding)
{
    const auto page = std::ranges::find(kCodePages, encoding, &CodePageRow::sName);
    if (page == std::end(kCodePages))
        return std::nullopt;
    std::wstring units(bytes.size() + 1, L'\0');
    const int nUnits = MultiByteToWideChar(page->nPage, MB_ERR_INVALID_CHARS, bytes.data(),
                                           static_cast<int>(bytes.size()), units.data(),
                                           static_cast<int>(units.size()));
    if (nUnits == 0 && !bytes.empty())
        return std::nullopt;
    return ToUtf8(string_view_t(units.data(), static_cast<std::size_t>(nUnits)));
}

} // namespace tabulex
