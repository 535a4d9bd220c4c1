// ProgressWindow: the window of a progress box.
//
// It lives on the thread that opened it, and deletes itself when it goes: by
// kCloseMessage or with its thread. The parser that it calls, and a view that waits for
// the user, may dispatch messages and thereby delete it. After such a call no member is
// used unless the window is known to be live.
#pragma once

#include <memory>

#include "module/Module.h"
#include "platform/threads/WindowMessage.h"
#include "src/UIComponents/ProgressState.h"
#include "src/UIComponents/views/ProgressView.h"

namespace Hesperon::specifics::UILayer {

struct ProgressPlace
{
    LONG_PTR nLine;
    LONG nField;
};

// Messages of the window. A sent one gives 1 where it was handled; 0 means that the window
// is no longer the box's own.
inline constexpr WindowMessage<const ULONGLONG&, const ULONGLONG&> // position, maximum
    kAdvanceMessage{kUserMessage + 100};
inline constexpr WindowMessage<> kDisableButtonsMessage{kUserMessage + 101};
inline constexpr WindowMessage<const OLECHAR*> kErrorMessage{kUserMessage + 102};
inline constexpr WindowMessage<const OLECHAR*, const ProgressPlace&> // the text and where
    kErrorAtMessage{kUserMessage + 103};
inline constexpr WindowMessage<> kAskMessage{kUserMessage + 104};
inline constexpr WindowMessage<> kTitleMessage{kUserMessage + 105};    // the text is in the state
inline constexpr WindowMessage<> kFileNameMessage{kUserMessage + 106}; // likewise
inline constexpr WindowMessage<ULONGLONG> kCountMessage{kUserMessage + 107};
inline constexpr WindowMessage<> kCloseMessage{kUserMessage + 108};

class ProgressWindow final : public MessageWindow, private IProgressButtons
{
public:
    // Opens the window of a box on the calling thread. S_FALSE for a box that has one.
    static HRESULT Open(const std::shared_ptr<ProgressState>& pState, LONG_PTR hwndParent);

    explicit ProgressWindow(const std::shared_ptr<ProgressState>& pState) : m_pState(pState) {}
    ~ProgressWindow() override;

private:
    LONG_PTR OnMessage(UINT nMessage, ULONG_PTR wParam, LONG_PTR lParam) override;
    void OnFinalMessage() override;
    void Press(ProgressControl button) override;

    bool Dispatch(UINT nMessage, ULONG_PTR wParam, LONG_PTR lParam);
    bool Advance(ULONGLONG nPos, ULONGLONG nMax);
    FLOAT RelativePos(ULONGLONG nPos);
    bool ShowError(const OLECHAR* pszText, const ProgressPlace* pPlace);
    void SetField(LONG nField);
    void LayOutErrorSection();
    void SkipAll();
    void Cancel();
    void SetText(LONG nControl, const string_t& sText);

    const ModuleLock m_moduleLock; // it may outlive its box until its thread dispatches
    const std::shared_ptr<ProgressState> m_pState;
    WindowHandle m_hWnd = 0; // kept after the window has gone
    ProgressViewPtr m_pView;
    bool m_bShowErrors = false;
    bool m_bErrorsExpanded = false; // stays true once set
};

} // namespace Hesperon::specifics::UILayer
