// One code page, in three ways by what it is like.
//
// The ASCII bytes at the front are widened without any converter where the page allows it. A
// page of single bytes is two tables, filled once from the converter. All other pages use the
// system's converters, of which a few idle ones are kept, since opening one costs more than a
// line of text.

#include "platform/text/CodePageConverter_icu.h"

#include <algorithm>
#include <cstring>
#include <mutex>

#include <unicode/ucnv.h>
#include <unicode/ucnv_cb.h>

#include "platform/text/AsciiText.h"
#include "platform/text/CodePageNames_icu.h"

namespace {

constexpr OLECHAR kReplacement = 0xFFFD;
constexpr std::size_t kRoom = 16; // units above a byte each, for marks and pairs

// What the pages of one and two bytes do with a pair that is none.
struct PairPage
{
    UINT nCodePage;
    OLECHAR mark;
    std::string_view leads; // first and last of each range of lead bytes
    std::string_view lone;  // bytes that the page leaves undefined ...
    string_view_t units;    // ... and what each of them becomes
};

constexpr PairPage kPairPages[] = {
    {932, 0x30FB, "\x81\x9F\xE0\xFC", "\x80\xA0\xFD\xFE\xFF", u"\x0080\xF8F0\xF8F1\xF8F2\xF8F3"},
    {936, u'?', "\x81\xFE", "", u""},
    {949, u'?', "\x81\xFE", "", u""},
    {950, u'?', "\x81\xFE", "", u""},
};

bool IsLead(const PairPage& page, char byte)
{
    const auto nByte = static_cast<unsigned char>(byte);
    for (std::size_t n = 0; n + 1 < page.leads.size(); n += 2)
        if (nByte >= static_cast<unsigned char>(page.leads[n]) &&
            nByte <= static_cast<unsigned char>(page.leads[n + 1]))
            return true;
    return false;
}

// Of a sequence that begins with this byte.
OLECHAR Mark(const PairPage& page, char first)
{
    const std::size_t nAt = page.lone.find(first);
    return nAt == page.lone.npos ? page.mark : page.units[nAt];
}

extern "C" {

// ICU's own substitution gives U+001A for some pages. Where the second byte of a pair could stand
// alone, ICU takes the first one for malformed and would go on with the second; here one mark
// stands for both, but for a zero, as with the converters of Windows.
void ReplaceMalformed(const void* context, UConverterToUnicodeArgs* args, const char* bytes,
                      int32_t nBytes, UConverterCallbackReason reason, UErrorCode* status)
{
    if (reason > UCNV_IRREGULAR)
        return;
    *status = U_ZERO_ERROR;
    const auto* page = static_cast<const PairPage*>(context);
    const OLECHAR mark = page ? Mark(*page, *bytes) : kReplacement;
    if (page && IsLead(*page, *bytes) && nBytes == 1 && args->source < args->sourceLimit &&
        *args->source != 0)
        ++args->source;
    ucnv_cbToUWriteUChars(args, &mark, 1, 0, status);
}

void ReplaceMissing(const void*, UConverterFromUnicodeArgs* args, const UChar*, int32_t, UChar32,
                    UConverterCallbackReason reason, UErrorCode* status)
{
    if (reason > UCNV_IRREGULAR)
        return;
    *status = U_ZERO_ERROR;
    const UChar mark = u'?';
    const UChar* source = &mark;
    // As text, so that pages whose '?' isn't the ASCII byte have theirs.
    ucnv_cbFromUWriteUChars(args, &source, source + 1, 0, status);
}
}

UConverter* OpenConverter(UINT nCodePage)
{
    UErrorCode status = U_ZERO_ERROR;
    UConverter* converter = ucnv_open(ConverterName(nCodePage).c_str(), &status);
    if (U_FAILURE(status))
        return nullptr;
    const auto* page = std::ranges::find(kPairPages, nCodePage, &PairPage::nCodePage);
    ucnv_setToUCallBack(converter, ReplaceMalformed, page != std::end(kPairPages) ? page : nullptr,
                        nullptr, nullptr, &status);
    ucnv_setFromUCallBack(converter, ReplaceMissing, nullptr, nullptr, nullptr, &status);
    return converter;
}

// Pages without shift states, in which a character that begins with a byte below 0x80 is
// that ASCII character.
bool IsStateless(const UConverter* converter)
{
    switch (ucnv_getType(converter)) {
    case UCNV_SBCS:
    case UCNV_MBCS:
    case UCNV_DBCS:
    case UCNV_LATIN_1:
    case UCNV_US_ASCII:
    case UCNV_UTF8:
        return true;
    default:
        return false;
    }
}

// What a lone byte decodes to; the replacement where it is no whole character.
OLECHAR UnitOfByte(UConverter* converter, int nByte)
{
    const char byte = static_cast<char>(nByte);
    UChar units[8] = {};
    UErrorCode status = U_ZERO_ERROR;
    ucnv_resetToUnicode(converter);
    const int32_t n = ucnv_toUChars(converter, units, 8, &byte, 1, &status);
    return U_SUCCESS(status) && n == 1 ? units[0] : kReplacement;
}

struct Node
{
    const CodePageConverter* page;
    const Node* next;
};

std::atomic<const Node*> g_pages; // grows at the front only

const CodePageConverter* FindMade(UINT nCodePage)
{
    for (const Node* node = g_pages.load(std::memory_order_acquire); node; node = node->next)
        if (node->page->Number() == nCodePage)
            return node->page;
    return nullptr;
}

} // namespace

