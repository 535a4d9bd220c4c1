#include "platform/text/CodePage.h"

#include <atomic>

#include "platform/text/CodePageConverter_icu.h"
#include "platform/text/UserLocale_posix.h"

namespace {

// A system without the page's converter still has Latin.
const CodePageConverter& PageOrLatin(UINT nCodePage)
{
    const CodePageConverter* page = CodePageConverter::Find(nCodePage);
    return page ? *page : *CodePageConverter::Find(kLatinCodePage);
}

std::atomic<const CodePageConverter*> g_ansiPage; // null until first asked for

const CodePageConverter& AnsiPage()
{
    if (const CodePageConverter* page = g_ansiPage.load(std::memory_order_acquire))
        return *page;
    const CodePageConverter* none = nullptr;
    const UINT nCodePage = LocaleCodePage(EnvironmentLocale("LC_CTYPE"));
    // Somebody may have set a page meanwhile; that one stays.
    g_ansiPage.compare_exchange_strong(none, &PageOrLatin(nCodePage));
    return *g_ansiPage.load(std::memory_order_acquire);
}

const CodePageConverter& PageOf(UINT nCodePage)
{
    const CodePageConverter& ansi = AnsiPage();
    return nCodePage == kAnsiCodePage || nCodePage == ansi.Number() ? ansi : PageOrLatin(nCodePage);
}

} // namespace

UINT AnsiCodePage()
{
    return AnsiPage().Number();
}

bool SetAnsiCodePage(UINT nCodePage)
{
    const CodePageConverter* page = CodePageConverter::Find(nCodePage);
    if (page)
        g_ansiPage.store(page, std::memory_order_release);
    return page != nullptr;
}

void DecodeBytes(UINT nCodePage, std::string_view bytes, string_t& out)
{
    PageOf(nCodePage).Decode(bytes, out);
}

bool IsAsciiText(UINT nCodePage, std::string_view bytes)
{
    return PageOf(nCodePage).IsAscii(bytes);
}

std::string EncodeText(UINT nCodePage, string_view_t text)
{
    return PageOf(nCodePage).Encode(text);
}
