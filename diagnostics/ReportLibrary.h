// Finding the report library.
#pragma once

#include <string>

#include "diagnostics/IReportRoot.h"
#include "platform/com_ptr.h"

namespace FaultmereUtil {

// The root object of the installed library: one that the process has already, else
// the file of the library's name, else the file that is registered for it. E_FAIL if
// there is none. The library then stays loaded until the process ends.
HRESULT LoadReportRoot(com_ptr<IReportRoot>& root);

// The root object of the library in this file.
HRESULT LoadReportRoot(const std::string& sFile, com_ptr<IReportRoot>& root);

} // namespace FaultmereUtil
