// How the lines of a batch become rows. The current line is that at m_nRow + m_nSkipped: a line
// that passes fills the row m_nRow and counts there, one that is rejected counts in m_nSkipped. At
// the end the array is cut to m_nRow records.
//
// Each check asks the plan first, if that has read the line. Where it isn't sure the line goes to
// the judge for good: it is parsed by the record parser's calls, which go on with the check.

#include "src/data/run/RecordBatch.h"

#include "diagnostics/FaultmereClient.h"
#include "src/data/SymbolHash.h"
#include "src/parsing/DataTypes.h"
#include "src/parsing/plan/RowPlan.h"

using FaultmereUtil::Assert;

namespace Hesperon::specifics {

static_assert(LineBuffer::kPadding >= PlainRecord::kPadding);

RecordBatch::RecordBatch(ConversionRun& run, ULONGLONG nLast,
                         IQRL_TabulexConverter::IRecordParser* pRecordParser,
                         IQRL_TabulexConverter::IDataParserEvents* pHost)
    : m_run(run), m_settings(run.Settings()), m_order(run.Order()), m_memory(run.Memory()),
      m_pRecordParser(pRecordParser), m_pHost(pHost), m_nCount(m_memory.lines.size()),
      m_nFirst(nLast - m_nCount + 1),
      // A batch without columns ends the run, unless the check of a line sets S_OK.
      m_hr(m_settings.arFieldIndices.empty() ? S_FALSE : S_OK)
{
    Assert(m_pRecordParser != nullptr, "pRecordParser");
    Assert(m_pHost != nullptr, "pHost");
}

HRESULT RecordBatch::Parse()
{
    const BatchLockGuard lock(m_pRecordParser);
    ULONG nFields = 0;
    HRESULT hr = m_pRecordParser->get_FieldCount(&nFields);
    if (SUCCEEDED(hr))
        hr =
            m_memory.array.Prepare(static_cast<ULONG>(ColumnCount()), static_cast<ULONG>(m_nCount));
    if (FAILED(hr))
        return hr;
    m_cells.emplace(m_memory.array.get());
    hr = ParseLines(lock);
    m_cells.reset();
    return hr;
}

HRESULT RecordBatch::ParseLines(const BatchLockGuard& lock)
{
    const auto plan = [&] { m_pPlan = lock.PlanRows(m_settings.arFieldIndices); };
    plan();
    while (m_nRow + m_nSkipped < m_nCount) {
        switch (ParseLine()) {
        case Line::Passed:
            ++m_nRow;
            break;
        case Line::Rejected:
            ++m_nSkipped;
            if (!m_bPlanned) // the sink was asked, and may have changed the layout
                plan();
            break;
        case Line::Finished:
            CatchUp();
            m_nSkipped = m_nCount - m_nRow;
            return m_hr;
        case Line::Failed:
            return m_hr;
        }
    }
    if (m_nCount != 0)
        CatchUp();
    return m_hr;
}

// Only the last dimension of an array can be cut, which is why it is the one of the records.
HRESULT RecordBatch::Deliver()
{
    if (m_nSkipped != 0) {
        SAFEARRAYBOUND records{static_cast<ULONG>(m_nCount - m_nSkipped), 0};
        SafeArrayRedim(m_memory.array.get(), &records);
    }
    VARIANT vRecords;
    VariantInit(&vRecords);
    vRecords.vt = VT_ARRAY | VT_VARIANT;
    vRecords.parray = m_memory.array.get();
    const HRESULT hr = m_pHost->PutRecords(vRecords, m_nCount);
    return hr != S_OK ? hr : m_hr;
}

// ---- what becomes of a bad line

RecordBatch::Line RecordBatch::Fail(HRESULT hr)
{
    m_hr = hr;
    return Line::Failed;
}

// A sink that answers with anything but S_OK ends the run; a cancel has ended it already.
template <class Ask>
RecordBatch::Line RecordBatch::Reject(Ask ask)
{
    if (m_run.IsSilent())
        return Line::Rejected;
    return !m_run.IsCancelled() && ask() == S_OK ? Line::Rejected : Fail(E_INVALIDARG);
}

// ---- the checks of a line

RecordBatch::Line RecordBatch::ParseLine()
{
    Assert(m_memory.lines.Length(LineInBatch()) != 0,
           "!m_sTempRecords[n + nSkipRecordCount].IsEmpty()");
    DateWithStatus date;
    m_bPlanned = m_pPlan && m_pPlan->ReadMoment(m_memory.lines.Bytes(LineInBatch()), date.date);
    if (kBothRoads && m_bPlanned)
        ProveMoment(date.date);
    Line line = Line::Passed;
    if (!m_bPlanned) {
        GoToJudge();
        line = ReadDateTime(date);
    }
    if (line == Line::Passed && !IsFirstOfRun())
        line = CheckOrder(date);
    if (line != Line::Passed)
        return line;
    // From here on the next line is compared with this one, also if this one is rejected.
    m_order.dtLast = date;
    line = CheckRange(date);
    return line == Line::Passed ? FillRow() : line;
}

// If the line doesn't parse, the checks of its date and its fields fail.
void RecordBatch::GoToJudge()
{
    m_bPlanned = false;
    m_pRecordParser->Parse(CurrentLine());
}

void RecordBatch::CatchUp()
{
    if (m_bPlanned)
        m_pRecordParser->Parse(m_memory.lines[std::min(LineInBatch(), m_nCount - 1)]);
}

RecordBatch::Line RecordBatch::ReadDateTime(DateWithStatus& date)
{
    if (m_pRecordParser->get_CurrentDateTime(m_vDateTime.put()) != S_OK)
        return Reject([&] { return ShowDateTimeIncrementError(); });
    date.date = m_vDateTime.date;
    return Line::Passed;
}

// The order isn't checked where the symbol changes: a file may be sorted by symbol and then by
// date.
RecordBatch::Line RecordBatch::CheckOrder(const DateWithStatus& date)
{
    bool bNewSymbol = false;
    if (m_settings.nSymbolField != kNoField) {
        const Line line = CheckSymbol(bNewSymbol);
        if (line != Line::Passed)
            return line;
    }
    return bNewSymbol ? Line::Passed : CheckResolution(date);
}

HRESULT RecordBatch::ReadSymbol(string_view_t& sSymbol, Bstr& sOwned)
{
    HRESULT hr = S_OK;
    if (m_bPlanned) {
        sSymbol = m_pPlan->Text(m_settings.nSymbolField);
        if (kBothRoads)
            ProveSymbol(sSymbol);
    } else {
        hr = m_pRecordParser->GetFieldText(CurrentLine(), m_settings.nSymbolField, sOwned.put());
        sSymbol = sOwned.view();
    }
    return hr;
}

// Texts that differ may be equal to the locale.
bool RecordBatch::IsAskedSymbol(string_view_t sSymbol) const
{
    const Bstr& sFilter = m_settings.sSymbolName;
    return sFilter.view().empty() || sSymbol == sFilter.view() ||
           VarBstrCmp(Bstr(sSymbol).get(), sFilter.get(), LOCALE_USER_DEFAULT, 0) == VARCMP_EQ;
}

// Symbols are compared by their hashes, as in an enumeration; the filter compares texts. Both give
// for a text what they gave for the same text in the line before.
RecordBatch::Line RecordBatch::CheckSymbol(bool& bNewSymbol)
{
    if (m_bPlanned && m_lastSymbol.sText == m_pPlan->Bytes(m_settings.nSymbolField))
        return m_lastSymbol.bAsked ? Line::Passed : Line::Rejected;
    Bstr sOwned;
    string_view_t sSymbol;
    m_hr = ReadSymbol(sSymbol, sOwned);
    if (FAILED(m_hr))
        return Line::Failed;
    const bool bAsked = IsAskedSymbol(sSymbol);
    m_lastSymbol.sText = m_bPlanned ? m_pPlan->Bytes(m_settings.nSymbolField) : std::string_view();
    m_lastSymbol.bAsked = bAsked;
    if (!bAsked)
        return Line::Rejected;
    const ULONGLONG nHash = SymbolHash(sSymbol);
    bNewSymbol = nHash != m_order.nLastSymbolHash;
    m_order.nLastSymbolHash = nHash;
    return Line::Passed;
}

RecordBatch::Line RecordBatch::CheckResolution(const DateWithStatus& date)
{
    if (m_bPlanned && m_pPlan->IsGoodStep(date.date - m_order.dtLast.date)) {
        if (kBothRoads)
            ProveStep();
        m_hr = S_OK;
        return Line::Passed;
    }
    if (m_bPlanned)
        GoToJudge();
    VARIANT vLast;
    VariantInit(&vLast);
    vLast.vt = VT_DATE;
    vLast.date = m_order.dtLast.date;
    Bstr sError;
    const HRESULT hr = m_pRecordParser->CheckResolution(vLast, sError.put(), m_pHost);
    if (FAILED(hr))
        return Fail(hr);
    m_hr = S_OK;
    if (hr == S_OK)
        return Line::Passed;
    if (!sError)
        return Fail(E_INVALIDARG);
    return Reject([&] { return ShowResolutionCheckError(sError.get()); });
}

// Dates beyond either end aren't faults of the file, so the sink isn't asked about them.
RecordBatch::Line RecordBatch::CheckRange(const DateWithStatus& date)
{
    if (date < m_settings.dtStart)
        return Line::Rejected;
    if (!(m_settings.dtEnd < date))
        return Line::Passed;
    // Records come in ascending order, so no later one lies in the range.
    m_hr = S_FALSE;
    return Line::Finished;
}

RecordBatch::Line RecordBatch::FillRow()
{
    VARIANT* const row = m_cells->Data() + m_nRow * ColumnCount();
    if (m_bPlanned && m_pPlan->ReadRow(row)) {
        if (kBothRoads)
            ProveRow(row);
        return Line::Passed;
    }
    if (m_bPlanned)
        GoToJudge();
    return FillRowByCalls(row);
}

RecordBatch::Line RecordBatch::FillRowByCalls(VARIANT* row)
{
    const std::size_t nColumns = ColumnCount();
    for (std::size_t k = 0; k < nColumns; ++k) {
        if (m_pRecordParser->GetFieldValue(&row[k], m_settings.arFieldIndices[k]) == S_OK)
            continue;
        // The next record fills this row again.
        for (std::size_t i = 0; i <= k; ++i)
            VariantClear(&row[i]);
        return Reject([&] { return ShowFieldError(k); });
    }
    return Line::Passed;
}

} // namespace Hesperon::specifics
