// Making data parsers and a sink for the benchmarks, through the class map.
#pragma once

#include <condition_variable>
#include <mutex>
#include <stdexcept>

#include "interfaces/ClassIds.h"
#include "interfaces/IDataParser.h"
#include "interfaces/IDataParserEvents.h"
#include "interfaces/IRecordParser.h"
#include "module/ComObject.h"
#include "platform/File.h"
#include "platform/values.h"
#include "tests/support/OfferAllResolutions.h"

namespace bench {

using IQRL_TabulexConverter::IDataParser;
using IQRL_TabulexConverter::IDataParserEvents;
using IQRL_TabulexConverter::IRecordParser;

inline void Check(HRESULT hr, const char* szWhat)
{
    if (hr != S_OK)
        throw std::runtime_error(szWhat);
}

// A parser with the file's layout found.
inline com_ptr<IDataParser> OpenFile(const std::string& sPath)
{
    com_ptr<IDataParser> parser;
    Check(CoCreateInstance(IQRL_TabulexConverter::CLSID_CDataParser, nullptr, CLSCTX_INPROC_SERVER,
                           iid_of<IDataParser>, parser.put_void()),
          "CDataParser");
    com_ptr<IDispatch> records;
    Check(parser->get_RecordParser(records.put()), "RecordParser");
    Check(OfferAllResolutions(*records.as<IRecordParser>().get()), "SetResolutionTemplates");
    const Bstr name(PathFromBytes(sPath));
    Check(parser->put_FileName(name.get()), "FileName");
    return parser;
}

// Reads every cell of every batch, and waits for the end of the conversion.
class ReadingSink : public ComObject<ReadingSink, Dual<IDataParserEvents>>
{
public:
    HRESULT STDMETHODCALLTYPE PutRecords(VARIANT vRecords, ULONGLONG) override;
    HRESULT STDMETHODCALLTYPE EndTransaction(VARIANT_BOOL bResult) override;
    HRESULT STDMETHODCALLTYPE OnError(VARIANT) override { return S_OK; }
    HRESULT STDMETHODCALLTYPE GetResolutionName(LONG, BSTR*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE OnError2(LONG_PTR, LONG, BSTR) override { return E_FAIL; }

    // True if it went well.
    bool Wait();
    ULONGLONG Rows() const { return m_nRows; }
    double Sum() const { return m_fSum; }

private:
    std::mutex m_mutex;
    std::condition_variable m_ended;
    bool m_bEnded = false;
    bool m_bResult = false;
    ULONGLONG m_nRows = 0;
    double m_fSum = 0;
};

} // namespace bench
