#include "Simples/interface/ResourceStrings.h"

#include <algorithm>
#include <atomic>
#include <iterator>
#include <span>

namespace {

constexpr TabulexString kChinese[] = {
#define STRING(id, chinese, english) {id, OLESTR(chinese)},
#include "Simples/interface/StringTable.inc"
#undef STRING
};

constexpr TabulexString kEnglish[] = {
#define STRING(id, chinese, english) {id, OLESTR(english)},
#include "Simples/interface/StringTable.inc"
#undef STRING
};

constexpr TabulexStringTable kTables[] = {{kChinese, std::size(kChinese)},
                                          {kEnglish, std::size(kEnglish)}};

std::atomic<const TabulexStringTable*> g_pTable = &kTables[0];

} // namespace

const TabulexStringTable& OwnStrings(Language language)
{
    return kTables[static_cast<int>(language)];
}

LONG_PTR ResourceHandle()
{
    return reinterpret_cast<LONG_PTR>(g_pTable.load());
}

void SetResourceHandle(LONG_PTR nHandle)
{
    const auto* pTable = reinterpret_cast<const TabulexStringTable*>(nHandle);
    g_pTable = pTable ? pTable : &OwnStrings(Language::Chinese);
}

string_view_t LoadResourceString(unsigned nId)
{
    const TabulexStringTable& table = *g_pTable.load();
    const std::span strings(table.pStrings, table.nStrings);
    const auto row = std::ranges::find(strings, nId, &TabulexString::nId);
    return row == strings.end() ? string_view_t() : string_view_t(row->pszText);
}

string_t FormatResourceString(unsigned nId, std::initializer_list<string_view_t> args)
{
    static constexpr string_view_t kPlace = OLESTR("%s");
    string_view_t format = LoadResourceString(nId);
    string_t result;
    for (string_view_t arg : args) {
        const std::size_t at = format.find(kPlace);
        if (at == format.npos)
            break;
        result.append(format.substr(0, at)).append(arg);
        format.remove_prefix(at + kPlace.size());
    }
    return result.append(format);
}
