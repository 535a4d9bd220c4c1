// MessageWindow: a target for messages that lives on the thread which created it.
//
// Messages of one window are handled one at a time, in the order in which they came,
// on its thread, while that thread dispatches. A send waits until its message has
// been handled and gives the result; a post doesn't wait. A thread that waits in a send
// handles the messages sent to its own windows meanwhile. On Windows this is a
// message-only window; elsewhere each thread has a queue. When a thread ends, its windows go.
#pragma once

#include <chrono>
#include <functional>
#include <optional>

#include "platform/component.h"
#include "platform/threads/CriticalSection.h"
#include "platform/threads/Event.h"

// Identifies a window on any thread, also after it has gone; 0 is none. On Windows an
// HWND.
using WindowHandle = LONG_PTR;

inline constexpr UINT kUserMessage = 1024; // first number of a window's own messages
inline constexpr UINT kTimerMessage = 275; // a period of SetTimer has passed

class MessageWindow
{
public:
    MessageWindow() = default;
    MessageWindow(const MessageWindow&) = delete;
    MessageWindow& operator=(const MessageWindow&) = delete;
    virtual ~MessageWindow(); // on its thread, if the window still stands

    // Makes the window on the calling thread; 0 if that fails.
    WindowHandle Create();
    // On its thread. Messages that wait are dropped, and their senders get 0; then
    // OnFinalMessage runs.
    void Destroy();

    WindowHandle Handle() const { return m_handle; }

    // On its thread: kTimerMessage comes once a period; a period of 0 ends that.
    void SetTimer(std::chrono::milliseconds period);

protected:
    virtual LONG_PTR OnMessage(UINT nMessage, ULONG_PTR wParam, LONG_PTR lParam) = 0;
    // Called when the window has gone; may delete the object.
    virtual void OnFinalMessage() {}

private:
    friend struct WindowDispatch; // the platform's side

    WindowHandle m_handle = 0;
};

// Whether the window exists at this moment.
bool IsLiveWindow(WindowHandle hWnd);
// 0 where the window has gone, also while the message waits.
LONG_PTR SendWindowMessage(WindowHandle hWnd, UINT nMessage, ULONG_PTR wParam, LONG_PTR lParam);
// False where the window has gone.
bool PostWindowMessage(WindowHandle hWnd, UINT nMessage, ULONG_PTR wParam, LONG_PTR lParam);

// Handles what waits for the calling thread and gives the number of messages; waits
// for the first one until the timeout is over, without end if that is empty. A message
// that comes meanwhile is handled too, but one that is posted by a handler may stay for the
// next call.
unsigned PumpMessages(std::optional<std::chrono::milliseconds> timeout);

// Calls `isOver`, which waits for something or for input, until it gives true, and dispatches
// what has come for the calling thread after each call that gives false.
void DispatchUntil(const std::function<bool()>& isOver);

// Whether the calling thread has windows, so that others may wait for it.
bool OwnsWindows();

// Waits for one of two, as Event::WaitAny does, but gives kInput as soon as a message or a
// timer is there for the calling thread's windows, if no event is set before. The message
// stays for PumpMessages.
inline constexpr int kInput = 2;
std::optional<int> WaitAnyOrInput(Event& first, Event& second, Event::Timeout timeout = {});

// Waits for one of two, as Event::WaitAny does, and dispatches what comes for the calling
// thread meanwhile. A request to quit ends the wait like the end of its time: that thread
// has nobody else to take it.
std::optional<int> WaitAnyPumping(Event& first, Event& second, Event::Timeout timeout);

// Waits for an event and dispatches meanwhile, since who is to set it may be waiting for a
// message to be handled here.
void WaitPumping(Event& event);

// Takes a lock. Its holder may be waiting for a message to be handled by this thread: a
// thread with windows dispatches while it waits, but not for the first 50 ms, within which a
// holder that merely works lets go. It is served before threads that wait by lock().
void LockPumping(CriticalSection& section);
