#include "platform/CodePage.h"

#include <algorithm>
#include <atomic>
#include <charconv>

#include <mlang.h>

#include "platform/com_ptr.h"

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

struct PageName
{
    std::string_view sName; // without separators, lower case
    UINT nCodePage;
};

constexpr PageName kPageNames[] = {
    {"utf8", 65001},     {"gbk", 936},         {"gb2312", 936},     {"gb18030", 54936},
    {"big5", 950},       {"shiftjis", 932},    {"sjis", 932},       {"euckr", 949},
    {"eucjp", 51932},    {"latin1", 28591},    {"iso88591", 28591}, {"iso88592", 28592},
    {"iso88595", 28595}, {"iso885915", 28605}, {"koi8r", 20866},    {"koi8u", 21866},
    {"usascii", 20127},  {"ascii", 20127},
};

std::string Plain(std::string_view name)
{
    std::string plain;
    for (const char c : name)
        if (c != '-' && c != '_' && c != ' ')
            plain += c >= 'A' && c <= 'Z' ? static_cast<char>(c + 0x20) : c;
    return plain;
}

UINT Number(std::string_view digits)
{
    UINT n = 0;
    const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), n);
    return error == std::errc() && end == digits.data() + digits.size() && IsValidCodePage(n) ? n
                                                                                              : 0;
}

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
    const std::string plain = Plain(name);
    const auto* at = std::ranges::find(kPageNames, std::string_view(plain), &PageName::sName);
    if (at != std::end(kPageNames))
        return at->nCodePage;
    for (const std::string_view prefix : {"windows", "cp", ""})
        if (plain.starts_with(prefix))
            return Number(std::string_view(plain).substr(prefix.size()));
    return 0;
}

void DecodeBytes(UINT nCodePage, std::string_view bytes, string_t& out)
{
    if (bytes.empty())
        return;
    const std::size_t nBefore = out.size();
    const auto nBytes = static_cast<int>(bytes.size());
    out.resize(nBefore + bytes.size()); // a byte gives a unit at most
    const int nUnits = MultiByteToWideChar(PageOf(nCodePage), 0, bytes.data(), nBytes,
                                           out.data() + nBefore, nBytes);
    out.resize(nBefore + static_cast<std::size_t>(std::max(nUnits, 0)));
}

std::string EncodeText(UINT nCodePage, string_view_t text)
{
    const UINT nPage = PageOf(nCodePage);
    const auto nUnits = static_cast<int>(text.size());
    const int nBytes = text.empty() ? 0
                                    : WideCharToMultiByte(nPage, 0, text.data(), nUnits, nullptr, 0,
                                                          nullptr, nullptr);
    std::string bytes(static_cast<std::size_t>(std::max(nBytes, 0)), '\0');
    if (nBytes > 0)
        WideCharToMultiByte(nPage, 0, text.data(), nUnits, bytes.data(), nBytes, nullptr, nullptr);
    return bytes;
}

// A system that doesn't offer the detection has no candidates, and leaves the entries as
// they were.
std::vector<DetectedCodePage> DetectCodePages(std::string_view bytes, std::size_t nMost)
{
    com_ptr<IMultiLanguage2> service;
    if (FAILED(CoCreateInstance(kMultiLanguage, nullptr, CLSCTX_INPROC_SERVER,
                                iid_of<IMultiLanguage2>, service.put_void())))
        return {};
    std::vector<DetectEncodingInfo> entries(nMost);
    std::string sample(bytes);
    auto nSize = static_cast<INT>(sample.size());
    auto nEntries = static_cast<INT>(nMost);
    if (FAILED(
            service->DetectInputCodepage(0, 0, sample.data(), &nSize, entries.data(), &nEntries)))
        return {};
    std::vector<DetectedCodePage> result;
    for (INT i = 0; i < nEntries; ++i)
        result.push_back({entries[static_cast<std::size_t>(i)].nCodePage,
                          entries[static_cast<std::size_t>(i)].nConfidence});
    return result;
}
