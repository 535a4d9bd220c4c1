// Parsing, the state that it goes through, and the links of a record parser. An object does
// nothing before its first Reset; the first record after a Reset shows the layout, and all
// later ones are parsed with it.

#include "src/parsing/RecordParser.h"

#include "platform/values.h"
#include "src/parsing/ColumnParsing.h"
#include "src/parsing/RecordText.h"
#include "src/parsing/templates/TextTests.h"

namespace Hesperon::specifics {

using IQRL_TabulexConverter::IDataParser;
using IQRL_TabulexConverter::IFileHandlerEvents;

// Finding the layout needs the data parser's lock first, so no batch may begin with it.
bool CRecordParser::EnterBatch()
{
    m_cs.lock();
    const bool bGranted = m_state.m_phase != ParsePhase::Reset;
    if (!bGranted)
        m_cs.unlock();
    return bGranted;
}

// Without the memory for a plan there is none.
RowPlan* CRecordParser::PlanRows(std::span<const ULONG> fields)
try {
    if (m_state.m_phase != ParsePhase::Ready)
        return nullptr;
    if (!m_pPlan)
        m_pPlan = std::make_unique<RowPlan>();
    const RowPlan::Multipliers multipliers{m_pPriceMultiplier.get(), m_pVolumeMultiplier.get()};
    return m_pPlan->Prepare(m_state, fields, multipliers) ? m_pPlan.get() : nullptr;
} catch (const std::bad_alloc&) {
    m_pPlan.reset();
    return nullptr;
}

// ---- parsing --------------------------------------------------------------------

// Only the first record of a layout has to do with the data parser.
HRESULT CRecordParser::Parse(BSTR bsRecord)
{
    {
        LockGuard lock(m_cs);
        if (m_state.m_phase != ParsePhase::Reset)
            return Guarded([&] { return ParseSample(TextOf(bsRecord)); });
    }
    return LockedWithLink([&] { return ParseSample(TextOf(bsRecord)); });
}

HRESULT CRecordParser::ParseSample(string_view_t sRecord)
{
    sRecord = sRecord.substr(0, kMaxText);
    switch (m_state.m_phase) {
    case ParsePhase::Created:
        return S_OK;
    case ParsePhase::Reset:
        m_state.m_phase = ParsePhase::Ready;
        return Detect(DetectionCause::FirstRecord, sRecord);
    case ParsePhase::Ready:
        break;
    }
    m_state.m_sCurrentRecord = sRecord;
    NormaliseRecord(m_state.m_sCurrentRecord);
    ParseColumns(m_state, m_state.m_sCurrentRecord);
    return S_OK;
}

// A copy works on its own from now on, but shares the multipliers, and its link stays that
// of the source until someone puts another.
HRESULT CRecordParser::Clone(IDispatch** newObj)
{
    if (!newObj)
        return E_POINTER;
    *newObj = nullptr;
    return Locked([&] {
        com_ptr<CRecordParser> clone;
        if (const HRESULT hr = CreateObject(clone); FAILED(hr))
            return hr;
        clone->m_state = m_state;
        clone->m_state.m_bSmartResolution = false; // an editor's wish, not part of the layout
        clone->m_pPriceMultiplier = m_pPriceMultiplier;
        clone->m_pVolumeMultiplier = m_pVolumeMultiplier;
        *newObj = clone.detach();
        return S_OK;
    });
}

// Dividers that were found stay in m_dividers, but count as not found.
HRESULT CRecordParser::Reset()
{
    return Locked([&] {
        m_state.m_bAutoHeader = true;
        m_state.m_bDividerFound = false;
        m_state.ForgetColumns();
        return S_OK;
    });
}

HRESULT CRecordParser::RecreateFealds()
{
    return LockedWithLink([&] { return Detect(DetectionCause::Dividers); });
}

HRESULT CRecordParser::IsHeader(BSTR bsRecord)
{
    return Locked([&] {
        const string_t sRecord = NormalisedRecord(TextOf(bsRecord));
        return IsHeaderRecord(sRecord, m_state.m_dividers) ? S_OK : S_FALSE;
    });
}

HRESULT CRecordParser::Detect(DetectionCause cause, string_view_t sRecord)
{
    return LayoutDetection(m_state, *this, m_report).Run(cause, sRecord);
}

void CRecordParser::KeepDetectionReport(bool bKeep)
{
    LockGuard lock(m_cs);
    m_report.Keep(bKeep);
}

std::vector<DetectionNote> CRecordParser::GetDetectionNotes()
{
    LockGuard lock(m_cs);
    return m_report.Notes();
}

// ---- links ----------------------------------------------------------------------

namespace {

template <class I>
HRESULT HandOut(I* object, IDispatch** pVal)
{
    if (!pVal)
        return E_POINTER;
    *pVal = com_ptr<IDispatch>(object).detach();
    return object ? S_OK : E_FAIL;
}

// The plain pointer of an object that stays its owner's.
template <class I>
HRESULT TakeUncounted(IDispatch* object, I*& result)
{
    if (!object) {
        result = nullptr;
        return S_OK;
    }
    com_ptr<I> p;
    const HRESULT hr = query(object, p);
    if (SUCCEEDED(hr))
        result = p.get();
    return hr;
}

} // namespace

HRESULT CRecordParser::get_DataParser(IDispatch** pVal)
{
    return Locked([&] { return HandOut(m_state.m_pDataParser, pVal); });
}

HRESULT CRecordParser::put_DataParser(IDispatch* newVal)
{
    return Locked([&] { return TakeUncounted(newVal, m_state.m_pDataParser); });
}

HRESULT CRecordParser::get_EventHandler(IDispatch** pVal)
{
    return Locked([&] { return HandOut(m_pEventHandler, pVal); });
}

HRESULT CRecordParser::put_EventHandler(IDispatch* newVal)
{
    return Locked([&] { return TakeUncounted(newVal, m_pEventHandler); });
}

HRESULT CRecordParser::get_LinesToSkip(ULONG* pVal)
{
    return LockedWithLink([&] {
        return m_state.m_pDataParser ? m_state.m_pDataParser->get_HeaderOffset(pVal) : E_UNEXPECTED;
    });
}

// From here on header lines are no longer looked for: the user knows better.
HRESULT CRecordParser::put_LinesToSkip(ULONG newVal)
{
    return LockedWithLink([&]() -> HRESULT {
        if (!m_state.m_pDataParser)
            return E_UNEXPECTED;
        m_state.m_bAutoHeader = false;
        m_state.m_pDataParser->put_HeaderOffset(newVal);
        return Detect(DetectionCause::SkippedLines);
    });
}

} // namespace Hesperon::specifics