// Pages are never freed, so those that are made can be found without the lock. The second look,
// under it, keeps two threads from making the same one.
const CodePageConverter* CodePageConverter::Find(UINT nCodePage)
{
    if (const CodePageConverter* page = FindMade(nCodePage))
        return page;
    static std::mutex making;
    const std::lock_guard lock(making);
    if (const CodePageConverter* page = FindMade(nCodePage))
        return page;
    UConverter* converter = OpenConverter(nCodePage);
    if (!converter)
        return nullptr;
    const auto* page = new CodePageConverter(nCodePage, converter);
    g_pages.store(new Node{page, g_pages.load()}, std::memory_order_release);
    return page;
}

CodePageConverter::CodePageConverter(UINT nCodePage, UConverter* converter) : m_nCodePage(nCodePage)
{
    FillTables(converter);
    Return(converter);
}

// In the table for encoding 0 means that the page lacks a unit; only the unit 0 has the byte 0.
void CodePageConverter::FillTables(UConverter* converter)
{
    const bool bStateless = IsStateless(converter);
    m_bSingleByte = bStateless && ucnv_getMaxCharSize(converter) == 1;
    m_bAsciiIsSelf = bStateless;
    for (int n = 0; n < 256; ++n) {
        OLECHAR& unit = m_units[static_cast<std::size_t>(n)];
        unit = UnitOfByte(converter, n);
        if (n < 0x80 && unit != n)
            m_bAsciiIsSelf = false;
        if (unit == kReplacement)
            unit = static_cast<OLECHAR>(n);
    }
    if (!m_bSingleByte)
        return;
    m_bytes.resize(0x10000);
    for (std::size_t n = 0; n < 256; ++n)
        m_bytes[m_units[n]] = static_cast<char>(n);
}

bool CodePageConverter::IsAscii(std::string_view bytes) const
{
    return m_bAsciiIsSelf && AsciiPrefix(bytes) == bytes.size();
}

void CodePageConverter::Decode(std::string_view bytes, string_t& out) const
{
    const std::size_t nAscii = m_bAsciiIsSelf ? AsciiPrefix(bytes) : 0;
    AppendAscii(bytes.substr(0, nAscii), out);
    bytes.remove_prefix(nAscii);
    if (bytes.empty())
        return;
    if (m_bSingleByte)
        DecodeByTable(bytes, out);
    else
        DecodeByConverter(bytes, out);
}

void CodePageConverter::DecodeByTable(std::string_view bytes, string_t& out) const
{
    const std::size_t nStart = out.size();
    out.resize(nStart + bytes.size());
    std::transform(bytes.begin(), bytes.end(), out.data() + nStart,
                   [this](char byte) { return m_units[static_cast<unsigned char>(byte)]; });
}

void CodePageConverter::DecodeByConverter(std::string_view bytes, string_t& out) const
{
    UConverter* converter = Borrow();
    if (!converter)
        return;
    std::size_t nUsed = out.size();
    const char* from = bytes.data();
    UErrorCode status = U_BUFFER_OVERFLOW_ERROR;
    // Nearly always one round: few characters take more units than bytes.
    while (status == U_BUFFER_OVERFLOW_ERROR) {
        status = U_ZERO_ERROR;
        const char* end = bytes.data() + bytes.size();
        out.resize(nUsed + static_cast<std::size_t>(end - from) + kRoom);
        UChar* to = out.data() + nUsed;
        ucnv_toUnicode(converter, &to, out.data() + out.size(), &from, end, nullptr, true, &status);
        nUsed = static_cast<std::size_t>(to - out.data());
    }
    out.resize(nUsed);
    Return(converter);
}

std::string CodePageConverter::Encode(string_view_t text) const
{
    return m_bSingleByte ? EncodeByTable(text) : EncodeByConverter(text);
}

// A pair of surrogates is one character and gives one mark.
std::string CodePageConverter::EncodeByTable(string_view_t text) const
{
    std::string bytes;
    bytes.reserve(text.size());
    for (std::size_t n = 0; n < text.size(); ++n) {
        const OLECHAR unit = text[n];
        const char byte = m_bytes[unit];
        bytes.push_back(byte != 0 || unit == 0 ? byte : m_bytes[u'?']);
        if (U16_IS_LEAD(unit) && n + 1 < text.size() && U16_IS_TRAIL(text[n + 1]))
            ++n;
    }
    return bytes;
}

std::string CodePageConverter::EncodeByConverter(string_view_t text) const
{
    std::string bytes;
    UConverter* converter = Borrow();
    if (!converter)
        return bytes;
    std::size_t nUsed = 0;
    const UChar* from = text.data();
    UErrorCode status = U_BUFFER_OVERFLOW_ERROR;
    while (status == U_BUFFER_OVERFLOW_ERROR) {
        status = U_ZERO_ERROR;
        const UChar* end = text.data() + text.size();
        bytes.resize(nUsed + static_cast<std::size_t>(end - from) * 3 + kRoom);
        char* to = bytes.data() + nUsed;
        ucnv_fromUnicode(converter, &to, bytes.data() + bytes.size(), &from, end, nullptr, true,
                         &status);
        nUsed = static_cast<std::size_t>(to - bytes.data());
    }
    bytes.resize(nUsed);
    Return(converter);
    return bytes;
}

UConverter* CodePageConverter::Borrow() const
{
    for (auto& slot : m_idle)
        if (slot.load(std::memory_order_relaxed))
            if (UConverter* converter = slot.exchange(nullptr, std::memory_order_acquire))
                return converter;
    return OpenConverter(m_nCodePage);
}

void CodePageConverter::Return(UConverter* converter) const
{
    ucnv_reset(converter);
    for (auto& slot : m_idle) {
        UConverter* none = nullptr;
        if (slot.compare_exchange_strong(none, converter, std::memory_order_release,
                                         std::memory_order_relaxed))
            return;
    }
    ucnv_close(converter);
}
