#include "diagnostics/FaultmereClient.h"

#include "diagnostics/ReportClient.h"
#include "diagnostics/Reports.h"

namespace FaultmereUtil {
namespace {

// Reporting must not throw: an exception on the way, from lack of memory or from a
// receiver, ends only the report.
template <class Action>
void Quietly(Action action) noexcept
{
    const SystemErrorKeeper keeper;
    try {
        action();
    } catch (...) {
    }
}

void AssertAndObey(std::string_view szCondition, std::optional<HRESULT> hr,
                   std::source_location place)
{
    FaultmereClient& client = FaultmereClient::Instance();
    AsserterClass asserter(client, place);
    client.Obey(asserter(szCondition, hr));
}

} // namespace

void ReportAssertion(std::string_view szCondition, std::source_location place) noexcept
{
    Quietly([&] { AssertAndObey(szCondition, {}, place); });
}

void ReportFailure(std::string_view szCondition, HRESULT hr, std::source_location place) noexcept
{
    Quietly([&] { AssertAndObey(szCondition, hr, place); });
}

void Trace(std::string_view sMessage, std::source_location place) noexcept
{
    Quietly([&] { TracerClass(FaultmereClient::Instance(), place)(sMessage); });
}

} // namespace FaultmereUtil
