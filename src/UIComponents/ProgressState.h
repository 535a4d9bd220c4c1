// CProgressState: what a progress box and its window share.
//
// A box is let go of on any thread, and a window goes with its own thread. So neither
// holds the other; each finds here what the other has left, and a window that is no
// longer the box's own is shut out.
//
// Safe from any thread; the lock is a leaf. A question is an error that is shown and
// waits for a button. It is open till a button is pressed or the window goes.
#pragma once

#include <atomic>
#include <functional>

#include "interfaces/IDataParser.h"
#include "platform/CriticalSection.h"
#include "platform/Event.h"
#include "platform/MessageWindow.h"
#include "platform/TickCount.h"
#include "platform/com_ptr.h"

namespace Hesperon::specifics::UILayer {

class CProgressState
{
public:
    using IDataParser = IQRL_TabulexConverter::IDataParser;

    struct Window
    {
        WindowHandle hWnd = 0;
        std::uint32_t nThread = 0;
    };

    // ---- the window

    // The calling thread's window becomes the box's own; false if it has one.
    bool TakeWindow(WindowHandle hWnd);
    // The box has no window from now on, and an open question ends. Gives the window.
    Window DropWindow();
    // The same if this one is the box's own.
    void DropWindow(WindowHandle hWnd);
    Window CurrentWindow();
    bool IsCurrent(WindowHandle hWnd) { return CurrentWindow().hWnd == hWnd; }

    // ---- questions

    // False for a window that isn't the box's own. After a cancel the question is
    // answered at once, since no button can be pressed any more.
    bool OpenQuestion(WindowHandle hWnd);
    bool IsQuestionOpen(WindowHandle hWnd);
    // Lets the worker go on, one wake a press.
    void Answer(WindowHandle hWnd);
    void Cancel(WindowHandle hWnd); // this question and those to come
    // On the worker's thread, for a question that the window has opened.
    HRESULT WaitForAnswer();

    // ---- what the box was told

    string_t Title();
    string_t FileName();
    com_ptr<IDataParser> DataParser();
    void PutTitle(string_view_t sTitle);
    void PutFileName(string_view_t sFileName);
    void PutDataParser(com_ptr<IDataParser> pDataParser);

    // ---- the clock

    // Milliseconds since the first call, which starts the time; 0 also then.
    std::uint32_t ElapsedTime();

    std::function<std::uint32_t()> m_pfnTickCount = &TickCount; // put before the box is used
    std::atomic<bool> m_bSkipAll = false;
    std::atomic<HRESULT> m_nErrorResult = S_OK; // what an answered question gives
    CriticalSection m_questions;                // held while one is asked; taken first

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
