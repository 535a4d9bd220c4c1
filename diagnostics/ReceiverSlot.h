// Keeps the process's receiver of reports.
#pragma once

#include "diagnostics/FaultmereClient.h"

namespace FaultmereUtil {

// Passes a report of the calling thread to the receiver and gives its answer. E_FAIL
// if there is none, or if the receiver itself reports; the first case costs nothing.
HRESULT TellReceiver(Report::Kind kind, std::string_view sText, const std::source_location& place);

} // namespace FaultmereUtil
