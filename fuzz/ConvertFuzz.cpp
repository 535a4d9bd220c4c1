// Any bytes as a quote file: opened, its layout found, converted to the end. Nothing
// may crash or hang, a run ends once, and no record is told twice.

#include <condition_variable>
#include <cstdio>
#include <cstdlib>
#include <mutex>
#include <string>

#include <unistd.h>

#include "interfaces/ClassIds.h"
#include "interfaces/IDataParser.h"
#include "interfaces/IDataParserEvents.h"
#include "interfaces/IRecordParser.h"
#include "module/ComObject.h"
#include "platform/File.h"
#include "platform/values.h"

using namespace IQRL_TabulexConverter;

namespace {

void Require(bool bHolds, const char* szWhat)
{
    if (bHolds)
        return;
    std::fprintf(stderr, "broken: %s\n", szWhat);
    std::abort();
}

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

// One file a process, rewritten for each input.
const std::string& WriteInput(const std::uint8_t* data, std::size_t nSize)
{
    static const std::string sPath =
        "/tmp/tabulex-fuzz-" + std::to_string(static_cast<long>(::getpid()));
    std::FILE* file = std::fopen(sPath.c_str(), "wb");
    Require(file != nullptr, "the input's file");
    std::fwrite(data, 1, nSize, file);
    std::fclose(file);
    return sPath;
}

void OfferResolutions(IRecordParser& parser)
{
    SAFEARRAY* ids = SafeArrayCreateVector(VT_I4, 0, 8);
    SAFEARRAY* names = SafeArrayCreateVector(VT_BSTR, 0, 8);
    for (LONG i = 0; i < 8; ++i) {
        const Bstr name(OLESTR("Resolution"));
        SafeArrayPutElement(ids, &i, &i);
        SafeArrayPutElement(names, &i, name.get());
    }
    parser.SetResolutionTemplates(Variant::FromArray(ids, VT_I4),
                                  Variant::FromArray(names, VT_BSTR));
}

bool HasDateColumn(IRecordParser& parser)
{
    constexpr LONG kDate = 1;
    ULONG nIndex = 0;
    return parser.GetFieldIndex(kDate, &nIndex) == S_OK;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t nSize)
{
    com_ptr<IDataParser> parser;
    Require(SUCCEEDED(CoCreateInstance(CLSID_CDataParser, nullptr, CLSCTX_INPROC_SERVER,
                                       iid_of<IDataParser>, parser.put_void())),
            "a parser");
    com_ptr<IDispatch> object;
    parser->get_RecordParser(object.put());
    const com_ptr<IRecordParser> records = object.as<IRecordParser>();
    OfferResolutions(*records.get());
    const Bstr name(PathFromBytes(WriteInput(data, nSize)));
    Require(parser->put_FileName(name.get()) == S_OK, "opening the file");

    // Without a date column the first bad line ends a run with no word to the sink.
    com_ptr<CountingSink> sink;
    CreateObject(sink);
    if (HasDateColumn(*records.get()) && SUCCEEDED(parser->StartConversion(sink.get(), 1)))
        sink->Wait();
    return 0;
}
