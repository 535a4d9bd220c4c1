// A key is offered to what holds everywhere first, then, if it is a digit, to the choice of a
// pane, and at last to the pane that has the focus. A letter that is typed into a control never
// gets here.

#include "tools/tabulex/import/ImportDialogView.h"

#include <fmt/format.h>

#include "tools/tabulex/import/HelpPage.h"
#include "tools/tabulex/import/terminal/ImportTexts.h"

namespace tabulex {

using namespace IQRL_TabulexConverter;

namespace {

int PaneOf(DialogId pane)
{
    switch (pane) {
    case DialogContent:
        return PaneContent;
    case DialogSettings:
        return PaneSettings;
    case DialogDecode:
        return PaneDecode;
    default:
        return PaneCount;
    }
}

} // namespace

ImportDialogView::ImportDialogView(Desk& desk, IDialogEvents& events)
    : ControlsView(desk, DialogImport, events), m_dialogEvents(events)
{}

LONG ImportDialogView::Run()
{
    const Layered layered(m_desk, *this);
    m_dialogEvents.OnOpen(*this);
    if (!CanFocus(m_nFocus))
        MoveFocus(1);
    while (m_nResult == 0)
        Handle(m_desk.Next());
    m_dialogEvents.OnDestroy();
    CloseChildren();
    m_desk.KeepPicture();
    return m_nResult;
}

void ImportDialogView::CloseChildren()
{
    for (const auto& pPane : m_panes)
        if (pPane && pPane->Grid())
            pPane->Grid()->Close();
    if (m_pFolder)
        m_pFolder->Close();
}

// ---- panes

IPaneView* ImportDialogView::MakePane(DialogId pane, IControlEvents& events)
{
    const int nPane = PaneOf(pane);
    if (nPane == PaneCount)
        return nullptr;
    auto& pPane = m_panes[static_cast<std::size_t>(nPane)];
    pPane = std::make_unique<PaneView>(m_desk, pane, events);
    return pPane.get();
}

IFolderView* ImportDialogView::MakeFolderView(IFolderEvents& events)
{
    m_pFolder = std::make_unique<FolderListView>(m_desk, events);
    return m_pFolder.get();
}

PaneView* ImportDialogView::Pane(int nPane) const
{
    return m_panes[static_cast<std::size_t>(nPane)].get();
}

bool ImportDialogView::TakePosted()
{
    bool bChanged = false;
    for (const auto& pPane : m_panes)
        if (pPane && pPane->Grid())
            bChanged = pPane->Grid()->TakePosted() || bChanged;
    return bChanged;
}

// ---- focus

bool ImportDialogView::CanFocus(int nPane) const
{
    if (nPane == PaneFolder)
        return m_pFolder && !m_pFolder->IsFrozen();
    return Pane(nPane) != nullptr;
}

// The settings are entered at their first control or, from behind, at the last; a pane of
// settings that are all off is passed over.
void ImportDialogView::FocusPane(int nPane, int nStep)
{
    if (!CanFocus(nPane))
        return;
    if (nPane == PaneSettings) {
        Pane(nPane)->SetFocus(kWholeView);
        if (!Pane(nPane)->Controls().MoveFocus(nStep))
            return;
    }
    SetPane(nPane);
}

// A control that the keyboard has left must not be taken for the one that Enter is for.
void ImportDialogView::SetPane(int nPane)
{
    m_nFocus = nPane;
    if (nPane != PaneSettings && Pane(PaneSettings))
        Pane(PaneSettings)->SetFocus(kWholeView);
    m_desk.Invalidate();
}

void ImportDialogView::MoveFocus(int nStep)
{
    if (m_nFocus == PaneSettings && Pane(PaneSettings) &&
        Pane(PaneSettings)->Controls().MoveFocus(nStep))
        return;
    const int nBefore = m_nFocus;
    for (int n = 1; n < PaneCount && m_nFocus == nBefore; ++n)
        FocusPane((nBefore + nStep * n + PaneCount * n) % PaneCount, nStep);
    m_desk.Invalidate();
}

// ---- input

void ImportDialogView::Handle(const Input& input)
{
    if (input.key == Key::Gone) {
        m_nResult = kDialogCancel;
        return;
    }
    if (!HandleEverywhere(input) && !HandleDigit(input))
        HandlePane(input);
}

bool ImportDialogView::HandleEverywhere(const Input& input)
{
    switch (input.key) {
    case Key::Escape:
    case Key::Interrupt:
        Cancel();
        return true;
    case Key::F10:
    case Key::Accept:
        Confirm();
        return true;
    case Key::Tab:
    case Key::BackTab:
        MoveFocus(input.key == Key::Tab ? 1 : -1);
        return true;
    case Key::F1:
        ShowHelp();
        return true;
    case Key::F3:
        if (PaneView* pPane = Pane(PaneContent))
            pPane->Click(ContentLanguage);
        return true;
    case Key::F4:
        if (PaneView* pPane = Pane(PaneSettings))
            pPane->Click(SettingsDelimiters);
        return true;
    case Key::Press:
        HandlePress(input);
        return true;
    case Key::WheelUp:
    case Key::WheelDown:
        HandleWheel(input);
        return true;
    default:
        return false;
    }
}

// A digit is the number of a pane, unless it is typed into a control.
bool ImportDialogView::HandleDigit(const Input& input)
{
    const bool bTyping = m_nFocus == PaneSettings && Pane(PaneSettings)->Controls().IsTyping();
    if (bTyping || input.key != Key::Text || input.c < U'1' || input.c > U'4')
        return false;
    FocusPane(static_cast<int>(input.c - U'1'), 1);
    m_desk.Invalidate();
    return true;
}

void ImportDialogView::HandlePane(const Input& input)
{
    switch (m_nFocus) {
    case PaneFolder:
        return HandleFolder(input);
    case PaneSettings:
        return HandleSettings(input);
    default:
        return HandleGrid(input);
    }
}

void ImportDialogView::HandleFolder(const Input& input)
{
    if (!m_pFolder || m_pFolder->Handle(input))
        return;
    if (input.key == Key::Enter || input.key == Key::Press || input.Is(U' '))
        OpenFolderRow();
}

// The component opens what is selected at the dialog's default command.
void ImportDialogView::OpenFolderRow()
{
    m_desk.Tell({});
    const std::string before = m_pFolder->Folder();
    const std::string folder = m_pFolder->MarkedFolder();
    if (m_pFolder->Choose())
        m_dialogEvents.OnDefaultCommand();
    if (!folder.empty() && m_pFolder->Folder() == before)
        m_desk.Tell(fmt::format(fmt::runtime(TextOf(ImportText::NoFolder)), folder));
}

// Enter in an edit applies it; elsewhere it acts on the control that has the focus.
void ImportDialogView::HandleSettings(const Input& input)
{
    PaneView& pane = *Pane(PaneSettings);
    Form& form = pane.Controls();
    if (input.key == Key::Enter) {
        if (form.FocusKind() == ControlKind::Edit)
            m_dialogEvents.OnDefaultCommand();
        else
            form.Activate(pane.Focus());
        return;
    }
    if (form.Handle(input))
        return;
    const bool bBack = input.key == Key::Up || input.key == Key::Left;
    if (bBack || input.key == Key::Down || input.key == Key::Right)
        form.MoveFocus(bBack ? -1 : 1);
}

void ImportDialogView::HandleGrid(const Input& input)
{
    if (Pane(m_nFocus)->Grid())
        Pane(m_nFocus)->Grid()->Handle(input);
    m_desk.Invalidate();
}

void ImportDialogView::HandlePress(const Input& input)
{
    if (m_okPlace.Has(input.nColumn, input.nRow))
        return Confirm();
    if (m_cancelPlace.Has(input.nColumn, input.nRow))
        return Cancel();
    for (int n = 0; n < PaneCount; ++n) {
        if (!m_layout.panes[static_cast<std::size_t>(n)].Has(input.nColumn, input.nRow) ||
            !CanFocus(n))
            continue;
        if (n == PaneSettings) {
            if (Pane(n)->Controls().Press(input))
                SetPane(n);
            return;
        }
        SetPane(n);
        return HandlePane(input);
    }
}

// Scrolls what lies below the mouse, wherever the keyboard goes.
void ImportDialogView::HandleWheel(const Input& input)
{
    for (int n = 0; n < PaneCount; ++n) {
        if (!m_layout.panes[static_cast<std::size_t>(n)].Has(input.nColumn, input.nRow))
            continue;
        if (n == PaneFolder && m_pFolder)
            m_pFolder->Handle(input);
        else if (n != PaneFolder && Pane(n) && Pane(n)->Grid())
            Pane(n)->Grid()->Handle(input);
    }
}

void ImportDialogView::Confirm()
{
    m_desk.Tell({});
    if (IsEnabled(ImportOk))
        m_dialogEvents.OnClick(ImportOk);
    else
        m_desk.Tell(StatusText());
}

// A component that doesn't answer can't keep the user.
void ImportDialogView::Cancel()
{
    m_dialogEvents.OnClick(ImportCancel);
    if (m_nResult == 0)
        m_nResult = kDialogCancel;
}

void ImportDialogView::ShowHelp()
{
    ShowHelpPage(m_desk);
}

} // namespace tabulex
