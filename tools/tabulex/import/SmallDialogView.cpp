// Esc, the cancel button and a terminal that goes are the same to the component, which ends the
// dialog; Enter is its default button, as long as that is on.

#include "tools/tabulex/import/SmallDialogView.h"

#include <algorithm>

#include "interfaces/NativeHost.h"
#include "tools/tabulex/text/VisibleText.h"

namespace tabulex {

using namespace IQRL_TabulexConverter;

namespace {

constexpr int kInnerColumns = 50;

} // namespace

SmallDialogView::SmallDialogView(Desk& desk, DialogId dialog, IDialogEvents& events)
    : ControlsView(desk, dialog, events), m_dialogEvents(events),
      m_form(desk, dialog, *this, *this, events)
{}

LONG SmallDialogView::Run()
{
    const Layered layered(m_desk, *this);
    m_dialogEvents.OnOpen(*this);
    MoveFocus(1);
    while (m_nResult == 0)
        Handle(m_desk.Next());
    m_dialogEvents.OnDestroy();
    return m_nResult;
}

void SmallDialogView::Handle(const Input& input)
{
    switch (input.key) {
    case Key::Gone:
        m_nResult = kDialogCancel;
        return;
    case Key::Escape:
    case Key::Interrupt:
        return Click(SmallDialogCancel);
    case Key::F10:
    case Key::Accept:
        return Click(SmallDialogOk);
    case Key::Tab:
        return MoveFocus(1);
    case Key::BackTab:
        return MoveFocus(-1);
    case Key::Enter:
        return HandleEnter();
    case Key::Press:
        m_form.Press(input);
        return;
    default:
        break;
    }
    if (m_form.Handle(input))
        return;
    const bool bBack = input.key == Key::Up || input.key == Key::Left;
    if (bBack || input.key == Key::Down || input.key == Key::Right)
        MoveFocus(bBack ? -1 : 1);
}

// A button that has the focus is the one that Enter presses; elsewhere that is the one of OK.
void SmallDialogView::HandleEnter()
{
    Click(m_form.FocusKind() == ControlKind::Button ? Focus() : SmallDialogOk);
}

// The component ends the dialog; one that doesn't answer to cancel can't keep the user.
void SmallDialogView::Click(LONG nButton)
{
    if (IsEnabled(nButton))
        m_dialogEvents.OnClick(nButton);
    if (nButton == SmallDialogCancel && m_nResult == 0)
        m_nResult = kDialogCancel;
    m_desk.Invalidate();
}

void SmallDialogView::MoveFocus(int nStep)
{
    if (m_form.MoveFocus(nStep))
        return;
    SetFocus(kWholeView);
    m_form.MoveFocus(nStep);
}

void SmallDialogView::Draw(Canvas& canvas)
{
    const Size size = canvas.GetSize();
    const int nInner = std::min(kInnerColumns, size.nColumns - 4);
    const int nRows = std::min(m_form.Arrange(nInner) + 2, size.nRows);
    const Rect box{(size.nColumns - nInner - 4) / 2, (size.nRows - nRows) / 2, nInner + 4, nRows};
    canvas.Box(box, VisibleText(TabulexDialogText(m_dialog, kWholeView)));
    canvas.cursor.reset();
    m_form.Draw(canvas, {box.nColumn + 2, box.nRow + 1, nInner, nRows - 2}, true);
}

} // namespace tabulex
