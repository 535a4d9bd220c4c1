// CProgressDlgNoHTML: the box that shows a conversion and asks about bad lines.
//
// IProgressBox.h documents the methods. The object itself keeps no window: it sends to a
// ProgressWindow, which lives on the thread of ShowProgress. Figures and errors are sent
// and waited for. From another thread all else is posted, since a host may stop dispatching
// as soon as it has heard the end of its session.
//
// May be released on any thread, also while its window is open; the window then closes when
// its thread dispatches.
#pragma once

#include <memory>

#include "interfaces/IProgressBox.h"
#include "module/ComObject.h"
#include "module/OpenQuestion.h"
#include "src/UIComponents/ProgressState.h"

namespace Hesperon::specifics::UILayer {

class CProgressDlgNoHTML
    : public ComObject<CProgressDlgNoHTML, Dual<IQRL_TabulexConverter::IProgressDlg>,
                       IQRL_TabulexConverter::IProgressBox, IOpenQuestion>
{
public:
    HRESULT FinalConstruct();
    void FinalRelease();

    // ---- IProgressBox

    HRESULT STDMETHODCALLTYPE DoProgress(ULONGLONG nPos, ULONGLONG nMax) override;
    HRESULT STDMETHODCALLTYPE SetProcessedRecordCount(ULONGLONG nMax) override;
    HRESULT STDMETHODCALLTYPE ShowProgress(LONG_PTR hwndParent) override;
    HRESULT STDMETHODCALLTYPE Close() override;
    HRESULT STDMETHODCALLTYPE SetTitle(BSTR bsTitle) override;
    HRESULT STDMETHODCALLTYPE SetFileName(BSTR bsFileName) override;
    HRESULT STDMETHODCALLTYPE put_DataParser(IDispatch* pDataParser) override;
    HRESULT STDMETHODCALLTYPE OnError(BSTR bsError) override;
    HRESULT STDMETHODCALLTYPE OnError2(LONG_PTR lptrLineNum, LONG lptrFieldNum,
                                       BSTR bsDescription) override;

    // ---- IOpenQuestion

    void STDMETHODCALLTYPE EndQuestions() override { m_pState->EndQuestions(); }

    // ---- IProgressDlg

    HRESULT STDMETHODCALLTYPE put_onselectdebug(VARIANT) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE put_onselectnormal(VARIANT) override { return E_NOTIMPL; }

private:
    friend struct ProgressTestAccess; // sets the clock

    // Has the window show an error, by a call that sends it, and waits for the answer.
    template <class Show>
    HRESULT Ask(BSTR bsError, Show show);

    std::shared_ptr<ProgressState> m_pState;
};

} // namespace Hesperon::specifics::UILayer
