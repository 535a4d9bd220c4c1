#include "src/UIComponents/ProgressState.h"

#include "platform/threads/Thread.h"

namespace Hesperon::specifics::UILayer {

// ---- the window

bool ProgressState::TakeWindow(WindowHandle hWnd)
{
    LockGuard lock(m_lock);
    if (m_window.hWnd)
        return false;
    m_window = {hWnd, CurrentThreadId()};
    m_bCancelled = false;
    return true;
}

ProgressState::Window ProgressState::DropWindow()
{
    LockGuard lock(m_lock);
    const Window window = std::exchange(m_window, {});
    if (window.hWnd)
        m_hContinue.Set();
    return window;
}

void ProgressState::DropWindow(WindowHandle hWnd)
{
    LockGuard lock(m_lock);
    if (m_window.hWnd == hWnd)
        DropWindow();
}

ProgressState::Window ProgressState::CurrentWindow()
{
    LockGuard lock(m_lock);
    return m_window;
}

// ---- questions

bool ProgressState::OpenQuestion(WindowHandle hWnd)
{
    LockGuard lock(m_lock);
    if (m_window.hWnd != hWnd)
        return false;
    m_bQuestionOpen = !m_bCancelled;
    if (m_bCancelled)
        m_hContinue.Set();
    else
        m_hContinue.Reset(); // an earlier press isn't an answer to this question
    return true;
}

bool ProgressState::IsQuestionOpen(WindowHandle hWnd)
{
    LockGuard lock(m_lock);
    return m_window.hWnd == hWnd && m_bQuestionOpen;
}

void ProgressState::Answer(WindowHandle hWnd)
{
    LockGuard lock(m_lock);
    if (m_window.hWnd != hWnd)
        return;
    m_bQuestionOpen = false;
    m_hContinue.Set();
}

void ProgressState::Cancel(WindowHandle hWnd)
{
    LockGuard lock(m_lock);
    if (m_window.hWnd != hWnd)
        return;
    m_bCancelled = true;
    Answer(hWnd);
}

void ProgressState::EndQuestions()
{
    LockGuard lock(m_lock);
    m_bCancelled = true;
    if (m_bQuestionOpen)
        m_hContinue.Set();
}

// A thread with windows goes on dispatching: the press may come through one of them.
HRESULT ProgressState::WaitForAnswer()
{
    WaitPumping(m_hContinue);
    LockGuard lock(m_lock);
    const bool bLeftOpen = std::exchange(m_bQuestionOpen, false);
    return bLeftOpen ? S_FALSE : m_nErrorResult.load();
}

// ---- what was put into the box

string_t ProgressState::Title()
{
    LockGuard lock(m_lock);
    return m_sTitle;
}

string_t ProgressState::FileName()
{
    LockGuard lock(m_lock);
    return m_sFileName;
}

com_ptr<ProgressState::IDataParser> ProgressState::DataParser()
{
    LockGuard lock(m_lock);
    return m_pDataParser;
}

void ProgressState::PutTitle(string_view_t sTitle)
{
    LockGuard lock(m_lock);
    m_sTitle = sTitle;
}

void ProgressState::PutFileName(string_view_t sFileName)
{
    LockGuard lock(m_lock);
    m_sFileName = sFileName;
}

// The old parser is released after the lock is left.
void ProgressState::PutDataParser(com_ptr<IDataParser> pDataParser)
{
    LockGuard lock(m_lock);
    std::swap(m_pDataParser, pDataParser);
}

// ---- the clock

std::uint32_t ProgressState::ElapsedTime()
{
    const std::uint32_t nNow = m_pfnTickCount();
    LockGuard lock(m_lock);
    if (m_nStartTick == 0)
        m_nStartTick = nNow;
    return nNow - m_nStartTick;
}

} // namespace Hesperon::specifics::UILayer
