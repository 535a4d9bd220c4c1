#include "src/UIComponents/ProgressState.h"

#include "platform/threads/Thread.h"

namespace Hesperon::specifics::UILayer {

// ---- the window

bool CProgressState::TakeWindow(WindowHandle hWnd)
{
    LockGuard lock(m_lock);
    if (m_window.hWnd)
        return false;
    m_window = {hWnd, CurrentThreadId()};
    m_bCancelled = false;
    return true;
}

CProgressState::Window CProgressState::DropWindow()
{
    LockGuard lock(m_lock);
    const Window window = std::exchange(m_window, {});
    if (window.hWnd)
        m_hContinue.Set();
    return window;
}

void CProgressState::DropWindow(WindowHandle hWnd)
{
    LockGuard lock(m_lock);
    if (m_window.hWnd == hWnd)
        DropWindow();
}

CProgressState::Window CProgressState::CurrentWindow()
{
    LockGuard lock(m_lock);
    return m_window;
}

// ---- questions

bool CProgressState::OpenQuestion(WindowHandle hWnd)
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

bool CProgressState::IsQuestionOpen(WindowHandle hWnd)
{
    LockGuard lock(m_lock);
    return m_window.hWnd == hWnd && m_bQuestionOpen;
}

void CProgressState::Answer(WindowHandle hWnd)
{
    LockGuard lock(m_lock);
    if (m_window.hWnd != hWnd)
        return;
    m_bQuestionOpen = false;
    m_hContinue.Set();
}

void CProgressState::Cancel(WindowHandle hWnd)
{
    LockGuard lock(m_lock);
    if (m_window.hWnd != hWnd)
        return;
    m_bCancelled = true;
    Answer(hWnd);
}

void CProgressState::EndQuestions()
{
    LockGuard lock(m_lock);
    m_bCancelled = true;
    if (m_bQuestionOpen)
        m_hContinue.Set();
}

// A thread with windows goes on dispatching: the press may come through one of them.
HRESULT CProgressState::WaitForAnswer()
{
    WaitPumping(m_hContinue);
    LockGuard lock(m_lock);
    const bool bLeftOpen = std::exchange(m_bQuestionOpen, false);
    return bLeftOpen ? S_FALSE : m_nErrorResult.load();
}

// ---- what was put into the box

string_t CProgressState::Title()
{
    LockGuard lock(m_lock);
    return m_sTitle;
}

string_t CProgressState::FileName()
{
    LockGuard lock(m_lock);
    return m_sFileName;
}

com_ptr<CProgressState::IDataParser> CProgressState::DataParser()
{
    LockGuard lock(m_lock);
    return m_pDataParser;
}

void CProgressState::PutTitle(string_view_t sTitle)
{
    LockGuard lock(m_lock);
    m_sTitle = sTitle;
}

void CProgressState::PutFileName(string_view_t sFileName)
{
    LockGuard lock(m_lock);
    m_sFileName = sFileName;
}

// The old parser is released after the lock is left.
void CProgressState::PutDataParser(com_ptr<IDataParser> pDataParser)
{
    LockGuard lock(m_lock);
    std::swap(m_pDataParser, pDataParser);
}

// ---- the clock

std::uint32_t CProgressState::ElapsedTime()
{
    const std::uint32_t nNow = m_pfnTickCount();
    LockGuard lock(m_lock);
    if (m_nStartTick == 0)
        m_nStartTick = nNow;
    return nNow - m_nStartTick;
}

} // namespace Hesperon::specifics::UILayer
