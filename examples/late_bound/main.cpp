// A host that isn't linked to the library and calls its objects by name: it loads the
// library that it is given, opens a quote file, prints its columns, and converts it.
#include <filesystem>

#include "../common/RowSink.h"
#include "ByName.h"
#include "Library.h"
#include "interfaces/ClassIds.h"
#include "interfaces/FieldsAndResolutions.h"
#include "interfaces/Module.h"
#include "interfaces/NativeHost.h"

using namespace IQRL_TabulexConverter;

namespace {

void Require(HRESULT hr, const char* pszWhat)
{
    if (FAILED(hr))
        throw std::runtime_error(pszWhat);
}

// Only the class factory is called by its own interface; the object has IDispatch alone.
ByName CreateConverter()
{
    const auto getClassObject = Library::Entry<decltype(DllGetClassObject)>("DllGetClassObject");
    com_ptr<IClassFactory> factory;
    com_ptr<IDispatch> object;
    Require(getClassObject(CLSID_CqrlTabulexConvertor, iid_of<IClassFactory>, factory.put_void()),
            "no class");
    Require(factory->CreateInstance(nullptr, iid_of<IDispatch>, object.put_void()), "no object");
    return ByName(object);
}

// Ticks and bars of ticks share an id.
void OfferResolutions(const ByName& converter)
{
    constexpr std::pair<LONG, const OLECHAR*> kOffered[] = {
        {HostResolutionTicks, OLESTR("Ticks")},
        {HostResolutionTicks, OLESTR("Tick Bars")},
        {HostResolutionCountBars, OLESTR("Count Bars")},
        {HostResolutionMinutes, OLESTR("Minutes")},
        {HostResolutionDays, OLESTR("Days")},
        {HostResolutionWeeks, OLESTR("Weeks")},
    };
    for (const auto& [nId, pszName] : kOffered)
        Require(converter.Call(OLESTR("AddResolutionTemplate"), nId, Bstr(pszName).get()),
                "AddResolutionTemplate");
}

// Prints the columns and returns their ids.
std::vector<LONG> PrintColumns(const ByName& converter)
{
    Variant count;
    Require(converter.Get(OLESTR("FieldCount"), count), "FieldCount");
    std::vector<LONG> ids(static_cast<std::size_t>(count.lVal));
    LONG i = 0;
    for (LONG& nId : ids) {
        Bstr form;
        Require(converter.Call(OLESTR("GetField"), i++, &nId, form.put()), "GetField");
        std::printf("column %ld: %ld %s\n", long{i}, long{nId}, Utf8(form.view()).c_str());
    }
    return ids;
}

// The count of records is certain once the file has been read to its end.
void PrintCount(const ByName& converter)
{
    Variant object;
    Require(converter.Get(OLESTR("DataParser"), object), "DataParser");
    const ByName parser{com_ptr<IDispatch>(object.pdispVal)};
    ULONGLONG nCount = 0;
    VARIANT_BOOL bComplete = VARIANT_FALSE;
    Require(parser.Call(OLESTR("GetCount"), &nCount, &bComplete), "GetCount");
    std::printf("%s%llu records\n", bComplete == VARIANT_FALSE ? "at least " : "", nCount);
}

bool Convert(const ByName& converter, const std::vector<LONG>& fieldIds, unsigned nCancelAfter)
{
    const com_ptr<RowSink> sink(new RowSink(fieldIds));
    IDispatch* const pSink = sink.get();
    sink->m_onBatch = [&] {
        if (sink->Batches() == nCancelAfter)
            converter.Call(OLESTR("Unadvise"), pSink); // Rollback is heard before it returns
    };
    const LONG kNoWindow = 0;
    if (converter.Call(OLESTR("CheckConverterSettings"), kNoWindow, pSink) != S_OK)
        return false; // the sink got the reason by OnError
    Require(converter.Call(OLESTR("DoConvert"), pSink, kNoWindow), "DoConvert");
    const auto pump = Library::Entry<decltype(TabulexPumpMessages)>("TabulexPumpMessages");
    while (!sink->HasEnded())
        pump(100);
    sink->PrintResult();
    return sink->IsCommitted();
}

bool Run(const char* pszFile, unsigned nCancelAfter)
{
    Library::Entry<decltype(TabulexSetLanguage)>("TabulexSetLanguage")(TABULEX_LANGUAGE_ENGLISH);
    const ByName converter = CreateConverter();
    OfferResolutions(converter);
    const Bstr path(std::filesystem::path(pszFile).u16string());
    if (converter.Put(OLESTR("FileName"), path.get()) != S_OK)
        throw std::runtime_error("the file can't be opened");
    const std::vector<LONG> fieldIds = PrintColumns(converter);
    if (!Convert(converter, fieldIds, nCancelAfter))
        return false;
    PrintCount(converter);
    return true;
}

} // namespace

int main(int argc, char** argv)
{
    unsigned nCancelAfter = 0; // batches; 0 for never
    if (argc < 3 || argc > 4 || (argc == 4 && std::sscanf(argv[3], "%u", &nCancelAfter) != 1)) {
        std::fprintf(stderr, "usage: tabulex_late_bound LIBRARY FILE [CANCEL-AFTER]\n");
        return 2;
    }
    try {
        Library::Load(argv[1]);
        return Run(argv[2], nCancelAfter) ? 0 : 1;
    } catch (const std::runtime_error& fault) {
        std::fprintf(stderr, "%s\n", fault.what());
        return 1;
    }
}
