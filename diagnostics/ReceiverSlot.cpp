// One receiver for the process, called under a lock: reports of several threads come one after
// the other. The lock is recursive, so that a receiver which reports itself comes back here on
// its own thread, finds the mark that it is running, and is dropped.

#include "diagnostics/ReceiverSlot.h"

#include <atomic>
#include <memory>

#include "platform/threads/CriticalSection.h"
#include "platform/threads/Thread.h"

namespace FaultmereUtil {
namespace {

struct Slot
{
    std::atomic<bool> bFilled = false; // read before the lock, so that silence is cheap
    CriticalSection lock;              // guards what follows
    std::shared_ptr<Receiver> receiver;
    bool bRunning = false;
};

// Never destroyed: reports may come from destructors at the end of the process.
Slot& TheSlot()
{
    static Slot& slot = *new Slot;
    return slot;
}

class RunningMark
{
public:
    explicit RunningMark(bool& bRunning) : m_bRunning(bRunning) { m_bRunning = true; }
    ~RunningMark() { m_bRunning = false; }
    RunningMark(const RunningMark&) = delete;

private:
    bool& m_bRunning;
};

} // namespace

Receiver SetReceiver(Receiver receiver)
{
    auto pNew = receiver ? std::make_shared<Receiver>(std::move(receiver)) : nullptr;
    Slot& slot = TheSlot();
    const LockGuard lock(slot.lock);
    slot.receiver.swap(pNew);
    slot.bFilled = slot.receiver != nullptr;
    return pNew ? *pNew : Receiver();
}

HRESULT TellReceiver(Report::Kind kind, std::string_view sText, const std::source_location& place)
{
    Slot& slot = TheSlot();
    if (!slot.bFilled)
        return E_FAIL;
    const Report report{kind, std::string(sText), place, CurrentThreadId()};
    const LockGuard lock(slot.lock);
    if (!slot.receiver || slot.bRunning)
        return E_FAIL;
    const RunningMark mark(slot.bRunning);
    // Kept alive here, since the receiver may set another one.
    const std::shared_ptr<Receiver> receiver = slot.receiver;
    return (*receiver)(report);
}

} // namespace FaultmereUtil
