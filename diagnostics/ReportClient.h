// FaultmereClient: this process's side of the report library.
//
// It loads the library at the first report and remembers when that failed, so that
// an absent library is looked for once. All operations may be called from any
// thread and under any lock of the caller; the client's own lock is held while the
// library is loaded, its session opened and closed.
#pragma once

#include "diagnostics/IReportRoot.h"
#include "platform/com_ptr.h"
#include "platform/threads/CriticalSection.h"

namespace FaultmereUtil {

class FaultmereClient
{
public:
    // The one of the process, made at first use and never destroyed: reports may
    // come from destructors at the end of the process.
    static FaultmereClient& Instance();

    FaultmereClient() = default;
    FaultmereClient(const FaultmereClient&) = delete;
    FaultmereClient& operator=(const FaultmereClient&) = delete;

    // The first seven virtual operations are called by slot too: their order is given, and
    // nothing virtual, no destructor either, may come before them.

    // Fills m_pRoot; E_FAIL if there is no library. Called under the lock.
    virtual HRESULT Load();
    // Loads the library and opens its session. S_OK, and nothing done, from the
    // second call on, whatever became of the first.
    virtual HRESULT Initialise();
    // Sends "TERMINATE", then ends the process.
    virtual void Terminate();
    // Questions and orders to the library; E_FAIL without it.
    virtual HRESULT IsClean();
    virtual HRESULT DoClean();
    virtual HRESULT ReportDialog();
    virtual HRESULT TraceEnabled();

    // The library's root object while the session is open; else nothing.
    com_ptr<IReportRoot> Root();
    // Ends the session, and lets go of the library for good.
    void Shutdown();
    // Does what a report asked for: kBreak, kTerminate; nothing for other codes.
    void Obey(HRESULT code);

protected:
    ~FaultmereClient(); // shuts down

    virtual void Break();      // stops in the debugger
    virtual void EndProcess(); // doesn't return

    com_ptr<IReportRoot> m_pRoot; // under the lock

private:
    HRESULT OpenSession();
    HRESULT OpenSessionByAddress();
    void Abandon();
    HRESULT Send(LPCOLESTR szCommand);

    CriticalSection m_lock; // guards the members of this class
    bool m_bInitTried = false;
    bool m_bInitialised = false; // in session
    bool m_bShowErrors = false;  // the user wants to see a failed initialisation
};

} // namespace FaultmereUtil
