// ReportBag: one report on its way to the report library.
//
//   ReportBag bag(*root, OLESTR("TRACE"));
//   bag.AddNumber(OLESTR("Line"), 12);
//   const HRESULT hr = bag.Send(OLESTR(""));
//
// The first failure of any step is the report's status; the steps after it are
// skipped. Used by one thread.
#pragma once

#include <cstdint>
#include <string_view>

#include "diagnostics/IReportRoot.h"
#include "platform/com_ptr.h"

namespace FaultmereUtil {

class ReportBag
{
public:
    // szType becomes the value "$Type"; null for a bag that is no report. The root
    // must outlive the bag.
    ReportBag(IReportRoot& root, LPCOLESTR szType);

    void AddEmpty(LPCOLESTR szName);
    void AddText(LPCOLESTR szName, std::string_view sText); // UTF-8
    void AddNumber(LPCOLESTR szName, std::uint32_t nValue);
    void AddResult(LPCOLESTR szName, HRESULT hr);
    void AddAddress(LPCOLESTR szName, const void* pValue);
    void AddFloat(LPCOLESTR szName, double fValue);
    void AddFlag(LPCOLESTR szName, bool bValue);

    // Hands the bag over with the command and lets go of it. Gives the status.
    HRESULT Send(LPCOLESTR szCommand);

private:
    void Add(LPCOLESTR szName, const VARIANT& value);

    IReportRoot& m_root;
    com_ptr<IReportBag> m_pBag;
    HRESULT m_hrStatus;
};

} // namespace FaultmereUtil
