// A host: opens a quote file, prints what the library found in it, lists its symbols,
// and converts it.
#include <vector>

#include "../common/RowSink.h"
#include "ConsoleProgress.h"
#include "interfaces/ClassIds.h"
#include "interfaces/FieldsAndResolutions.h"
#include "interfaces/IqrlTabulexConvertor.h"
#include "interfaces/NativeHost.h"

using namespace IQRL_TabulexConverter;

namespace {

// The resolutions that this host can use. Only what is offered is ever inferred. Ticks and
// bars of ticks share an id, and are offered in this order.
constexpr struct
{
    LONG nId;
    const OLECHAR* sName;
} kOffered[] = {
    {HostResolutionTicks, OLESTR("Ticks")},
    {HostResolutionTicks, OLESTR("Tick Bars")},
    {HostResolutionCountBars, OLESTR("Count Bars")},
    {HostResolutionMinutes, OLESTR("Minutes")},
    {HostResolutionDays, OLESTR("Days")},
    {HostResolutionWeeks, OLESTR("Weeks")},
};

struct Options
{
    const char* pszFile = nullptr;
    bool bPortion = false;
    ULONGLONG nStart = 0, nCount = 0;
    unsigned nCancelAfter = 0; // batches; 0 for never
};

// Options and their values in pairs, and then the file.
bool Read(int argc, char** argv, Options& options)
{
    int i = 1;
    for (; i + 2 < argc; i += 2) {
        const std::string sOption = argv[i];
        if (sOption == "--cancel-after" &&
            std::sscanf(argv[i + 1], "%u", &options.nCancelAfter) == 1)
            continue;
        options.bPortion =
            sOption == "--portion" &&
            std::sscanf(argv[i + 1], "%llu:%llu", &options.nStart, &options.nCount) == 2;
        if (!options.bPortion)
            return false;
    }
    options.pszFile = argv[i];
    return i + 1 == argc;
}

// ---- what the file is like

void PrintDate(const char* pszWhat, const VARIANT& date)
{
    SYSTEMTIME t{};
    VariantTimeToSystemTime(date.date, &t);
    std::printf("%s %d-%02d-%02d %02d:%02d:%02d\n", pszWhat, t.wYear, t.wMonth, t.wDay, t.wHour,
                t.wMinute, t.wSecond);
}

// Prints the columns and returns their ids.
std::vector<LONG> PrintColumns(IqrlTabulexConvertor& converter)
{
    LONG nFields = 0;
    converter.get_FieldCount(&nFields);
    std::vector<LONG> ids(static_cast<std::size_t>(nFields));
    LONG i = 0;
    for (LONG& nId : ids) {
        Bstr form;
        converter.GetField(i++, &nId, form.put());
        std::printf("column %ld: %ld %s\n", long{i}, long{nId}, Utf8(form.view()).c_str());
    }
    return ids;
}

void PrintSettings(IqrlTabulexConvertor& converter)
{
    LONG nResolution = 0, nSize = 0;
    Variant start, end;
    converter.get_ResolutionTemplate(&nResolution);
    converter.get_ResolutionSizeTemplate(&nSize);
    converter.get_StartDateTime(start.put());
    converter.get_EndDateTime(end.put());
    std::printf("resolution %ld, size %ld\n", long{nResolution}, long{nSize});
    PrintDate("from", start);
    PrintDate("to", end);
}

// ---- sessions

void PumpUntilEnd(const RowSink& sink)
{
    while (!sink.HasEnded())
        TabulexPumpMessages(100);
}

void ListSymbols(IqrlTabulexConvertor& converter, RowSink& sink)
{
    if (SUCCEEDED(converter.DoEnumSymbols(&sink)))
        PumpUntilEnd(sink);
}

bool Convert(IqrlTabulexConvertor& converter, RowSink& sink, const Options& options)
{
    // S_FALSE: the sink got the reason by OnError. A portion checks by itself.
    if (!options.bPortion && converter.CheckConverterSettings(0, &sink) != S_OK)
        return false;
    sink.m_onBatch = [&] {
        if (sink.Batches() == options.nCancelAfter)
            converter.Unadvise(&sink); // Rollback is heard before it returns
    };
    const HRESULT hr = options.bPortion
                           ? converter.DoConvertPortion(0, &sink, options.nStart, options.nCount)
                           : converter.DoConvert(&sink, 0);
    if (FAILED(hr))
        return false;
    PumpUntilEnd(sink);
    sink.PrintResult();
    return sink.IsCommitted();
}

} // namespace

int main(int argc, char** argv)
{
    Options options;
    if (!Read(argc, argv, options)) {
        std::fprintf(stderr,
                     "usage: tabulex_host [--portion START:COUNT] [--cancel-after N] FILE\n");
        return 2;
    }
    TabulexSetLanguage(TABULEX_LANGUAGE_ENGLISH);
    TabulexSetProgressViews(&ConsoleProgress::Make, nullptr);

    com_ptr<IqrlTabulexConvertor> converter;
    if (FAILED(CoCreateInstance(CLSID_CqrlTabulexConvertor, nullptr, CLSCTX_INPROC_SERVER,
                                iid_of<IqrlTabulexConvertor>, converter.put_void())))
        return 1;
    for (const auto& offer : kOffered)
        converter->AddResolutionTemplate(offer.nId, Bstr(offer.sName).get());

    const Bstr path(std::filesystem::path(options.pszFile).u16string());
    if (converter->put_FileName(path.get()) != S_OK) {
        std::fprintf(stderr, "%s can't be opened\n", options.pszFile);
        return 1;
    }
    // A session is known by the address of its sink. Both sinks live until the end, so that
    // their addresses differ.
    const com_ptr<RowSink> rows(new RowSink(PrintColumns(*converter.get())));
    const com_ptr<RowSink> symbols(new RowSink);
    PrintSettings(*converter.get());
    ListSymbols(*converter.get(), *symbols.get());
    return Convert(*converter.get(), *rows.get(), options) ? 0 : 1;
}
