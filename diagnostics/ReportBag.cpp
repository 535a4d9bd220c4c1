#include "diagnostics/ReportBag.h"

#include "platform/text/CodePage.h"
#include "platform/values.h"

namespace FaultmereUtil {
namespace {

constexpr UINT kUtf8 = 65001;

string_t Widen(std::string_view sText)
{
    string_t sWide;
    DecodeBytes(kUtf8, sText, sWide);
    return sWide;
}

} // namespace

ReportBag::ReportBag(IReportRoot& root, LPCOLESTR szType) : m_root(root)
{
    m_hrStatus = root.Command(OLESTR("CREATE"), nullptr, m_pBag.put());
    if (SUCCEEDED(m_hrStatus) && !m_pBag)
        m_hrStatus = E_FAIL;
    if (szType)
        Add(OLESTR("$Type"), Variant::FromText(szType));
}

void ReportBag::Add(LPCOLESTR szName, const VARIANT& value)
{
    if (SUCCEEDED(m_hrStatus))
        m_hrStatus = m_pBag->SetValue(szName, &value);
}

void ReportBag::AddEmpty(LPCOLESTR szName)
{
    Add(szName, Variant());
}

void ReportBag::AddText(LPCOLESTR szName, std::string_view sText)
{
    Add(szName, Variant::FromText(Widen(sText)));
}

void ReportBag::AddNumber(LPCOLESTR szName, std::uint32_t nValue)
{
    Variant value;
    value.vt = VT_UI4;
    value.ulVal = nValue;
    Add(szName, value);
}

void ReportBag::AddResult(LPCOLESTR szName, HRESULT hr)
{
    Variant value;
    value.vt = VT_ERROR;
    value.scode = hr;
    Add(szName, value);
}

void ReportBag::AddAddress(LPCOLESTR szName, const void* pValue)
{
    Variant value;
    value.vt = VT_UI8;
    value.ullVal = reinterpret_cast<std::uintptr_t>(pValue);
    Add(szName, value);
}

void ReportBag::AddFloat(LPCOLESTR szName, double fValue)
{
    Variant value;
    value.vt = VT_R8;
    value.dblVal = fValue;
    Add(szName, value);
}

void ReportBag::AddFlag(LPCOLESTR szName, bool bValue)
{
    Variant value;
    value.vt = VT_BOOL;
    value.boolVal = bValue ? VARIANT_TRUE : VARIANT_FALSE;
    Add(szName, value);
}

// A bag is handed back by one command and must not be filled any more, whatever comes of it.
HRESULT ReportBag::Send(LPCOLESTR szCommand)
{
    if (SUCCEEDED(m_hrStatus))
        m_hrStatus = m_root.Command(szCommand, m_pBag.get(), nullptr);
    m_pBag.reset();
    return m_hrStatus;
}

} // namespace FaultmereUtil
