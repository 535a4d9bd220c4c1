#include "platform/text/CodePage.h"

#include <algorithm>
#include <atomic>
#include <cstdint>
#include <string_view>

#include "platform/com_ptr.h"
#include "platform/text/AsciiText.h"
#include "platform/text/CodePageDetection_win32.h"
#include "platform/text/CodePageNames.h"

template <>
inline constexpr GUID iid_of<IMultiLanguage2> = {
    0xDCCFC164, 0x2B38, 0x11D2, {0xB7, 0xEC, 0x00, 0xC0, 0x4F, 0x8F, 0x5D, 0x9A}};

namespace {

constexpr CLSID kMultiLanguage = {
    0x275C23E2, 0x3747, 0x11D0, {0x9F, 0xEA, 0x00, 0xAA, 0x00, 0x3F, 0x86, 0x46}};

std::atomic<UINT> g_nAnsiCodePage = 0; // 0 until first asked for

// What conversions are made with.
UINT PageOf(UINT nCodePage)
{
    if (nCodePage == kAnsiCodePage)
        return AnsiCodePage();
    return IsValidCodePage(nCodePage) ? nCodePage : kLatinCodePage;
}

void AppendDecoded(UINT nPage, std::string_view bytes, string_t& out)
{
    if (bytes.empty())
        return;
    const std::size_t nBefore = out.size();
    const auto nBytes = static_cast<int>(bytes.size());
    out.resize(nBefore + bytes.size()); // a byte gives a unit at most
    const int nUnits =
        MultiByteToWideChar(nPage, 0, bytes.data(), nBytes, out.data() + nBefore, nBytes);
    out.resize(nBefore + static_cast<std::size_t>(std::max(nUnits, 0)));
}

// Not so for EBCDIC, and for pages whose ASCII bytes also spell other characters.
bool HasAsciiBytes(UINT nPage)
{
    std::string bytes;
    for (int n = 0; n < 0x80; ++n)
        bytes.push_back(static_cast<char>(n));
    string_t decoded;
    AppendDecoded(nPage, bytes, decoded);
    return std::ranges::equal(decoded, bytes);
}

// Bytes below 0x80 in front of others are ASCII. The answer for the last page is kept, with
// the page's number above it: a process reads nearly all in one.
bool StartsInAscii(UINT nPage)
{
    static std::atomic<std::uint64_t> last = 0;
    std::uint64_t answer = last;
    if (answer >> 1 != nPage) {
        answer = std::uint64_t{nPage} << 1 | (HasAsciiBytes(nPage) ? 1 : 0);
        last = answer;
    }
    return (answer & 1) != 0;
}

// Names in use beside the registered ones.
constexpr CodePageName kOtherNames[] = {
    {28591, "latin1"},
    {932, "sjis"},
    {20127, "ascii"},
};

} // namespace

UINT AnsiCodePage()
{
    const UINT nCodePage = g_nAnsiCodePage;
    return nCodePage ? nCodePage : GetACP();
}

bool SetAnsiCodePage(UINT nCodePage)
{
    if (!IsValidCodePage(nCodePage))
        return false;
    g_nAnsiCodePage = nCodePage;
    return true;
}

UINT CodePageByName(std::string_view name)
{
    if (const UINT nCodePage = RegisteredCodePage(name))
        return nCodePage;
    if (const UINT nCodePage = CodePageInName(name))
        return IsValidCodePage(nCodePage) ? nCodePage : 0;
    for (const CodePageName& row : kOtherNames)
        if (PlainName(name) == row.name)
            return row.nCodePage;
    return 0;
}

void DecodeBytes(UINT nCodePage, std::string_view bytes, string_t& out)
{
    const UINT nPage = PageOf(nCodePage);
    const std::size_t nAscii = StartsInAscii(nPage) ? AsciiPrefix(bytes) : 0;
    AppendAscii(bytes.substr(0, nAscii), out);
    AppendDecoded(nPage, bytes.substr(nAscii), out);
}

bool IsAsciiText(UINT nCodePage, std::string_view bytes)
{
    return StartsInAscii(PageOf(nCodePage)) && AsciiPrefix(bytes) == bytes.size();
}

// A character doesn't become another one that looks like it; pages that hold all characters
// know no such flag.
std::string EncodeText(UINT nCodePage, string_view_t text)
{
    const UINT nPage = PageOf(nCodePage);
    const auto nUnits = static_cast<int>(text.size());
    std::string bytes;
    for (const DWORD nFlags : {DWORD{WC_NO_BEST_FIT_CHARS}, DWORD{0}}) {
        const auto encode = [&](char* buffer, int nMost) {
            return nUnits == 0 ? 0
                               : WideCharToMultiByte(nPage, nFlags, text.data(), nUnits, buffer,
                                                     nMost, nullptr, nullptr);
        };
        bytes.resize(static_cast<std::size_t>(encode(nullptr, 0)));
        if (encode(bytes.data(), static_cast<int>(bytes.size())) > 0)
            break;
    }
    return bytes;
}

std::vector<DetectedCodePage> DetectCodePages(std::string_view bytes, std::size_t nMost)
{
    com_ptr<IMultiLanguage2> service;
    if (FAILED(CoCreateInstance(kMultiLanguage, nullptr, CLSCTX_INPROC_SERVER,
                                iid_of<IMultiLanguage2>, service.put_void())))
        return {};
    const auto detect = [&](char* sample, INT& nBytes, DetectEncodingInfo* entries, INT& nEntries) {
        return service->DetectInputCodepage(0, 0, sample, &nBytes, entries, &nEntries);
    };
    return DetectCodePages(bytes, nMost, detect);
}
