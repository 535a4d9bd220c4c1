// ProgressState: what a progress box and its window share.
//
// A box may be released on any thread, while its window lives on one thread and goes with
// it. So neither keeps the other alive; what they exchange is here. A window that the box
// has dropped may still get messages; its handle is no longer the one here, and its calls
// then do nothing.
//
// A question is an error on show that waits for a button. It is open until a button is
// pressed or the window goes.
//
// Safe from any thread. No other lock is taken under m_lock.
#pragma once

#include <atomic>
#include <functional>

#include "interfaces/IDataParser.h"
#include "platform/TickCount.h"
#include "platform/com_ptr.h"
#include "platform/threads/CriticalSection.h"
#include "platform/threads/Event.h"
#include "platform/threads/MessageWindow.h"

namespace Hesperon::specifics::UILayer {

class ProgressState
{
public:
    using IDataParser = IQRL_TabulexConverter::IDataParser;

    struct Window
    {
        WindowHandle hWnd = 0;
        std::uint32_t nThread = 0;
    };

    // ---- the window

    // The calling thread's window becomes the box's own; false if the box has a window.
    bool TakeWindow(WindowHandle hWnd);
    // The box has no window from now on, and an open question ends. Gives the window that it
    // had.
    Window DropWindow();
    // The same, but only if this window is the box's own.
    void DropWindow(WindowHandle hWnd);
    Window CurrentWindow();
    bool IsCurrent(WindowHandle hWnd) { return CurrentWindow().hWnd == hWnd; }

    // ---- questions

    // False for a window that isn't the box's own. After a cancel the question is
    // answered at once, since no button can be pressed any more.
    bool OpenQuestion(WindowHandle hWnd);
    bool IsQuestionOpen(WindowHandle hWnd);
    // Wakes the worker, once per press.
    void Answer(WindowHandle hWnd);
    void Cancel(WindowHandle hWnd); // this question and those to come
    // The run is cancelled from elsewhere: the question that is open is left, so that its
    // answer ends the run, and those to come are answered at once.
    void EndQuestions();
    // On the worker's thread, for a question that the window has opened.
    HRESULT WaitForAnswer();

    // ---- what was put into the box

    string_t Title();
    string_t FileName();
    com_ptr<IDataParser> DataParser();
    void PutTitle(string_view_t sTitle);
    void PutFileName(string_view_t sFileName);
    void PutDataParser(com_ptr<IDataParser> pDataParser);

    // ---- the clock

    // Milliseconds since the first call, which starts the clock and gives 0.
    std::uint32_t ElapsedTime();

    std::function<std::uint32_t()> m_pfnTickCount = &TickCount; // set before the box is used
    std::atomic<bool> m_bSkipAll = false;
    std::atomic<HRESULT> m_nErrorResult = S_OK; // result of an answered question
    CriticalSection m_questions;                // one question at a time; taken before m_lock

private:
    CriticalSection m_lock;
    Window m_window;
    bool m_bQuestionOpen = false;
    bool m_bCancelled = false;
    Event m_hContinue{Event::Kind::AutoReset};
    std::uint32_t m_nStartTick = 0; // 0 before the first progress
    string_t m_sTitle, m_sFileName;
    com_ptr<IDataParser> m_pDataParser;
};

} // namespace Hesperon::specifics::UILayer
