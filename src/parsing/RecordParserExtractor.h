// Scoped helpers through which a dialog reaches the record parser of a data parser,
// and the multipliers of that.
//
//   const CPriceMultiplierExtractor price(pDataParser);
//   if (FAILED(price.GetStatus()))
//       return price.GetStatus();
//   price.GetMultiplier()->put_Current(name);
//
// All reading is done in the constructor; the helper holds references to what it
// found, and nothing after a failure. Used by one thread.
#pragma once

#include "interfaces/IDataParser.h"
#include "interfaces/IRecordParser.h"
#include "interfaces/IValueMultiplier.h"
#include "platform/com_ptr.h"

namespace Hesperon::specifics {

class CRecordParserExtactor
{
public:
    explicit CRecordParserExtactor(IQRL_TabulexConverter::IDataParser* pDataParser);
    CRecordParserExtactor(const CRecordParserExtactor&) = delete;
    CRecordParserExtactor& operator=(const CRecordParserExtactor&) = delete;
    virtual ~CRecordParserExtactor() = default;

    // S_OK; OLE_E_BLANK without a data parser; the failure of reading its
    // RecordParser; E_NOTIMPL if that is something else, E_UNEXPECTED if it is
    // nothing.
    virtual HRESULT GetStatus() const { return m_hrStatus; }

protected:
    com_ptr<IQRL_TabulexConverter::IRecordParser> m_pRecordParser;
    HRESULT m_hrStatus;
};

// What the two helpers below share.
class MultiplierExtractor : public CRecordParserExtactor
{
public:
    // With a new reference; null unless the status, which is then also that of
    // reading the multiplier, is S_OK.
    com_ptr<IQRL_TabulexConverter::IValueMultiplier> GetMultiplier() const { return m_pMultiplier; }

protected:
    using Getter = HRESULT (STDMETHODCALLTYPE IQRL_TabulexConverter::IRecordParser::*)(IDispatch**);

    MultiplierExtractor(IQRL_TabulexConverter::IDataParser* pDataParser, Getter getter);

private:
    com_ptr<IQRL_TabulexConverter::IValueMultiplier> m_pMultiplier;
};

class CPriceMultiplierExtractor final : public MultiplierExtractor
{
public:
    explicit CPriceMultiplierExtractor(IQRL_TabulexConverter::IDataParser* pDataParser);
};

class CVolumeMultiplierExtractor final : public MultiplierExtractor
{
public:
    explicit CVolumeMultiplierExtractor(IQRL_TabulexConverter::IDataParser* pDataParser);
};

} // namespace Hesperon::specifics
