#include "src/UIComponents/views/DialogViews.h"

#include <utility>

namespace Hesperon::specifics::UILayer {

namespace {

class NoViews final : public IDialogViews
{
public:
    LONG Run(IQRL_TabulexConverter::DialogId, LONG_PTR, IDialogEvents&) override
    {
        return IQRL_TabulexConverter::kDialogFailed;
    }
    LONG_PTR ActiveWindow() override { return 0; }
    void ShowWaiting(bool) override {}
};

NoViews g_noViews;
IDialogViews* g_pViews = nullptr;

} // namespace

IDialogViews* SetDialogViews(IDialogViews* pViews)
{
    return std::exchange(g_pViews, pViews);
}

IDialogViews& DialogViews()
{
    return g_pViews ? *g_pViews : g_noViews;
}

LONG RunDialog(IQRL_TabulexConverter::DialogId dialog, IDialogEvents& events)
{
    return DialogViews().Run(dialog, DialogViews().ActiveWindow(), events);
}

} // namespace Hesperon::specifics::UILayer
