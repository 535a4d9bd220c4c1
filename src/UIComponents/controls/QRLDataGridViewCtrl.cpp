// The operations of a grid: its parser, its columns, and the count of its rows. What a view asks
// for is in QRLDataGridViewCtrlEvents.cpp, the stock properties in QRLDataGridViewCtrlStock.cpp.
//
// RecordCountChange runs on the file's worker. GetCount takes the data parser's lock, which the
// dialog's thread may hold while it waits for the worker's file, so nothing is locked meanwhile:
// the parser is taken out under the leaf lock, asked without it, and the view is told under it
// again. A view that goes takes the lock to leave, so it isn't called afterwards.

#include "src/UIComponents/controls/QRLDataGridViewCtrl.h"

#include <algorithm>

#include "diagnostics/FaultmereClient.h"
#include "module/Guarded.h"
#include "src/UIComponents/views/GuardedEvent.h"

using namespace IQRL_TabulexConverter;
using FaultmereUtil::Assert;
using FaultmereUtil::AssertOk;

namespace Hesperon::specifics {

namespace {

LONG RowsOf(ULONGLONG nCount)
{
    constexpr ULONGLONG kMostRows = 0x7FFFFFFF;
    return static_cast<LONG>(std::min(nCount, kMostRows));
}

// 0 where the parser can't tell.
LONG RowsOf(IDataParser* pParser)
{
    ULONGLONG nCount = 0;
    VARIANT_BOOL bComplete = VARIANT_FALSE;
    if (!pParser || FAILED(pParser->GetCount(&nCount, &bComplete)))
        return 0;
    return RowsOf(nCount);
}

} // namespace

// ---- the view

void CQRLDataGridViewCtrl::Attach(IGridView* pView)
{
    {
        LockGuard lock(m_lock);
        m_pView = pView;
    }
    if (!pView)
        return;
    if (!m_bEnabled)
        pView->SetEnabled(false);
    ShowHeader(!m_bTextMode);
    if (m_bTextMode)
        MakeTextColumn();
}

void CQRLDataGridViewCtrl::Move(const ControlPlace& place)
{
    if (m_pView)
        m_pView->Move(place);
}

void CQRLDataGridViewCtrl::ListenToPlainTypes(std::function<void()> listener)
{
    m_fnPlainType = std::move(listener);
}

// ---- parsers

HRESULT CQRLDataGridViewCtrl::get_DataParser(IDispatch** pVal)
{
    if (!pVal)
        return E_POINTER;
    *pVal = com_ptr<IDispatch>(m_pDataParser.get()).detach();
    return *pVal ? S_OK : E_POINTER;
}

HRESULT CQRLDataGridViewCtrl::put_DataParser(IDispatch* newVal)
{
    const HRESULT hr = TakeParsers(newVal);
    if (FAILED(hr)) {
        m_pRecordParser.reset();
        HoldParser(nullptr);
    }
    return AssertOk(hr);
}

// A parser that is held knows this grid already. To add it again would hold the grid for good.
HRESULT CQRLDataGridViewCtrl::TakeParsers(IDispatch* pParser)
{
    m_pRecordParser.reset();
    com_ptr<IDataParser> pData;
    HRESULT hr = query(pParser, pData);
    if (FAILED(hr))
        return hr;
    const bool bHeld = pData == m_pDataParser;
    HoldParser(pData);
    com_ptr<IDispatch> pRecords;
    hr = pData->get_RecordParser(pRecords.put());
    if (SUCCEEDED(hr))
        hr = query(pRecords.get(), m_pRecordParser);
    return FAILED(hr) || bHeld ? hr : pData->AddFileEventHandler(ListenerKey());
}

// The one held before is let go of without the lock.
void CQRLDataGridViewCtrl::HoldParser(com_ptr<IDataParser> pParser)
{
    LockGuard lock(m_lock);
    std::swap(m_pDataParser, pParser);
}

HRESULT CQRLDataGridViewCtrl::put_DataChangeSink(IDispatch* newVal)
{
    if (!newVal)
        return E_INVALIDARG;
    com_ptr<IDataChangeSink> pSink;
    const HRESULT hr = query(newVal, pSink);
    if (SUCCEEDED(hr))
        m_pDataChangeSink = std::move(pSink);
    return hr;
}

HRESULT CQRLDataGridViewCtrl::NotifySourceDetach()
{
    m_page.Clear();
    if (!m_pView)
        return S_OK;
    m_pView->ScrollToTop();
    m_pView->SetRowCount(0);
    if (!m_bTextMode)
        m_pView->ClearColumns();
    m_pView->Invalidate(true);
    return S_OK;
}

// ---- columns

HRESULT CQRLDataGridViewCtrl::get_TextMode(VARIANT_BOOL* pVal)
{
    return GiveOut(pVal, m_bTextMode);
}

HRESULT CQRLDataGridViewCtrl::put_TextMode(VARIANT_BOOL newVal)
{
    const bool bTextMode = newVal != VARIANT_FALSE;
    if (bTextMode == m_bTextMode)
        return S_OK;
    m_bTextMode = bTextMode;
    if (!m_pView)
        return S_OK;
    return Guarded([this] {
        ShowHeader(!m_bTextMode);
        if (m_bTextMode)
            MakeTextColumn();
        else
            OnCreateFields();
        m_pView->Invalidate(true);
        return S_OK;
    });
}

HRESULT CQRLDataGridViewCtrl::CreateFields()
{
    if (!m_pRecordParser)
        return E_POINTER;
    if (!m_pView)
        return E_UNEXPECTED;
    GuardedEvent([this] { OnCreateFields(); });
    return S_OK;
}

HRESULT CQRLDataGridViewCtrl::Refresh()
{
    if (m_pView)
        m_pView->Invalidate(false);
    return S_OK;
}

void CQRLDataGridViewCtrl::OnCreateFields()
{
    m_pView->SetRowCount(RowsOf(m_pDataParser.get()));
    if (m_pRecordParser && !m_bTextMode)
        MakeFieldColumns();
}

// A name that can't be read ends the columns.
void CQRLDataGridViewCtrl::MakeFieldColumns()
{
    constexpr LONG kPadding = 40;
    m_pView->ClearColumns();
    const LONG nPadding = 4 * m_pView->EdgeWidth() + kPadding;
    ULONG nFields = 0;
    if (FAILED(m_pRecordParser->get_FieldCount(&nFields)))
        return;
    for (ULONG i = 0; i < nFields; ++i) {
        Bstr sName;
        if (FAILED(m_pRecordParser->GetFieldNameLocalized(sName.put(), i)))
            return;
        const string_t sHeading = sName.str();
        const LONG nWidth = m_pView->HeadingWidth(sHeading.c_str()) + nPadding;
        Assert(m_pView->AddColumn(sHeading.c_str(), nWidth, true), "bRes");
    }
}

// As wide as the view is now, less the room of a scroll bar.
void CQRLDataGridViewCtrl::MakeTextColumn()
{
    constexpr LONG kScrollBar = 20;
    m_pView->ClearColumns();
    m_pView->AddColumn(OLESTR(""), m_pView->ClientWidth() - kScrollBar, false);
}

void CQRLDataGridViewCtrl::ShowHeader(bool bShow)
{
    Assert(m_pView->ShowHeader(bShow), "0 == m_ctlHD.m_hWnd");
}

// ---- the count of records

// Counts are of lines, and a new file's may be lower than the last one's: the difference is one
// of unsigned numbers, so such a count passes.
HRESULT CQRLDataGridViewCtrl::RecordCountChange(ULONGLONG nNewCount, VARIANT_BOOL bComplete)
{
    constexpr ULONGLONG kStep = 100;
    com_ptr<IDataParser> pParser;
    {
        LockGuard lock(m_lock);
        const bool bFew = bComplete == VARIANT_FALSE && nNewCount - m_nLastCount < kStep;
        if (bFew || !m_pView || !m_pDataParser)
            return S_OK;
        pParser = m_pDataParser;
    }
    ULONGLONG nCount = 0;
    VARIANT_BOOL bAll = VARIANT_FALSE;
    if (FAILED(pParser->GetCount(&nCount, &bAll)))
        return S_OK;
    LockGuard lock(m_lock);
    if (m_pView) {
        m_pView->PostRowCount(RowsOf(nCount));
        m_nLastCount = nNewCount;
    }
    return S_OK;
}

} // namespace Hesperon::specifics
