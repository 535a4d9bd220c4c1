// Reports of programmers' faults: assertions and traces that stay live in
// shipped builds.
//
// A report goes to the report library if that is installed, and otherwise to the
// receiver that the process asked for (SetReceiver); with neither, the first one
// costs a failed load and all of them do nothing. Reporting never changes the
// caller's last system error, may run under any lock of the caller, from any
// thread, and never throws. The program goes on after an assertion, so the code that
// follows must survive the fault.
//
// All code reports by these functions. The client of the library is in ReportClient.h, the
// reports that it makes are in Reports.h.
#pragma once

#include <functional>
#include <source_location>
#include <string>
#include <string_view>

#include "platform/component.h"

namespace FaultmereUtil {

struct Report
{
    enum class Kind
    {
        Assertion,
        Trace
    };
    Kind kind;
    std::string sText; // the failed condition, or the trace's message; UTF-8
    std::source_location place;
    std::uint32_t nThread;
};

// What the report's receiver asks for.
inline constexpr HRESULT kBreak = 1;           // stop in the debugger, then go on
inline constexpr HRESULT kTerminate = E_ABORT; // end the process
inline constexpr HRESULT kGoOn = S_OK;

// Sets the receiver that gets reports where the report library is absent; an empty one
// makes reports silent again. Gives the previous receiver, which isn't called any more. The
// receiver runs on the reporting thread, under a lock of its own. Reports that it makes
// itself are dropped, and so are its exceptions.
using Receiver = std::function<HRESULT(const Report&)>;
Receiver SetReceiver(Receiver receiver);

// A receiver that appends one line for each report to a file, or writes it to standard
// error for "-".
Receiver LogTo(const std::string& sPath);

// Reports the text as a failed assertion, and does what the report asks for.
void ReportAssertion(std::string_view szCondition,
                     std::source_location place = std::source_location::current()) noexcept;

// The same with the result code that failed.
void ReportFailure(std::string_view szCondition, HRESULT hr,
                   std::source_location place = std::source_location::current()) noexcept;

// Reports unless the condition holds; gives the condition.
inline bool Assert(bool bHolds, std::string_view szCondition,
                   std::source_location place = std::source_location::current())
{
    if (!bHolds) [[unlikely]]
        ReportAssertion(szCondition, place);
    return bHolds;
}

// Reports a failure code, with the text of all such assertions; gives hr.
inline HRESULT AssertOk(HRESULT hr, std::source_location place = std::source_location::current())
{
    if (FAILED(hr)) [[unlikely]]
        ReportFailure("(((HRESULT)(hr)) >= 0)", hr, place);
    return hr;
}

// Reports a message; the report's result is ignored.
void Trace(std::string_view sMessage,
           std::source_location place = std::source_location::current()) noexcept;

} // namespace FaultmereUtil
