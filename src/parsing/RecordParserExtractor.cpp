// The first step that fails gives the status, and those after it aren't taken.

#include "src/parsing/RecordParserExtractor.h"

namespace Hesperon::specifics {

using IQRL_TabulexConverter::IDataParser;
using IQRL_TabulexConverter::IRecordParser;

namespace {

HRESULT ReadRecordParser(IDataParser* pDataParser, com_ptr<IRecordParser>& result)
{
    if (!pDataParser)
        return OLE_E_BLANK;
    com_ptr<IDispatch> object;
    const HRESULT hr = pDataParser->get_RecordParser(object.put());
    if (FAILED(hr))
        return hr;
    if (object && FAILED(query(object.get(), result)))
        return E_NOTIMPL;
    return result ? S_OK : E_UNEXPECTED;
}

} // namespace

CRecordParserExtactor::CRecordParserExtactor(IDataParser* pDataParser)
    : m_hrStatus(ReadRecordParser(pDataParser, m_pRecordParser))
{}

MultiplierExtractor::MultiplierExtractor(IDataParser* pDataParser, Getter getter)
    : CRecordParserExtactor(pDataParser)
{
    if (FAILED(m_hrStatus))
        return;
    com_ptr<IDispatch> object;
    m_hrStatus = (m_pRecordParser.get()->*getter)(object.put());
    if (FAILED(m_hrStatus))
        return;
    m_hrStatus = object ? query(object.get(), m_pMultiplier) : E_UNEXPECTED;
}

CPriceMultiplierExtractor::CPriceMultiplierExtractor(IDataParser* pDataParser)
    : MultiplierExtractor(pDataParser, &IRecordParser::get_PriceMultiplier)
{}

CVolumeMultiplierExtractor::CVolumeMultiplierExtractor(IDataParser* pDataParser)
    : MultiplierExtractor(pDataParser, &IRecordParser::get_VolumeMultiplier)
{}

} // namespace Hesperon::specifics
