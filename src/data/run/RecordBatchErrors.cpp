// How bad lines are reported to the sink.

#include "src/data/run/RecordBatch.h"
#include "src/parsing/DataTypes.h"

namespace Hesperon::specifics {

ULONGLONG RecordBatch::LineNumber() const
{
    return m_settings.lines.LineOf(m_nFirst + m_nRow + m_nSkipped);
}

// If the date has no error, the time must have one.
HRESULT RecordBatch::ShowDateTimeIncrementError()
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
            return Report(*nField, sError.get());
    }
    return E_INVALIDARG;
}

HRESULT RecordBatch::ShowResolutionCheckError(BSTR sError)
{
    return m_pHost->OnError2(static_cast<LONG_PTR>(LineNumber() + 1), kWholeRecord, sError);
}

HRESULT RecordBatch::ShowFieldError(std::size_t nColumn)
{
    const ULONG nField = m_settings.arFieldIndices[nColumn];
    Bstr sError;
    const HRESULT hr = m_pRecordParser->GetFieldError(sError.put(), nField);
    return FAILED(hr) ? hr : Report(nField, sError.get());
}

// The sink counts lines and fields from 1.
HRESULT RecordBatch::Report(ULONG nField, BSTR sError)
{
    return m_pHost->OnError2(static_cast<LONG_PTR>(LineNumber() + 1), static_cast<LONG>(nField + 1),
                             sError);
}

std::optional<ULONG> RecordBatch::FindField(unsigned uiType)
{
    for (const ULONG nField : m_settings.arFieldIndices) {
        Bstr sName;
        m_pRecordParser->GetFieldName(sName.put(), nField);
        if (sName.view() == TypeName(uiType))
            return nField;
    }
    return {};
}

} // namespace Hesperon::specifics
