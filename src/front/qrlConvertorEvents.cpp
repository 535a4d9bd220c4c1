// What a conversion tells its worker, and how that reaches the host.

#include <algorithm>
#include <iterator>

#include "Simples/interface/ResourceStrings.h"
#include "diagnostics/FaultmereClient.h"
#include "interfaces/FieldsAndResolutions.h"
#include "module/Guarded.h"
#include "src/front/BatchRewriting.h"
#include "src/front/qrlSinkWindow.h"
#include "src/front/qrlTabulexConvertor.h"
#include "src/values/LockedArray.h"

using namespace IQRL_TabulexConverter;
using FaultmereUtil::Assert;

namespace Hesperon::specifics {

namespace {

// Reads the elements as a host's language would, by index from 0: one that the bounds leave
// out gives the failure of its reading.
HRESULT ErrorText(const VARIANT& description, Bstr& sText)
{
    constexpr std::size_t kElements = 3; // a number and two texts
    const bool bArray =
        description.vt == (VT_ARRAY | VT_VARIANT) && SafeArrayGetDim(description.parray) == 1;
    const LockedArray<VARIANT> array(bArray ? description.parray : nullptr);
    if (array.Elements().size() < kElements)
        return E_INVALIDARG;
    Variant elements[kElements], nCode;
    for (LONG i = 0; i < LONG(kElements); ++i) {
        const HRESULT hr = SafeArrayGetElement(description.parray, &i, elements[i].put());
        if (FAILED(hr))
            return hr;
    }
    if (FAILED(VariantChangeType(&nCode, &elements[0], 0, VT_I4)))
        return E_INVALIDARG;
    if (elements[1].vt != VT_BSTR || elements[2].vt != VT_BSTR)
        return E_INVALIDARG;
    sText = Bstr(TextOf(elements[2].bstrVal));
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
    HRESULT hr = Guarded([&] {
        std::vector<LONG> delivered;
        std::ranges::copy_if(m_arFieldTypes, std::back_inserter(delivered),
                             [](LONG nType) { return nType != HostFieldUndefined; });
        return RewriteBatch(vRecords, delivered);
    });
    if (FAILED(hr))
        return hr;
    hr = static_cast<HRESULT>(
        SendWindowMessage(hWndSink, WM_SINK_DATA, reinterpret_cast<ULONG_PTR>(&vRecords), 0));
    return hr != S_OK ? hr : ShowProgress(nRecCountWithSkeeped);
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
        Bstr sText;
        const HRESULT hr = ErrorText(Description, sText);
        return FAILED(hr) ? hr : pBox->OnError(sText.get());
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
