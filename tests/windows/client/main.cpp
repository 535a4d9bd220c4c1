// A host that knows the component by its type library alone: neither headers nor numbers
// of the component are in it, but for the names of what it uses. It opens a file, prints
// what was found in it, lists its symbols, and converts it.
//
//   typelib_client LIBRARY FILE [analyse]
//
// The library is a file, or an identifier that is looked up in the registry. With "analyse" a
// person settles the file in the import dialog first, and the rest is left out.
#include <cstdio>

#include "Object.h"
#include "Sink.h"
#include "Text.h"

using _com_util::CheckError;

namespace {

Ref<IUnknown> Create(REFCLSID clsid)
{
    Ref<IUnknown> object;
    CheckError(CoCreateInstance(clsid, nullptr, CLSCTX_INPROC_SERVER, IID_IUnknown,
                                reinterpret_cast<void**>(&object)));
    return object;
}

void OfferResolutions(const Object& converter)
{
    const std::pair<long, const wchar_t*> kOffered[] = {{2, L"Minutes"}, {4, L"Days"}};
    for (const auto& [nId, pszName] : kOffered)
        CheckError(converter.Call(L"AddResolutionTemplate", {nId, pszName}));
}

std::string Value(const Object& object, const wchar_t* pszName)
{
    _variant_t value;
    const HRESULT hr = object.Get(pszName, value);
    return hr == S_OK ? TextOf(value) : "failed";
}

void PrintColumns(const Object& converter)
{
    _variant_t count;
    CheckError(converter.Get(L"FieldCount", count));
    for (long i = 0; i < static_cast<long>(count); ++i) {
        long nId = 0;
        _bstr_t form;
        CheckError(
            converter.Call(L"GetField", {i, Out(VT_I4, &nId), Out(VT_BSTR, form.GetAddress())}));
        std::printf("  column %ld: %ld %s\n", i, nId, Narrow(std::wstring(form)).c_str());
    }
}

void PrintSettings(const Object& converter)
{
    for (const wchar_t* pszName :
         {L"FieldCount", L"ResolutionTemplate", L"ResolutionSizeTemplate", L"ValidResolution",
          L"StartDateTime", L"EndDateTime", L"PriceMultiplier", L"SymbolName"})
        std::printf("  %s %s\n", Narrow(pszName).c_str(), Value(converter, pszName).c_str());
}

// Calls that are refused, with their results.
void PrintRefusals(const Object& converter)
{
    const auto print = [](const char* pszWhat, HRESULT hr) {
        std::printf("  %s %08lx\n", pszWhat, static_cast<unsigned long>(hr));
    };
    long nId = 0;
    BSTR form = nullptr;
    print("unknown field", converter.Put(L"FieldTemplate", 9L));
    print("unknown multiplier", converter.Put(L"PriceMultiplier", 3L));
    print("unknown mode", converter.Put(L"Mode", 2L));
    print("no such column",
          converter.Call(L"GetField", {99L, Out(VT_I4, &nId), Out(VT_BSTR, &form)}));
    print("name again", converter.Call(L"AddResolutionTemplate", {4L, L"Days"}));
}

void PrintCount(IUnknown* parser, const InterfaceType& type, Binding binding)
{
    ULONGLONG nCount = 0;
    VARIANT_BOOL bComplete = VARIANT_FALSE;
    CheckError(Object(parser, type, binding)
                   .Call(L"GetCount", {Out(VT_UI8, &nCount), Out(VT_BOOL, &bComplete)}));
    std::printf("  count %llu%s\n", nCount, bComplete ? "" : " or more");
}

void PumpUntilEnd()
{
    for (MSG message; GetMessageW(&message, nullptr, 0, 0) > 0;) {
        TranslateMessage(&message);
        DispatchMessageW(&message);
    }
}

void EnumerateSymbols(const Object& converter, const InterfaceType& sinkType)
{
    Sink sink(sinkType);
    CheckError(converter.Call(L"DoEnumSymbols", {sink.Interface()}));
    PumpUntilEnd();
    std::printf("  references %ld\n", sink.References());
}

void Convert(const Object& converter, const InterfaceType& sinkType)
{
    constexpr long kNoWindow = 0;
    Sink sink(sinkType);
    CheckError(converter.Call(L"CheckConverterSettings", {kNoWindow, sink.Interface()}));
    CheckError(converter.Call(L"DoConvert", {sink.Interface(), kNoWindow}));
    PumpUntilEnd();
    std::printf("  references %ld\n", sink.References());
}

void Host(const TypeLibrary& library, const wchar_t* pszFile, Binding binding)
{
    const ClassType converterClass = library.Class(L"CqrlTabulexConvertor");
    const InterfaceType sinkType = library.Interface(L"IqrlTabulexDataSink");
    const Object converter(Create(converterClass.clsid), converterClass.standard, binding);
    OfferResolutions(converter);
    CheckError(converter.Put(L"FileName", pszFile));
    PrintColumns(converter);
    PrintSettings(converter);
    PrintRefusals(converter);
    EnumerateSymbols(converter, sinkType);
    Convert(converter, sinkType);
    _variant_t parser;
    CheckError(converter.Get(L"DataParser", parser));
    PrintCount(parser.pdispVal, library.Interface(L"IDataParser"), binding);
}

void Analyse(const TypeLibrary& library, const wchar_t* pszFile)
{
    const ClassType converterClass = library.Class(L"CqrlTabulexConvertor");
    const Object converter(Create(converterClass.clsid), converterClass.standard,
                           Binding::Dispatch);
    OfferResolutions(converter);
    CheckError(converter.Put(L"FileName", pszFile));
    VARIANT_BOOL bStatus = VARIANT_FALSE;
    constexpr LONGLONG kActiveWindow = 0;
    CheckError(converter.Call(L"DoAnalyse", {Out(VT_BOOL, &bStatus), kActiveWindow}));
    std::printf("%s\n", bStatus ? "confirmed" : "cancelled");
    PrintColumns(converter);
    PrintSettings(converter);
    if (bStatus)
        Convert(converter, library.Interface(L"IqrlTabulexDataSink"));
}

int Run(const wchar_t* pszLibrary, const wchar_t* pszFile, bool bAnalyse)
{
    try {
        const TypeLibrary library(pszLibrary);
        std::printf("%s\n", Narrow(library.Name()).c_str());
        if (bAnalyse) {
            Analyse(library, pszFile);
            return 0;
        }
        std::printf("by slots\n");
        Host(library, pszFile, Binding::Slots);
        std::printf("by dispatch\n");
        Host(library, pszFile, Binding::Dispatch);
        return 0;
    } catch (const _com_error& error) {
        std::printf("failed: %08lx\n", static_cast<unsigned long>(error.Error()));
        return 1;
    }
}

} // namespace

int wmain(int argc, wchar_t** argv)
{
    const bool bAnalyse = argc == 4 && std::wstring(argv[3]) == L"analyse";
    if (argc != 3 && !bAnalyse) {
        std::fprintf(stderr, "usage: typelib_client LIBRARY FILE [analyse]\n");
        return 2;
    }
    CoInitialize(nullptr);
    const int nStatus = Run(argv[1], argv[2], bAnalyse);
    CoUninitialize();
    return nStatus;
}
