#include "tools/tabulex/run/ProgressView.h"

#include <map>

#include "interfaces/NativeHost.h"
#include "tools/tabulex/output/Formats.h"
#include "tools/tabulex/run/Interrupt.h"
#include "tools/tabulex/system/Text.h"

namespace tabulex {

using namespace IQRL_TabulexConverter;

struct ProgressViews::Run
{
    ProgressBar* bar = nullptr; // null once the run is over
    ErrorReporter* errors = nullptr;
    int nViews = 0;
};

namespace {

// Digits only; anything else, as what stands for no field, gives `nOther`.
ULONGLONG NumberOr(const std::string& text, ULONGLONG nOther)
{
    return ParseWhole(text).value_or(nOther);
}

class View final : public IProgressView
{
public:
    explicit View(std::shared_ptr<ProgressViews::Run> run) : m_run(std::move(run))
    {
        ++m_run->nViews;
    }

    void Show(LONG_PTR, IProgressButtons* pButtons) override { m_buttons = pButtons; }
    void Hide() override { m_buttons = nullptr; }
    void SetCaption(const OLECHAR*) override {}
    void SetText(ProgressControl control, const OLECHAR* pszText) override;
    void SetPercent(ULONG nPercent) override { m_progress.nPercent = nPercent; }
    void SetEnabled(ProgressControl, bool) override {}
    void SetShown(ProgressControl, bool) override {}
    LONG Top(ProgressControl) override { return 0; } // a line has no places
    void MoveDown(ProgressControl, LONG) override {}
    void GrowHeight(LONG) override {}
    void AskUser() override;
    void Release() override { delete this; }

private:
    ~View() { --m_run->nViews; }

    std::shared_ptr<ProgressViews::Run> m_run;
    IProgressButtons* m_buttons = nullptr;
    Progress m_progress;
    std::map<ProgressControl, std::string> m_error; // texts of the error section
};

// The elapsed time is the last figure that the box writes at each progress.
void View::SetText(ProgressControl control, const OLECHAR* pszText)
{
    const std::string text = ToUtf8(pszText);
    switch (control) {
    case ProgressRecords:
        m_progress.nRecords = NumberOr(text, 0);
        break;
    case ProgressRemaining:
        m_progress.sRemaining = text;
        break;
    case ProgressElapsed:
        m_progress.sElapsed = text;
        if (m_run->bar)
            m_run->bar->Show(m_progress);
        break;
    case ProgressErrorLine:
    case ProgressErrorField:
    case ProgressErrorText:
        m_error[control] = text;
        break;
    default:
        break;
    }
}

void View::AskUser()
{
    if (!m_buttons || !m_run->errors)
        return;
    const BadLine bad{NumberOr(m_error[ProgressErrorLine], 0),
                      static_cast<LONG>(NumberOr(m_error[ProgressErrorField], kWholeRecord)),
                      m_error[ProgressErrorText]};
    const bool bGoOn = m_run->errors->Tell(bad) && !Interrupted();
    m_buttons->Press(bGoOn ? ProgressSkip : ProgressCancel);
}

} // namespace

ProgressViews::ProgressViews(ProgressBar& bar, ErrorReporter& errors)
    : m_run(std::make_shared<Run>(Run{&bar, &errors}))
{
    TabulexSetProgressViews(
        [](void* pContext) -> IProgressView* {
            return new View(*static_cast<std::shared_ptr<Run>*>(pContext));
        },
        &m_run);
}

ProgressViews::~ProgressViews()
{
    TabulexSetProgressViews(nullptr, nullptr);
    m_run->bar = nullptr;
    m_run->errors = nullptr;
}

bool ProgressViews::IsOnShow() const
{
    return m_run->nViews > 0;
}

} // namespace tabulex
