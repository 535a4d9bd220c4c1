// The assertion by which the import dialog reports calls that failed.
#pragma once

#include "diagnostics/FaultmereClient.h"

namespace Hesperon::specifics {

// Reports a failure code; gives hr. As FaultmereUtil::AssertOk, with the other text.
inline HRESULT AssertDone(HRESULT hr, std::source_location place = std::source_location::current())
{
    if (FAILED(hr)) [[unlikely]]
        FaultmereUtil::ReportFailure("(((HRESULT)(hr__)) >= 0)", hr, place);
    return hr;
}

} // namespace Hesperon::specifics
