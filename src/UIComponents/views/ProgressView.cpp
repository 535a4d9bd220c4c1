#include "src/UIComponents/views/ProgressView.h"

#include "interfaces/ControlTable.h"

namespace Hesperon::specifics::UILayer {

namespace {

struct Factory
{
    ProgressViewFactory pfnMake = nullptr;
    void* pContext = nullptr;
};

Factory g_factory;

// Shows nothing. Skipping all at the first bad line delivers the same records as skipping
// line by line, and saves the worker a message per line.
class SilentView final : public IQRL_TabulexConverter::ControlTable<IProgressView>
{
public:
    void Show(LONG_PTR, IProgressButtons* pButtons) override { m_pButtons = pButtons; }
    void Hide() override {}
    void SetPercent(ULONG) override {}
    void AskUser() override { m_pButtons->Press(IQRL_TabulexConverter::ProgressSkipAll); }
    void Release() override { delete this; }

private:
    ~SilentView() = default;

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
        pView.reset(new SilentView);
    return pView;
}

} // namespace Hesperon::specifics::UILayer
