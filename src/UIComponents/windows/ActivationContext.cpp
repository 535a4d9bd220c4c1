#include "src/UIComponents/windows/ActivationContext.h"

#include <commctrl.h>

#include "platform/Module_win32.h"

namespace Hesperon::specifics::UILayer {

namespace {

// Made at first use, and freed with this module.
class Manifest
{
public:
    Manifest()
    {
        ACTCTXW description{};
        description.cbSize = sizeof(description);
        description.dwFlags = ACTCTX_FLAG_RESOURCE_NAME_VALID | ACTCTX_FLAG_HMODULE_VALID;
        description.lpResourceName = MAKEINTRESOURCEW(kManifestId);
        description.hModule = ThisModule();
        m_hContext = CreateActCtxW(&description);
    }
    ~Manifest()
    {
        if (m_hContext != INVALID_HANDLE_VALUE)
            ReleaseActCtx(m_hContext);
    }
    Manifest(const Manifest&) = delete;
    Manifest& operator=(const Manifest&) = delete;

    HANDLE Context() const { return m_hContext; }

private:
    HANDLE m_hContext = INVALID_HANDLE_VALUE;
};

// Those that dialogs name and that not every version of the system knows by itself. A dialog with
// a control of an unknown class can't be made at all.
void LoadControlClasses()
{
    INITCOMMONCONTROLSEX classes = {sizeof classes, ICC_LISTVIEW_CLASSES | ICC_BAR_CLASSES |
                                                        ICC_PROGRESS_CLASS | ICC_DATE_CLASSES};
    InitCommonControlsEx(&classes);
}

} // namespace

ActivationContext::ActivationContext()
{
    static const Manifest manifest;
    if (manifest.Context() == INVALID_HANDLE_VALUE ||
        !ActivateActCtx(manifest.Context(), &m_nCookie))
        m_nCookie = 0;
    LoadControlClasses();
}

ActivationContext::~ActivationContext()
{
    if (m_nCookie)
        DeactivateActCtx(0, m_nCookie);
}

} // namespace Hesperon::specifics::UILayer
