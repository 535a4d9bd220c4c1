// How a sink hears of the bad lines of a batch.

#include "src/data/RecordBatch.h"
#include "src/parsing/DataTypes.h"

namespace Hesperon::specifics {

ULONGLONG CRecordBatch::LineNumber() const
{
    return m_parser.LineOf(m_nFirst + m_nRow + m_nSkipped);
}

// A date that is fine leaves the time to blame.
HRESULT CRecordBatch::ShowDateTimeIncrementError()
{
    Bstr sError;
    for (const unsigned uiType : {TypeDate, TypeTime}) {
        const std::optional<ULONG> nField = FindField(uiType);
        if (!nField)
            return E_INVALIDARG;
        const HRESULT hr = m_pRecordParser->GetFieldError(sError.put(), *nField);
        if (FAILED(hr))
            return hr;
        if (hr != S_FALSE || uiType == TypeTime)
            return TellSink(*nField, sError.get());
    }
    return E_INVALIDARG;
}

HRESULT CRecordBatch::ShowResolutionCheckError(BSTR sError)
{
    return m_pHost->OnError2(static_cast<LONG_PTR>(LineNumber() + 1), kWholeRecord, sError);
}

HRESULT CRecordBatch::ShowFieldError(std::size_t nColumn)
{
    const ULONG nField = m_parser.m_arFieldIndices[nColumn];
    Bstr sError;
    const HRESULT hr = m_pRecordParser->GetFieldError(sError.put(), nField);
    return FAILED(hr) ? hr : TellSink(nField, sError.get());
}

// Lines and fields count from 1 for the sink.
HRESULT CRecordBatch::TellSink(ULONG nField, BSTR sError)
{
    return m_pHost->OnError2(static_cast<LONG_PTR>(LineNumber() + 1), static_cast<LONG>(nField + 1),
                             sError);
}

std::optional<ULONG> CRecordBatch::FindField(unsigned uiType)
{
    for (const ULONG nField : m_parser.m_arFieldIndices) {
        Bstr sName;
        m_pRecordParser->GetFieldName(sName.put(), nField);
        if (sName.view() == TypeName(uiType))
            return nField;
    }
    return {};
}

} // namespace Hesperon::specifics
