#include "Simples/interface/ResourceStrings.h"

#include <atomic>

namespace {

std::atomic<LONG_PTR> g_nHandle = 0; // 0: not set

} // namespace

LONG_PTR ResourceHandle()
{
    const LONG_PTR nHandle = g_nHandle;
    return nHandle ? nHandle : OwnStrings(Language::Chinese);
}

void SetResourceHandle(LONG_PTR nHandle)
{
    g_nHandle = nHandle;
}

string_view_t LoadResourceString(unsigned nId)
{
    return StringAt(ResourceHandle(), nId);
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
