// The records of a file as detection reads them: through the data parser, and normalised.
// Without a data parser every read fails.
#pragma once

#include "interfaces/IDataParser.h"
#include "platform/com_ptr.h"
#include "platform/values.h"
#include "src/parsing/ILastRecordHead.h"
#include "src/parsing/RecordText.h"

namespace Hesperon::specifics {

class RecordSource
{
public:
    explicit RecordSource(IQRL_TabulexConverter::IDataParser* pDataParser) : m_p(pDataParser) {}

    // True only where the position exists.
    bool Seek(ULONGLONG nPosition) { return m_p && m_p->put_Position(nPosition) == S_OK; }

    // The record at the position that Seek went to, or the last one; empty on failure.
    HRESULT Read(string_t& sRecord)
    {
        return Read(sRecord, m_p, &IQRL_TabulexConverter::IDataParser::get_CurrentRecord);
    }
    HRESULT ReadLast(string_t& sRecord)
    {
        com_ptr<ILastRecordHead> pHead;
        if (SUCCEEDED(query(m_p, pHead)))
            return Read(sRecord, pHead.get(), &ILastRecordHead::get_LastRecordHead);
        return Read(sRecord, m_p, &IQRL_TabulexConverter::IDataParser::get_LastRecord);
    }

    // As Read, but not normalised; null on failure.
    HRESULT ReadRaw(Bstr& record)
    {
        return m_p ? m_p->get_CurrentRecord(record.put()) : E_UNEXPECTED;
    }

private:
    template <class Source>
    static HRESULT Read(string_t& sRecord, Source* pSource,
                        HRESULT (STDMETHODCALLTYPE Source::*get)(BSTR*))
    {
        sRecord.clear();
        if (!pSource)
            return E_UNEXPECTED;
        Bstr text;
        const HRESULT hr = (pSource->*get)(text.put());
        if (SUCCEEDED(hr))
            sRecord = NormalisedRecord(text.view());
        return hr;
    }

    IQRL_TabulexConverter::IDataParser* m_p;
};

} // namespace Hesperon::specifics
