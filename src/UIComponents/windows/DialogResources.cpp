#include "src/UIComponents/windows/DialogResources.h"

#include "Simples/interface/ResourceStrings.h"
#include "src/UIComponents/windows/ActivationContext.h"

namespace Hesperon::specifics::UILayer {

HINSTANCE DialogModule()
{
    return reinterpret_cast<HINSTANCE>(ResourceHandle());
}

HWND MakeDialogWindow(IQRL_TabulexConverter::DialogId dialog, HWND hParent, DLGPROC pfnProcedure,
                      void* pParameter)
{
    const ActivationContext version6;
    return CreateDialogParamW(DialogModule(), MAKEINTRESOURCEW(dialog), hParent, pfnProcedure,
                              reinterpret_cast<LPARAM>(pParameter));
}

} // namespace Hesperon::specifics::UILayer
