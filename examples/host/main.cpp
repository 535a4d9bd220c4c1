// A host in one page: opens a quote file, prints the columns that the library found
// in it, converts it and counts the rows.
#include "RowCounter.h"
#include "interfaces/ClassIds.h"
#include "interfaces/IDataParser.h"
#include "interfaces/IRecordParser.h"
#include "interfaces/NativeHost.h"

using namespace IQRL_TabulexConverter;

namespace {

struct Resolution
{
    LONG nId;
    const OLECHAR* sName;
};

// The resolutions that this host can use, by the library's ids. Only what is offered
// is ever inferred.
constexpr Resolution kOffered[] = {
    {1, OLESTR("Ticks")},   {2, OLESTR("Tick Bars")}, {3, OLESTR("Count Bars")},
    {5, OLESTR("Minutes")}, {6, OLESTR("Days")},      {7, OLESTR("Weeks")},
};

HRESULT OfferResolutions(IRecordParser& records)
{
    constexpr ULONG nCount = std::size(kOffered);
    Variant ids = Variant::FromArray(SafeArrayCreateVector(VT_I4, 0, nCount), VT_I4);
    Variant names = Variant::FromArray(SafeArrayCreateVector(VT_BSTR, 0, nCount), VT_BSTR);
    for (LONG i = 0; i < static_cast<LONG>(nCount); ++i) {
        LONG nId = kOffered[i].nId;
        SafeArrayPutElement(ids.parray, &i, &nId);
        SafeArrayPutElement(names.parray, &i, Bstr(kOffered[i].sName).get());
    }
    return records.SetResolutionTemplates(ids, names);
}

void PrintColumns(IRecordParser& records)
{
    ULONG nFields = 0;
    records.get_FieldCount(&nFields);
    for (ULONG i = 0; i < nFields; ++i) {
        LONG nType = -1;
        Bstr name, form;
        records.GetFieldType(i, &nType);
        records.GetFieldName(name.put(), i);
        records.GetFieldTemplate(form.put(), i);
        std::printf("column %u: %s %s\n", i + 1, nType < 0 ? "-" : Utf8(name.get()).c_str(),
                    Utf8(form.get()).c_str());
    }
}

int Convert(IDataParser& parser)
{
    constexpr ULONG_PTR nTransaction = 1; // any number that this host doesn't use twice at a time
    com_ptr<RowCounter> sink(new RowCounter);
    // S_FALSE: the sink has been told why not.
    if (parser.CheckConverterSettings(0, sink.get()) != S_OK)
        return 1;
    if (FAILED(parser.StartConversion(sink.get(), nTransaction)))
        return 1;
    const bool bGood = sink->Wait();
    std::printf("%llu rows, %llu bad lines, %s\n", sink->Rows(), sink->BadLines(),
                bGood ? "complete" : "failed");
    return bGood ? 0 : 1;
}

} // namespace

int main(int argc, char** argv)
{
    if (argc != 2) {
        std::fprintf(stderr, "usage: tabulex_host FILE\n");
        return 2;
    }
    TabulexSetLanguage(TABULEX_LANGUAGE_ENGLISH);

    com_ptr<IDataParser> parser;
    if (FAILED(CoCreateInstance(CLSID_CDataParser, nullptr, CLSCTX_INPROC_SERVER,
                                iid_of<IDataParser>, parser.put_void())))
        return 1;
    com_ptr<IDispatch> object;
    parser->get_RecordParser(object.put());
    const com_ptr<IRecordParser> records = object.as<IRecordParser>();
    if (!records || FAILED(OfferResolutions(*records.get())))
        return 1;

    const Bstr path(std::filesystem::path(argv[1]).u16string());
    if (parser->put_FileName(path.get()) != S_OK) {
        std::fprintf(stderr, "%s can't be opened\n", argv[1]);
        return 1;
    }
    PrintColumns(*records.get());
    return Convert(*parser.get());
}
