#include "module/Tweaks.h"

#include <atomic>

namespace {

std::atomic<LONG> g_nMenuStyle = 0;
std::atomic<LONG> g_nMenuEffect = 0;
thread_local bool t_bModelessProgress = false;

} // namespace

LONG MenuStyle()
{
    return g_nMenuStyle;
}

void SetMenuStyle(LONG nStyle)
{
    g_nMenuStyle = nStyle;
}

LONG MenuEffect()
{
    return g_nMenuEffect;
}

void SetMenuEffect(LONG nEffect)
{
    g_nMenuEffect = nEffect;
}

bool ModelessProgress()
{
    return t_bModelessProgress;
}

void SetModelessProgress(bool bModeless)
{
    t_bModelessProgress = bModeless;
}
