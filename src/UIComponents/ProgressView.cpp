#include "src/UIComponents/ProgressView.h"

namespace Hesperon::specifics::UILayer {

namespace {

struct Factory
{
    ProgressViewFactory pfnMake = nullptr;
    void* pContext = nullptr;
};

Factory g_factory;

// Shows nothing. To skip all at the first bad line delivers the same as to skip line
// by line, and spares the worker a call over here for each.
class CSilentView final : public IProgressView
{
public:
    void Show(LONG_PTR, IProgressButtons* pButtons) override { m_pButtons = pButtons; }
    void Hide() override {}
    void SetCaption(const OLECHAR*) override {}
    void SetText(ProgressControl, const OLECHAR*) override {}
    void SetPercent(ULONG) override {}
    void SetEnabled(ProgressControl, bool) override {}
    void SetShown(ProgressControl, bool) override {}
    LONG Top(ProgressControl) override { return 0; }
    void MoveDown(ProgressControl, LONG) override {}
    void GrowHeight(LONG) override {}
    void AskUser() override { m_pButtons->Press(IQRL_TabulexConverter::ProgressSkipAll); }
    void Release() override { delete this; }

private:
    IProgressButtons* m_pButtons = nullptr;
};

} // namespace

void SetProgressViews(ProgressViewFactory pfnMake, void* pContext)
{
    g_factory = {pfnMake, pContext};
}

ProgressViewPtr MakeProgressView()
{
    ProgressViewPtr pView(g_factory.pfnMake ? g_factory.pfnMake(g_factory.pContext) : nullptr);
    if (!pView)
        pView.reset(new CSilentView);
    return pView;
}

} // namespace Hesperon::specifics::UILayer
