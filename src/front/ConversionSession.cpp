// A batch takes four steps: its Date and Time columns are rewritten, the sink gets it, the
// count of records goes up, the box shows it. The first that fails, or a sink that answers
// anything but S_OK, gives the result.

#include "src/front/ConversionSession.h"

#include "diagnostics/FaultmereClient.h"
#include "interfaces/ClassIds.h"
#include "module/Guarded.h"
#include "module/OpenQuestion.h"
#include "src/front/BatchRewriting.h"
#include "src/values/LockedArray.h"

using namespace IQRL_TabulexConverter;
using FaultmereUtil::Assert;

namespace Hesperon::specifics {

namespace {

// An element that the bounds leave out gives the failure of its reading.
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

HRESULT ConversionSession::PutRecords(const VARIANT& vRecords, ULONGLONG nRecCountWithSkeeped)
{
    const WindowHandle hWndSink = m_link.Window();
    if (!hWndSink)
        return E_NOINTERFACE;
    Assert(IsLiveWindow(hWndSink), "::IsWindow(m_hWndSink)");
    HRESULT hr = Guarded([&] { return RewriteBatch(vRecords, m_settings.DeliveredIds()); });
    if (FAILED(hr))
        return hr;
    hr = m_link.SendData(vRecords);
    return hr != S_OK ? hr : ShowProgress(nRecCountWithSkeeped);
}

HRESULT ConversionSession::ShowProgress(ULONGLONG nRecords)
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

HRESULT ConversionSession::EndTransaction(bool bResult)
{
    Assert(m_link.End(bResult), "m_hWndSink");
    if (m_bNoProgress)
        return S_OK;
    ULONGLONG nCount = 0;
    VARIANT_BOOL bComplete = VARIANT_FALSE;
    m_pDataParser->GetCount(&nCount, &bComplete);
    // Batches count records that were read; the last figure is the file's own count.
    const com_ptr<IProgressBox> pBox = ProgressBox();
    if (pBox && bComplete == VARIANT_TRUE)
        pBox->SetProcessedRecordCount(nCount);
    CloseProgressBox();
    return S_OK;
}

void ConversionSession::Abandon()
{
    m_link.End(false);
    CloseProgressBox();
}

void ConversionSession::Release()
{
    m_link.Release();
    CloseProgressBox();
}

// ---- the box

HRESULT ConversionSession::MakeProgressBox()
{
    LockGuard lock(m_boxLock);
    return CreateOwnInstance(CLSID_CProgressDlgNoHTML, iid_of<IProgressBox>,
                             m_pProgressBox.put_void());
}

com_ptr<IProgressBox> ConversionSession::ProgressBox() const
{
    LockGuard lock(m_boxLock);
    return m_pProgressBox;
}

void ConversionSession::CloseProgressBox()
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

HRESULT ConversionSession::OnError(const VARIANT& description)
{
    if (m_bNoProgress)
        return m_link.SendError(description);
    const com_ptr<IProgressBox> pBox = ProgressBox();
    if (!pBox)
        return E_UNEXPECTED;
    return Guarded([&] {
        Bstr sText;
        const HRESULT hr = ErrorText(description, sText);
        return FAILED(hr) ? hr : pBox->OnError(sText.get());
    });
}

HRESULT ConversionSession::OnError2(LONG_PTR lptrLineNum, LONG lptrFieldNum, BSTR bsDescription)
{
    if (m_bNoProgress)
        return S_OK;
    const com_ptr<IProgressBox> pBox = ProgressBox();
    return pBox ? pBox->OnError2(lptrLineNum, lptrFieldNum, bsDescription) : S_FALSE;
}

void ConversionSession::EndQuestions()
{
    if (const auto pQuestions = ProgressBox().as<IOpenQuestion>())
        pQuestions->EndQuestions();
}

HRESULT ConversionSession::GetResolutionName(LONG nResolution, BSTR* pName) const
{
    return m_settings.GetResolutionName(nResolution, pName);
}

} // namespace Hesperon::specifics
