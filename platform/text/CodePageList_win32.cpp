#include <mlang.h>

#include "platform/com_ptr.h"
#include "platform/text/CodePage.h"
#include "platform/threads/Apartment.h"

template <>
inline constexpr GUID iid_of<IMultiLanguage> = {
    0x275C23E1, 0x3747, 0x11D0, {0x9F, 0xEA, 0x00, 0xAA, 0x00, 0x3F, 0x86, 0x46}};

namespace {

constexpr CLSID kMultiLanguageService = {
    0x275C23E2, 0x3747, 0x11D0, {0x9F, 0xEA, 0x00, 0xAA, 0x00, 0x3F, 0x86, 0x46}};
constexpr DWORD kValidPages = 0x20000; // MIMECONTF_VALID

} // namespace

std::vector<CodePageDescription> CodePages()
{
    const ThreadApartment apartment; // the service is a component
    com_ptr<IMultiLanguage> service;
    com_ptr<IEnumCodePage> list;
    if (FAILED(CoCreateInstance(kMultiLanguageService, nullptr, CLSCTX_INPROC_SERVER,
                                iid_of<IMultiLanguage>, service.put_void())) ||
        FAILED(service->EnumCodePages(kValidPages, list.put())))
        return {};
    std::vector<CodePageDescription> pages;
    MIMECPINFO page{};
    for (ULONG nGot = 0; list->Next(1, &page, &nGot) == S_OK && nGot == 1;)
        pages.push_back({page.uiCodePage, page.wszDescription});
    return pages;
}
