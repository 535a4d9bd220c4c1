// The box has one section that comes and goes, for errors: it is closed when the box opens,
// opens at the first error, and stays open.
//
// A worker that reports an error holds its parser's lock and waits twice: for the message
// that shows the error, and then for a button. The button may need that lock, so the user is
// asked in a message of its own, and a button wakes the worker before it calls the parser.

#include "src/UIComponents/ProgressWindow.h"

#include "Simples/interface/ResourceStrings.h"
#include "interfaces/FieldsAndResolutions.h"
#include "module/Guarded.h"
#include "src/UIComponents/ProgressFigures.h"
#include "src/UIComponents/views/ControlPlaces.h"

namespace Hesperon::specifics::UILayer {

using namespace IQRL_TabulexConverter;

namespace {

constexpr ProgressControl kErrorTexts[] = {ProgressErrorLineLabel,  ProgressErrorLine,
                                           ProgressErrorFieldLabel, ProgressErrorField,
                                           ProgressErrorLabel,      ProgressErrorText};

} // namespace

// ---- opening and end

HRESULT ProgressWindow::Open(const std::shared_ptr<ProgressState>& pState, LONG_PTR hwndParent)
{
    auto pWindow = std::make_unique<ProgressWindow>(pState);
    pWindow->m_hWnd = pWindow->Create();
    if (!pWindow->m_hWnd)
        return E_FAIL;
    if (!pState->TakeWindow(pWindow->m_hWnd))
        return S_FALSE;
    pWindow->m_pView = MakeProgressView();
    pWindow->LayOutErrorSection();
    pWindow->SetText(ProgressFileName, pState->FileName());
    if (const string_t sTitle = pState->Title(); !sTitle.empty())
        pWindow->SetText(kWholeView, sTitle);
    // From here on it owns itself. The user may press a button before Show returns.
    ProgressWindow& window = *pWindow.release();
    window.m_pView->Show(hwndParent, &window);
    return S_OK;
}

ProgressWindow::~ProgressWindow()
{
    m_pState->DropWindow(m_hWnd);
}

void ProgressWindow::OnFinalMessage()
{
    m_pState->DropWindow(m_hWnd);
    m_pView->Hide();
    delete this;
}

// ---- messages

LONG_PTR ProgressWindow::OnMessage(UINT nMessage, ULONG_PTR wParam, LONG_PTR lParam)
{
    const HRESULT hr = Guarded([&] { return Dispatch(nMessage, wParam, lParam) ? S_OK : S_FALSE; });
    return hr == S_OK;
}

bool ProgressWindow::Dispatch(UINT nMessage, ULONG_PTR wParam, LONG_PTR lParam)
{
    switch (nMessage) {
    case kAdvanceMessage:
        return Advance(kAdvanceMessage.First(wParam), kAdvanceMessage.Second(lParam));
    case kErrorMessage:
        return ShowError(kErrorMessage.First(wParam), nullptr);
    case kErrorAtMessage:
        return ShowError(kErrorAtMessage.First(wParam), &kErrorAtMessage.Second(lParam));
    case kAskMessage:
        if (m_pState->IsQuestionOpen(m_hWnd))
            m_pView->AskUser();
        return true;
    case kDisableButtonsMessage:
        for (const ProgressControl control : {ProgressCancel, ProgressSkip, ProgressSkipAll})
            m_pView->SetEnabled(control, false);
        return true;
    case kTitleMessage:
        SetText(kWholeView, m_pState->Title());
        return true;
    case kFileNameMessage:
        SetText(ProgressFileName, m_pState->FileName());
        return true;
    case kCountMessage:
        SetText(ProgressRecords, DecimalText(kCountMessage.First(wParam)));
        return true;
    case kCloseMessage:
        Destroy();
        return true;
    default:
        return false;
    }
}

bool ProgressWindow::Advance(ULONGLONG nPos, ULONGLONG nMax)
{
    const WindowHandle hWnd = m_hWnd;
    if (!m_pState->IsCurrent(hWnd))
        return false;
    const std::uint32_t nElapsed = m_pState->ElapsedTime();
    if (nPos == 0 || nElapsed == 0)
        return true;
    const FLOAT fRelative = RelativePos(nPos);
    if (!IsLiveWindow(hWnd)) // the parser dispatched, and the box was closed
        return false;
    m_pView->SetPercent(ProgressPercent(nPos, nMax));
    if (fRelative != 0)
        SetText(ProgressRemaining,
                DurationText(StartedSeconds(RemainingTime(nElapsed, fRelative))));
    SetText(ProgressRecords, DecimalText(nPos));
    SetText(ProgressElapsed, DurationText(WholeSeconds(nElapsed)));
    return true;
}

FLOAT ProgressWindow::RelativePos(ULONGLONG nPos)
{
    FLOAT fRelative = 0;
    if (const com_ptr<IDataParser> pParser = m_pState->DataParser())
        pParser->GetRelativePos(nPos, &fRelative);
    return fRelative;
}

void ProgressWindow::SetText(LONG nControl, const string_t& sText)
{
    m_pView->SetText(nControl, sText.c_str());
}

// ---- errors

// With a place or without: an error without one leaves the line and the field of the last
// one, and ends the conversion unless the user skips it.
bool ProgressWindow::ShowError(const OLECHAR* pszText, const ProgressPlace* pPlace)
{
    if (!m_pState->OpenQuestion(m_hWnd))
        return false;
    m_bShowErrors = true;
    LayOutErrorSection();
    if (pPlace) {
        SetText(ProgressErrorLine, DecimalText(static_cast<ULONG>(pPlace->nLine)));
        SetField(pPlace->nField);
    } else {
        m_pState->m_nErrorResult = 1;
    }
    m_pView->SetText(ProgressErrorText, pszText);
    kAskMessage.Post(m_hWnd);
    return true;
}

void ProgressWindow::SetField(LONG nField)
{
    SetText(ProgressErrorField, nField == IQRL_TabulexConverter::kWholeRecord
                                    ? string_t(LoadResourceString(IDS_NO_FIELD))
                                    : DecimalText(static_cast<ULONG>(nField)));
}

// A view begins with the section open, so the first run closes it: the box gets lower by the
// section's height, and the buttons below move up.
void ProgressWindow::LayOutErrorSection()
{
    if (m_bErrorsExpanded)
        return;
    const LONG nHeight = Top(*m_pView, ProgressErrorBottom) - Top(*m_pView, ProgressErrorTop);
    const LONG nDelta = m_bShowErrors ? nHeight : -nHeight;
    for (const ProgressControl control : kErrorTexts)
        m_pView->SetShown(control, m_bShowErrors);
    m_pView->SetShown(ProgressErrorBottom, m_bShowErrors);
    GrowHeight(*m_pView, kWholeView, nDelta);
    for (const ProgressControl control : {ProgressCancel, ProgressSkipAll, ProgressSkip})
        MoveDown(*m_pView, control, nDelta);
    for (const ProgressControl control : {ProgressSkipAll, ProgressSkip})
        m_pView->SetShown(control, m_bShowErrors);
    m_bErrorsExpanded = m_bShowErrors;
}

// ---- buttons

// A window that the box has dropped may still be on show; its buttons do nothing.
void ProgressWindow::Press(ProgressControl button)
{
    if (!m_pState->IsCurrent(m_hWnd))
        return;
    switch (button) {
    case ProgressSkip:
        m_pState->m_nErrorResult = S_OK;
        m_pState->Answer(m_hWnd);
        break;
    case ProgressSkipAll:
        SkipAll();
        break;
    case ProgressCancel:
        Cancel();
        break;
    default:
        break;
    }
}

// The parser's call, or the worker that goes on, may end the box; the buttons come last.
void ProgressWindow::SkipAll()
{
    const auto pState = m_pState;
    const WindowHandle hWnd = m_hWnd;
    pState->m_bSkipAll = true;
    pState->m_nErrorResult = S_OK;
    if (const com_ptr<IDataParser> pParser = pState->DataParser())
        pParser->put_DisableErrorNotify(VARIANT_TRUE);
    pState->Answer(hWnd);
    if (!IsLiveWindow(hWnd))
        return;
    for (const ProgressControl control : {ProgressSkipAll, ProgressSkip})
        m_pView->SetEnabled(control, false);
    for (const ProgressControl control : kErrorTexts)
        m_pView->SetEnabled(control, false);
}

// The worker goes on first: it holds the lock that AbortConversion takes.
void ProgressWindow::Cancel()
{
    const auto pState = m_pState;
    const WindowHandle hWnd = m_hWnd;
    const com_ptr<IDataParser> pParser = pState->DataParser();
    if (pParser)
        pParser->put_DisableErrorNotify(VARIANT_TRUE);
    pState->Cancel(hWnd);
    kDisableButtonsMessage.Post(hWnd);
    if (pParser)
        pParser->AbortConversion();
}

} // namespace Hesperon::specifics::UILayer
