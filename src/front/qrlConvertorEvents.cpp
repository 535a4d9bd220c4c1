// What a conversion tells its worker, and how that reaches the host.

#include <algorithm>
#include <cmath>
#include <iterator>

#include "Simples/interface/ResourceStrings.h"
#include "datetime/qrlDateTime.h"
#include "diagnostics/FaultmereClient.h"
#include "module/Guarded.h"
#include "src/front/qrlSinkWindow.h"
#include "src/front/qrlTabulexConvertor.h"
#include "src/values/LockedArray.h"

using namespace IQRL_TabulexConverter;
using FaultmereUtil::Assert;
using FaultmereUtil::AssertOk;

namespace Hesperon::specifics {

namespace {

// The whole days as the lower 16 bits of the number.
void DateToDays(VARIANT& cell)
{
    double days = 0;
    std::modf(cell.date, &days);
    cell.vt = VT_I2;
    cell.iVal = static_cast<SHORT>(static_cast<LONGLONG>(days));
}

// Milliseconds since midnight. A time alone lies before the days that the calendar
// knows; whole days added don't change it.
void TimeToMilliseconds(VARIANT& cell)
{
    constexpr double kIntoTheCalendar = 10.0;
    constexpr LONGLONG kTicksPerMillisecond = 10'000;
    constexpr LONGLONG kTicksPerDay = 864'000'000'000;
    const LONGLONG ticks = qrlDateTime::SDateTime::OleDate2Ticks(cell.date + kIntoTheCalendar);
    cell.vt = VT_I4;
    cell.lVal = static_cast<LONG>(ticks % kTicksPerDay / kTicksPerMillisecond);
}

HRESULT RewriteColumn(VARIANT* pFirst, std::size_t nColumns, std::size_t nRecords,
                      void (*pfnRewrite)(VARIANT&))
{
    for (std::size_t i = 0; i < nRecords; ++i) {
        VARIANT& cell = pFirst[i * nColumns];
        if (!Assert(cell.vt == VT_DATE, "VT_DATE == v.vt"))
            return E_INVALIDARG;
        pfnRewrite(cell);
    }
    return S_OK;
}

HRESULT ErrorText(const VARIANT& description, BSTR* pText)
{
    LONG nElements = 0;
    if (description.vt != (VT_ARRAY | VT_VARIANT) || !description.parray)
        return E_INVALIDARG;
    SafeArrayGetUBound(description.parray, 1, &nElements);
    if (++nElements < 3)
        return E_INVALIDARG;
    const LockedArray<VARIANT> elements(description.parray);
    Variant nCode;
    if (FAILED(VariantChangeType(&nCode, &elements.At(0), 0, VT_I4)))
        return E_INVALIDARG;
    if (elements.At(1).vt != VT_BSTR || elements.At(2).vt != VT_BSTR)
        return E_INVALIDARG;
    *pText = elements.At(2).bstrVal;
    return S_OK;
}

} // namespace

// ---- records

HRESULT CqrlTabulexConvertor::PutRecords(VARIANT vRecords, ULONGLONG nRecCountWithSkeeped)
{
    const WindowHandle hWndSink = m_hWndSink;
    if (!hWndSink)
        return E_NOINTERFACE;
    Assert(IsLiveWindow(hWndSink), "::IsWindow(m_hWndSink)");
    HRESULT hr = Guarded([&] { return RewriteBatch(vRecords); });
    if (FAILED(hr))
        return hr;
    hr = static_cast<HRESULT>(
        SendWindowMessage(hWndSink, WM_SINK_DATA, reinterpret_cast<ULONG_PTR>(&vRecords), 0));
    return hr != S_OK ? hr : ShowProgress(nRecCountWithSkeeped);
}

HRESULT CqrlTabulexConvertor::RewriteBatch(const VARIANT& vRecords) const
{
    if (!(vRecords.vt & VT_ARRAY) || SafeArrayGetDim(vRecords.parray) != 2)
        return E_INVALIDARG;
    std::vector<LONG> delivered;
    std::ranges::copy_if(m_arFieldTypes, std::back_inserter(delivered),
                         [](LONG nType) { return nType != 0; });
    const LockedArray<VARIANT> cells(vRecords.parray);
    const std::size_t nColumns = vRecords.parray->rgsabound[1].cElements;
    const std::size_t nRecords = vRecords.parray->rgsabound[0].cElements;
    if (delivered.size() != nColumns)
        return E_INVALIDARG;
    HRESULT hr = S_OK;
    for (std::size_t i = 0; i < nColumns && SUCCEEDED(hr); ++i) {
        if (delivered[i] == HostFieldDate)
            hr = RewriteColumn(cells.Data() + i, nColumns, nRecords, DateToDays);
        else if (delivered[i] == HostFieldTime)
            hr = RewriteColumn(cells.Data() + i, nColumns, nRecords, TimeToMilliseconds);
    }
    return hr;
}

HRESULT CqrlTabulexConvertor::ShowProgress(ULONGLONG nRecords)
{
    ULONGLONG nCount = 0;
    VARIANT_BOOL bComplete = VARIANT_FALSE;
    HRESULT hr = m_pDataParser->GetCount(&nCount, &bComplete);
    if (FAILED(hr))
        return hr;
    m_nProcessed += nRecords;
    if (m_bNoProgress)
        return S_OK;
    if (bComplete == VARIANT_FALSE) {
        hr = m_pDataParser->GetApproxCount(&nCount);
        if (FAILED(hr))
            return hr;
    }
    const com_ptr<IProgressBox> pBox = ProgressBox();
    return pBox ? pBox->DoProgress(m_nProcessed, nCount) : E_UNEXPECTED;
}

// ---- the end

HRESULT CqrlTabulexConvertor::EndTransaction(VARIANT_BOOL bResult)
{
    // Taken first, so that a batch on its way finds no window rather than a dead one.
    const WindowHandle hWndSink = m_hWndSink.exchange(0);
    if (Assert(hWndSink != 0, "m_hWndSink"))
        SendWindowMessage(hWndSink, WM_SINK_END, bResult != VARIANT_FALSE, 0);
    if (m_bNoProgress)
        return S_OK;
    ULONGLONG nCount = 0;
    VARIANT_BOOL bComplete = VARIANT_FALSE;
    m_pDataParser->GetCount(&nCount, &bComplete);
    const com_ptr<IProgressBox> pBox = ProgressBox();
    if (pBox && bComplete == VARIANT_TRUE)
        pBox->SetProcessedRecordCount(nCount);
    CloseProgressBox();
    return S_OK;
}

com_ptr<CqrlTabulexConvertor::IProgressBox> CqrlTabulexConvertor::ProgressBox() const
{
    LockGuard lock(m_boxLock);
    return m_pProgressBox;
}

void CqrlTabulexConvertor::CloseProgressBox()
{
    com_ptr<IProgressBox> pBox;
    {
        LockGuard lock(m_boxLock);
        pBox = std::move(m_pProgressBox);
    }
    if (pBox)
        pBox->Close();
}

// ---- errors

HRESULT CqrlTabulexConvertor::OnError(VARIANT Description)
{
    if (m_bNoProgress)
        return static_cast<HRESULT>(SendWindowMessage(
            m_hWndSink, WM_SINK_ERROR, reinterpret_cast<ULONG_PTR>(&Description), 0));
    const com_ptr<IProgressBox> pBox = ProgressBox();
    if (!pBox)
        return E_UNEXPECTED;
    return Guarded([&] {
        BSTR sText = nullptr;
        const HRESULT hr = ErrorText(Description, &sText);
        return FAILED(hr) ? hr : pBox->OnError(sText);
    });
}

HRESULT CqrlTabulexConvertor::OnError2(LONG_PTR lptrLineNum, LONG lptrFieldNum, BSTR bsDescription)
{
    if (m_bNoProgress)
        return S_OK;
    const com_ptr<IProgressBox> pBox = ProgressBox();
    return pBox ? pBox->OnError2(lptrLineNum, lptrFieldNum, bsDescription) : S_FALSE;
}

HRESULT CqrlTabulexConvertor::GetResolutionName(LONG Resolution, BSTR* Name)
{
    if (!Name)
        return E_POINTER;
    *Name = nullptr;
    return Guarded([&] {
        const STemplateEntry* row = m_arResolutionTemplates.FindId(Resolution);
        Assert(row != nullptr, "nIdx != nCount");
        *Name = NewBstr(row ? string_view_t(row->sName) : LoadResourceString(IDS_UNKNOWN));
        return S_OK;
    });
}

} // namespace Hesperon::specifics
