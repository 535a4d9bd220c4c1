// The reports: scoped objects. Make one where there is something to report, call it once
// with the text; its destructor restores the caller's last system error.
//
//   AsserterClass asserter(client, std::source_location::current());
//   client.Obey(asserter("pVal"));
//
// Each goes to the report library if there is one, else to the process's receiver.
// The result is what the report asks for, or a failure if the report couldn't be made; the
// caller goes on then. An object is used by the thread that made it.
#pragma once

#include <cstdint>
#include <optional>
#include <source_location>
#include <string>
#include <string_view>

#include "diagnostics/ReportClient.h"
#include "platform/threads/Thread.h"

namespace FaultmereUtil {

class ReportBag;

// Takes the thread's last system error and puts it back at the end of its life.
class SystemErrorKeeper
{
public:
    SystemErrorKeeper() : m_nError(LastSystemError()) {}
    ~SystemErrorKeeper() { SetLastSystemError(m_nError); }
    SystemErrorKeeper(const SystemErrorKeeper&) = delete;
    SystemErrorKeeper& operator=(const SystemErrorKeeper&) = delete;

    int Error() const { return m_nError; }

private:
    const int m_nError;
};

// What a trace may carry beside its message and place. Zeros and empty text are left out of
// the report, except nIdent.
struct TraceValues
{
    std::uint32_t nIdent = 0; // the caller's own number for this trace
    std::uint32_t nGroup = 0;
    const void* pObject = nullptr;
    double fDelay = 0;
    std::uint32_t nCount = 0;
    double fTotalTime = 0;
    std::string sOutFile;
};

class TracerClass
{
public:
    // The client must outlive the report.
    TracerClass(FaultmereClient& client, std::source_location place, TraceValues values = {});
    TracerClass(const TracerClass&) = delete;
    TracerClass& operator=(const TracerClass&) = delete;

    HRESULT operator()(std::string_view sMessage);

protected:
    HRESULT SendTrace(IReportRoot& root, std::string_view sMessage) const;
    // Place, group and thread.
    void AddPlace(ReportBag& bag) const;
    void AddMeasures(ReportBag& bag) const;

    const SystemErrorKeeper m_lastError;
    FaultmereClient& m_client;
    const std::source_location m_place;
    const TraceValues m_values;
};

class AsserterClass : public TracerClass
{
public:
    AsserterClass(FaultmereClient& client, std::source_location place);

    // hr is given where the condition is about a result code.
    HRESULT operator()(std::string_view szCondition, std::optional<HRESULT> hr = {});

private:
    HRESULT SendAssertion(IReportRoot& root, std::string_view szCondition,
                          std::optional<HRESULT> hr) const;

    const SystemErrorKeeper m_lastErrorOfAssertion;
};

// A fault that the processor or the system raised on this thread.
struct ExceptionFacts
{
    std::string sType;
    std::uint32_t nErrorCode;
    std::uint32_t nCode;
    bool bContinuable;
    const void* pAddress;
    const void* pPointers; // a copy of the fault's record and context
};

// Goes to the report library alone; E_FAIL without it.
HRESULT ReportException(FaultmereClient& client, const ExceptionFacts& facts);

} // namespace FaultmereUtil
