#include "src/data/RecordBatch.h"

#include "diagnostics/FaultmereClient.h"
#include "src/data/SymbolHash.h"
#include "src/parsing/IBatchLock.h"

using FaultmereUtil::Assert;

namespace Hesperon::specifics {

CRecordBatch::CRecordBatch(CDataParser& parser, ULONGLONG nLast,
                           IQRL_TabulexConverter::IRecordParser* pRecordParser,
                           IQRL_TabulexConverter::IDataParserEvents* pHost)
    : m_parser(parser), m_pRecordParser(pRecordParser), m_pHost(pHost),
      m_array(parser.m_batchArray), m_nCount(parser.m_sTempRecords.size()),
      m_nFirst(nLast - m_nCount + 1),
      // Without columns a batch ends the run, unless a check of a line says otherwise.
      m_hr(parser.m_arFieldIndices.empty() ? S_FALSE : S_OK)
{
    Assert(m_pRecordParser != nullptr, "pRecordParser");
    Assert(m_pHost != nullptr, "pHost");
}

HRESULT CRecordBatch::Parse()
{
    const BatchLockGuard lock(m_pRecordParser);
    ULONG nFields = 0;
    HRESULT hr = m_pRecordParser->get_FieldCount(&nFields);
    if (SUCCEEDED(hr))
        hr = m_array.Prepare(static_cast<ULONG>(ColumnCount()), static_cast<ULONG>(m_nCount));
    if (FAILED(hr))
        return hr;
    m_cells.emplace(m_array.get());
    hr = ParseLines();
    m_cells.reset();
    return hr;
}

HRESULT CRecordBatch::ParseLines()
{
    while (m_nRow + m_nSkipped < m_nCount) {
        switch (ParseLine()) {
        case Line::Passed:
            ++m_nRow;
            break;
        case Line::Rejected:
            ++m_nSkipped;
            break;
        case Line::Finished:
            m_nSkipped = m_nCount - m_nRow;
            break;
        case Line::Failed:
            return m_hr;
        }
    }
    return m_hr;
}

HRESULT CRecordBatch::Deliver()
{
    if (m_nSkipped != 0) {
        SAFEARRAYBOUND records{static_cast<ULONG>(m_nCount - m_nSkipped), 0};
        SafeArrayRedim(m_array.get(), &records);
    }
    VARIANT vRecords;
    VariantInit(&vRecords);
    vRecords.vt = VT_ARRAY | VT_VARIANT;
    vRecords.parray = m_array.get();
    const HRESULT hr = m_pHost->PutRecords(vRecords, m_nCount);
    return hr != S_OK ? hr : m_hr;
}

// ---- the checks of a line

CRecordBatch::Line CRecordBatch::ParseLine()
{
    Assert(SysStringLen(CurrentLine()) != 0, "!m_sTempRecords[n + nSkipRecordCount].IsEmpty()");
    // A line that doesn't parse shows in its date and its fields.
    m_pRecordParser->Parse(CurrentLine());

    SDateWithStatus date;
    Line line = ReadDateTime(date);
    if (line == Line::Passed && !IsFirstOfRun())
        line = CheckOrder();
    if (line != Line::Passed)
        return line;
    // From here on the line counts for the order of the next one.
    m_parser.m_dtLast = date;
    line = CheckRange(date);
    return line == Line::Passed ? FillRow() : line;
}

CRecordBatch::Line CRecordBatch::ReadDateTime(SDateWithStatus& date)
{
    if (m_pRecordParser->get_CurrentDateTime(m_vDateTime.put()) != S_OK)
        return RejectBadDateTime();
    date.date = m_vDateTime.date;
    return Line::Passed;
}

// The first record of a symbol begins a sequence of its own: a file may be sorted by
// symbol and then by date.
CRecordBatch::Line CRecordBatch::CheckOrder()
{
    bool bNewSymbol = false;
    if (m_parser.m_nSymbolField != kNoField) {
        const Line line = CheckSymbol(bNewSymbol);
        if (line != Line::Passed)
            return line;
    }
    return bNewSymbol ? Line::Passed : CheckResolution();
}

CRecordBatch::Line CRecordBatch::CheckSymbol(bool& bNewSymbol)
{
    Bstr sSymbol;
    m_hr = m_pRecordParser->GetFieldText(CurrentLine(), m_parser.m_nSymbolField, sSymbol.put());
    if (FAILED(m_hr))
        return Line::Failed;
    const Bstr& sFilter = m_parser.m_sSymbolName;
    if (!sFilter.view().empty() &&
        VarBstrCmp(sSymbol.get(), sFilter.get(), LOCALE_USER_DEFAULT, 0) != VARCMP_EQ)
        return Line::Rejected;
    const ULONGLONG nHash = SymbolHash(sSymbol.view());
    bNewSymbol = nHash != m_parser.m_nLastSymbolHash;
    m_parser.m_nLastSymbolHash = nHash;
    return Line::Passed;
}

CRecordBatch::Line CRecordBatch::CheckResolution()
{
    VARIANT vLast;
    VariantInit(&vLast);
    vLast.vt = VT_DATE;
    vLast.date = m_parser.m_dtLast.date;
    Bstr sError;
    const HRESULT hr = m_pRecordParser->CheckResolution(vLast, sError.put(), m_pHost);
    if (FAILED(hr))
        return Fail(hr);
    m_hr = S_OK;
    return hr == S_OK ? Line::Passed : RejectBadOrder(sError.get());
}

CRecordBatch::Line CRecordBatch::CheckRange(const SDateWithStatus& date)
{
    if (date < m_parser.m_dtStart)
        return Line::Rejected;
    if (!(m_parser.m_dtEnd < date))
        return Line::Passed;
    // Records come in ascending order, so no later one can lie in the range.
    m_hr = S_FALSE;
    return Line::Finished;
}

CRecordBatch::Line CRecordBatch::FillRow()
{
    const std::size_t nColumns = ColumnCount();
    VARIANT* const row = m_cells->Data() + m_nRow * nColumns;
    for (std::size_t k = 0; k < nColumns; ++k) {
        if (m_pRecordParser->GetFieldValue(&row[k], m_parser.m_arFieldIndices[k]) == S_OK)
            continue;
        // The row is filled again by the next record.
        for (std::size_t i = 0; i <= k; ++i)
            VariantClear(&row[i]);
        return RejectBadField(k);
    }
    return Line::Passed;
}

// ---- what becomes of a bad line

CRecordBatch::Line CRecordBatch::Fail(HRESULT hr)
{
    m_hr = hr;
    return Line::Failed;
}

CRecordBatch::Line CRecordBatch::TakeAnswer(HRESULT hrAnswer)
{
    return hrAnswer == S_OK ? Line::Rejected : Fail(E_INVALIDARG);
}

CRecordBatch::Line CRecordBatch::RejectBadDateTime()
{
    if (m_parser.m_bDisableErrorNotify)
        return Line::Rejected;
    return TakeAnswer(ShowDateTimeIncrementError());
}

CRecordBatch::Line CRecordBatch::RejectBadOrder(BSTR sError)
{
    if (!sError)
        return Fail(E_INVALIDARG);
    if (m_parser.m_bDisableErrorNotify)
        return Line::Rejected;
    return TakeAnswer(ShowResolutionCheckError(sError));
}

CRecordBatch::Line CRecordBatch::RejectBadField(std::size_t nColumn)
{
    if (m_parser.m_bDisableErrorNotify)
        return Line::Rejected;
    return TakeAnswer(ShowFieldError(nColumn));
}

} // namespace Hesperon::specifics
