// Nothing may crash or hang, a run ends once, and a batch holds at most as many rows as it
// took lines.

#include <condition_variable>
#include <mutex>
#include <string>

#include "fuzz/Targets.h"
#include "interfaces/ClassIds.h"
#include "interfaces/FieldsAndResolutions.h"
#include "interfaces/IDataParser.h"
#include "interfaces/IDataParserEvents.h"
#include "interfaces/IRecordParser.h"
#include "module/ComObject.h"
#include "platform/values.h"
#include "tests/support/OfferAllResolutions.h"
#include "tests/support/TempFile.h"

using namespace IQRL_TabulexConverter;
using fuzz::Require;

namespace {

class CountingSink : public ComObject<CountingSink, Dual<IDataParserEvents>>
{
public:
    HRESULT STDMETHODCALLTYPE PutRecords(VARIANT vRecords, ULONGLONG nWithSkipped) override
    {
        LONG nLast = -1;
        SafeArrayGetUBound(vRecords.parray, 2, &nLast);
        Require(static_cast<ULONGLONG>(nLast + 1) <= nWithSkipped, "rows of a batch");
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE EndTransaction(VARIANT_BOOL) override
    {
        const std::lock_guard lock(m_mutex);
        Require(++m_nEnds == 1, "one end of a run");
        m_ended.notify_all();
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE OnError(VARIANT) override { return S_OK; }
    HRESULT STDMETHODCALLTYPE GetResolutionName(LONG, BSTR* Name) override
    {
        *Name = NewBstr(OLESTR("Resolution"));
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE OnError2(LONG_PTR, LONG, BSTR) override { return S_OK; }

    void Wait()
    {
        std::unique_lock lock(m_mutex);
        m_ended.wait(lock, [this] { return m_nEnds > 0; });
    }

private:
    std::mutex m_mutex;
    std::condition_variable m_ended;
    int m_nEnds = 0;
};

bool HasDateColumn(IRecordParser& parser)
{
    ULONG nIndex = 0;
    return parser.GetFieldIndex(TypeDate, &nIndex) == S_OK;
}

} // namespace

void fuzz::ConvertFile(const std::uint8_t* data, std::size_t nSize)
{
    static const TempFile file; // one for the process, rewritten for each input
    file.Write(std::string(reinterpret_cast<const char*>(data), nSize));
    com_ptr<IDataParser> parser;
    Require(SUCCEEDED(CoCreateInstance(CLSID_CDataParser, nullptr, CLSCTX_INPROC_SERVER,
                                       iid_of<IDataParser>, parser.put_void())),
            "a parser");
    com_ptr<IDispatch> object;
    parser->get_RecordParser(object.put());
    const com_ptr<IRecordParser> records = object.as<IRecordParser>();
    OfferAllResolutions(*records.get());
    Require(parser->put_FileName(Bstr(file.Name()).get()) == S_OK, "opening the file");

    // Without a date column the first bad line ends a run and the sink doesn't hear of it.
    com_ptr<CountingSink> sink;
    CreateObject(sink);
    if (HasDateColumn(*records.get()) && SUCCEEDED(parser->StartConversion(sink.get(), 1)))
        sink->Wait();
}
