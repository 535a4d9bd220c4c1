// The box writes figure after figure to its controls; one drawing per round is enough, so it is
// done at the last of them. A question is answered by pressing a button of the box, as a user
// would. Once the run is over the shared state is emptied, and a view that still lives does
// nothing.

#include "tools/tabulex/run/ProgressView.h"

#include "interfaces/ControlTable.h"
#include "interfaces/NativeHost.h"
#include "tools/tabulex/system/Interrupt.h"
#include "tools/tabulex/text/Formats.h"
#include "tools/tabulex/text/Text.h"

namespace tabulex {

using namespace IQRL_TabulexConverter;

struct ProgressViews::Run
{
    ProgressBar* bar = nullptr; // null once the run is over
    ErrorReporter* errors = nullptr;
    IConversionView* view = nullptr;     // null for the bar
    IProgressButtons* buttons = nullptr; // of the box that is on show
    int nViews = 0;
};

namespace {

// The number that the text is; `nOther` for any other text, such as the word for no field.
ULONGLONG NumberOr(const std::string& text, ULONGLONG nOther)
{
    return ParseWhole(text).value_or(nOther);
}

class View final : public ControlTable<IProgressView>
{
public:
    explicit View(std::shared_ptr<ProgressViews::Run> run) : m_run(std::move(run))
    {
        ++m_run->nViews;
    }

    void Show(LONG_PTR, IProgressButtons* pButtons) override { m_run->buttons = pButtons; }
    void Hide() override { m_run->buttons = nullptr; }
    void SetText(LONG nControl, const OLECHAR* pszText) override;
    void SetPercent(ULONG nPercent) override { m_progress.nPercent = nPercent; }
    void AskUser() override;
    void Release() override { delete this; }

private:
    ~View() { --m_run->nViews; }

    std::string TextAt(LONG nControl) { return ToUtf8(Text(nControl)); }

    std::shared_ptr<ProgressViews::Run> m_run;
    Progress m_progress;
};

// The elapsed time is the last figure that the box writes at each progress.
void View::SetText(LONG nControl, const OLECHAR* pszText)
{
    ControlTable::SetText(nControl, pszText);
    if (nControl != ProgressElapsed || !m_run->bar)
        return;
    m_progress.nRecords = NumberOr(TextAt(ProgressRecords), 0);
    m_progress.sRemaining = TextAt(ProgressRemaining);
    m_progress.sElapsed = TextAt(ProgressElapsed);
    if (m_run->view)
        m_run->view->ShowProgress(m_progress);
    else
        m_run->bar->Show(m_progress);
}

void View::AskUser()
{
    if (!m_run->buttons || !m_run->errors)
        return;
    const BadLine bad{NumberOr(TextAt(ProgressErrorLine), 0),
                      static_cast<LONG>(NumberOr(TextAt(ProgressErrorField), kWholeRecord)),
                      TextAt(ProgressErrorText)};
    const bool bGoOn = m_run->errors->Report(bad) && !Interrupted();
    m_run->buttons->Press(bGoOn ? ProgressSkip : ProgressCancel);
}

} // namespace

ProgressViews::ProgressViews(ProgressBar& bar, ErrorReporter& errors, IConversionView* pView)
    : m_run(std::make_shared<Run>(Run{&bar, &errors, pView}))
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
    m_run->view = nullptr;
}

// The box ends the run once, so that it is pressed once only.
void ProgressViews::CancelIfWanted()
{
    if (!m_run->view || !m_run->buttons || !m_run->view->IsCancelled())
        return;
    m_run->view = nullptr;
    m_run->buttons->Press(ProgressCancel);
}

bool ProgressViews::IsOnShow() const
{
    return m_run->nViews > 0;
}

} // namespace tabulex
