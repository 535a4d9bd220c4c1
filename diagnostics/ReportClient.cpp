#include "diagnostics/ReportClient.h"

#include <string>

#include "diagnostics/FaultmereClient.h"
#include "diagnostics/ReportBag.h"
#include "diagnostics/ReportLibrary.h"
#include "platform/DynamicLibrary.h"
#include "platform/MessageBox.h"
#include "platform/Process.h"

namespace FaultmereUtil {
namespace {

constexpr char kUserKey[] = "Software\\Qorlane\\Faultmere";
constexpr char kClientVersion[] = "2.2 05.05.2006";
constexpr int kEndStatus = -1;

} // namespace

// Never destroyed: reports may come from destructors at the end of the process.
FaultmereClient& FaultmereClient::Instance()
{
    static FaultmereClient& client = *new FaultmereClient;
    return client;
}

FaultmereClient::~FaultmereClient()
{
    Shutdown();
}

HRESULT FaultmereClient::Load()
{
    return LoadReportRoot(m_pRoot);
}

HRESULT FaultmereClient::Initialise()
{
    const LockGuard lock(m_lock);
    if (m_bInitTried)
        return S_OK;
    m_bInitTried = true;
    m_bInitialised = false;
    m_bShowErrors = UserKeyHasDefault(kUserKey);
    HRESULT hr = Load();
    if (SUCCEEDED(hr))
        hr = OpenSession();
    m_bInitialised = SUCCEEDED(hr);
    if (!m_bInitialised)
        Abandon();
    return hr;
}

HRESULT FaultmereClient::OpenSession()
{
    const LoadedModule module = ModuleOf(reinterpret_cast<const void*>(&FaultmereClient::Instance));
    ReportBag bag(*m_pRoot.get(), nullptr);
    bag.AddText(OLESTR("LogDirectory"), "");
    bag.AddAddress(OLESTR("ModuleAddr"), module.pBase);
    bag.AddText(OLESTR("ModuleName"), module.sPath);
    bag.AddFlag(OLESTR("ReleaseMode"), true);
    bag.AddText(OLESTR("ClientVersion"), kClientVersion);
    const HRESULT hr = bag.Send(OLESTR("INIT"));
    return SUCCEEDED(hr) ? hr : OpenSessionByAddress();
}

// The library takes the low 32 bits of the address, signed.
HRESULT FaultmereClient::OpenSessionByAddress()
{
    const std::string sDigits =
        std::to_string(static_cast<std::int32_t>(reinterpret_cast<std::intptr_t>(this)));
    return m_pRoot->Fallback(string_t(sDigits.begin(), sDigits.end()).c_str());
}

// It isn't tried again: m_bInitTried stays set.
void FaultmereClient::Abandon()
{
    if (m_bShowErrors)
        ShowWarning(0, OLESTR("Faultmere Init Failed."));
    m_bShowErrors = false;
    m_pRoot.reset();
}

void FaultmereClient::Terminate()
{
    Send(OLESTR("TERMINATE"));
    EndProcess();
}

HRESULT FaultmereClient::IsClean()
{
    return Send(OLESTR("IS CLEAN"));
}

HRESULT FaultmereClient::DoClean()
{
    return Send(OLESTR("DO CLEAN"));
}

HRESULT FaultmereClient::ReportDialog()
{
    return Send(OLESTR("REPORTDIALOG"));
}

HRESULT FaultmereClient::TraceEnabled()
{
    return Send(OLESTR("TRACEENABLED"));
}

HRESULT FaultmereClient::Send(LPCOLESTR szCommand)
{
    Initialise();
    const com_ptr<IReportRoot> root = Root();
    return root ? root->Command(szCommand, nullptr, nullptr) : E_FAIL;
}

com_ptr<IReportRoot> FaultmereClient::Root()
{
    const LockGuard lock(m_lock);
    return m_bInitialised ? m_pRoot : nullptr;
}

void FaultmereClient::Shutdown()
{
    const LockGuard lock(m_lock);
    if (m_bInitialised)
        m_pRoot->Command(OLESTR("DEINIT"), nullptr, nullptr);
    m_bInitialised = false;
    m_pRoot.reset();
}

// The session is closed before the process ends, since no destructor runs after that.
void FaultmereClient::Obey(HRESULT code)
{
    if (code == kBreak)
        Break();
    if (code != kTerminate)
        return;
    Initialise();
    Shutdown();
    EndProcess();
}

void FaultmereClient::Break()
{
    BreakIntoDebugger();
}

void FaultmereClient::EndProcess()
{
    ::EndProcess(kEndStatus);
}

} // namespace FaultmereUtil
