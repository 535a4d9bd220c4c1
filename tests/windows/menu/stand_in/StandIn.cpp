// Stands in for the menu library: remembers its calls.

namespace {

long g_nStyle = -1;
long g_nEffect = -1;

} // namespace

extern "C" {

__declspec(dllexport) void EnableKelmstyle(long nStyle)
{
    g_nStyle = nStyle;
}

__declspec(dllexport) void SetMenuEffect(long nEffect)
{
    g_nEffect = nEffect;
}

__declspec(dllexport) long LastStyle()
{
    return g_nStyle;
}

__declspec(dllexport) long LastEffect()
{
    return g_nEffect;
}
}
