#include "module/Tweaks.h"

#include <atomic>

#include "module/MenuLibrary.h"

namespace {

std::atomic<LONG> g_nMenuStyle = 0;
std::atomic<LONG> g_nMenuEffect = 0;

} // namespace

LONG MenuStyle()
{
    return g_nMenuStyle;
}

void SetMenuStyle(LONG nStyle)
{
    g_nMenuStyle = nStyle;
    MenuLibrary::EnableKelmstyle(nStyle);
}

LONG MenuEffect()
{
    return g_nMenuEffect;
}

void SetMenuEffect(LONG nEffect)
{
    g_nMenuEffect = nEffect;
    MenuLibrary::SetMenuEffect(nEffect);
}
