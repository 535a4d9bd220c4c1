// A host on Windows that needs no registration: it is linked to the library's entries. It
// converts a quote file, and has a message loop like any other program.
#include "../common/RowSink.h"
#include "interfaces/ClassIds.h"
#include "interfaces/FieldsAndResolutions.h"
#include "interfaces/IqrlTabulexConvertor.h"
#include "interfaces/Module.h"

using namespace IQRL_TabulexConverter;

namespace {

com_ptr<IqrlTabulexConvertor> CreateConverter()
{
    com_ptr<IClassFactory> factory;
    com_ptr<IqrlTabulexConvertor> converter;
    if (SUCCEEDED(DllGetClassObject(CLSID_CqrlTabulexConvertor, iid_of<IClassFactory>,
                                    factory.put_void())))
        factory->CreateInstance(nullptr, iid_of<IqrlTabulexConvertor>, converter.put_void());
    return converter;
}

std::vector<LONG> FieldIds(IqrlTabulexConvertor& converter)
{
    LONG nFields = 0;
    converter.get_FieldCount(&nFields);
    std::vector<LONG> ids(static_cast<std::size_t>(nFields));
    LONG i = 0;
    for (LONG& nId : ids) {
        Bstr form;
        converter.GetField(i++, &nId, form.put());
        std::printf("column %ld: %ld %s\n", i, nId, Utf8(form.view()).c_str());
    }
    return ids;
}

// The sink is called while this thread looks at its messages; such a call isn't a message
// that GetMessage would return with.
void RunMessagesUntilEnd(const RowSink& sink)
{
    while (!sink.HasEnded()) {
        MsgWaitForMultipleObjects(0, nullptr, FALSE, INFINITE, QS_ALLINPUT);
        MSG message;
        while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) {
            TranslateMessage(&message);
            DispatchMessageW(&message);
        }
    }
}

int Convert(const wchar_t* pszFile)
{
    const com_ptr<IqrlTabulexConvertor> converter = CreateConverter();
    if (!converter)
        return 1;
    // What this host can use.
    converter->AddResolutionTemplate(HostResolutionMinutes, Bstr(L"Minutes").get());
    converter->AddResolutionTemplate(HostResolutionDays, Bstr(L"Days").get());
    if (converter->put_FileName(Bstr(pszFile).get()) != S_OK) {
        std::fprintf(stderr, "%ls can't be opened\n", pszFile);
        return 1;
    }
    const com_ptr<RowSink> sink(new RowSink(FieldIds(*converter.get())));
    // A portion skips bad lines without asking.
    if (FAILED(converter->DoConvertPortion(0, sink.get(), 0, ~0ull)))
        return 1;
    RunMessagesUntilEnd(*sink.get());
    sink->PrintResult();
    return sink->IsCommitted() ? 0 : 1;
}

} // namespace

int wmain(int argc, wchar_t** argv)
{
    if (argc != 2) {
        std::fprintf(stderr, "usage: windows_host FILE\n");
        return 2;
    }
    CoInitialize(nullptr); // a single-threaded apartment, as the objects want it
    const int nStatus = Convert(argv[1]);
    CoUninitialize();
    return nStatus;
}
