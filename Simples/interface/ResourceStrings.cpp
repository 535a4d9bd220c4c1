#include "Simples/interface/ResourceStrings.h"

#include <algorithm>
#include <atomic>

namespace {

struct Row
{
    unsigned nId;
    string_view_t sChinese;
    string_view_t sEnglish;
};

constexpr Row kTable[] = {
#define STRING(id, chinese, english) {id, OLESTR(chinese), OLESTR(english)},
#include "Simples/interface/StringTable.inc"
#undef STRING
};

std::atomic<Language> g_language = Language::Chinese;

} // namespace

void SetResourceLanguage(Language language)
{
    g_language = language;
}

Language ResourceLanguage()
{
    return g_language;
}

string_view_t LoadResourceString(unsigned nId)
{
    const Row* row = std::ranges::find(kTable, nId, &Row::nId);
    if (row == std::end(kTable))
        return {};
    return g_language == Language::Chinese ? row->sChinese : row->sEnglish;
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
