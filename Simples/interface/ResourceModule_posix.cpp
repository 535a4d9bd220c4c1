#include "Simples/interface/ResourceModule.h"

#include <algorithm>
#include <iterator>
#include <span>

#include "platform/StringTable.h"

namespace {

constexpr TabulexString kChinese[] = {
#define TEXTS(chinese, english) OLESTR(chinese)
#define STRING(name, id, text) {id, text},
#include "Simples/interface/StringTable.inc"
#undef STRING
#undef TEXTS
};

constexpr TabulexString kEnglish[] = {
#define TEXTS(chinese, english) OLESTR(english)
#define STRING(name, id, text) {id, text},
#include "Simples/interface/StringTable.inc"
#undef STRING
#undef TEXTS
};

constexpr TabulexStringTable kTables[] = {{kChinese, std::size(kChinese)},
                                          {kEnglish, std::size(kEnglish)}};

} // namespace

LONG_PTR OwnStrings(Language language)
{
    return reinterpret_cast<LONG_PTR>(&kTables[static_cast<int>(language)]);
}

string_view_t StringAt(LONG_PTR nHandle, unsigned nId)
{
    const auto& table = *reinterpret_cast<const TabulexStringTable*>(nHandle);
    const std::span strings(table.pStrings, table.nStrings);
    const auto row = std::ranges::find(strings, nId, &TabulexString::nId);
    return row == strings.end() ? string_view_t() : string_view_t(row->pszText);
}
