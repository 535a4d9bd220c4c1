// One code page's tables and converters.
//
// Made at first use and kept for the life of the process. All operations may be
// called from any thread; none takes a lock once the page has been made.
#pragma once

#include <array>
#include <atomic>
#include <string>
#include <string_view>
#include <vector>

#include "platform/component.h"

struct UConverter;

class CodePageConverter
{
public:
    // Null for a number that the system has no converter for.
    static const CodePageConverter* Find(UINT nCodePage);

    UINT Number() const { return m_nCodePage; }

    // As the functions of platform/text/CodePage.h.
    bool IsAscii(std::string_view bytes) const;
    void Decode(std::string_view bytes, string_t& out) const;
    std::string Encode(string_view_t text) const;

    CodePageConverter(const CodePageConverter&) = delete;
    CodePageConverter& operator=(const CodePageConverter&) = delete;

private:
    // Takes over the converter.
    CodePageConverter(UINT nCodePage, UConverter* converter);

    void FillTables(UConverter* converter);
    void DecodeByTable(std::string_view bytes, string_t& out) const;
    void DecodeByConverter(std::string_view bytes, string_t& out) const;
    std::string EncodeByTable(string_view_t text) const;
    std::string EncodeByConverter(string_view_t text) const;

    // A converter for one thread at a time. Null without memory.
    UConverter* Borrow() const;
    void Return(UConverter* converter) const;

    const UINT m_nCodePage;
    bool m_bSingleByte = false;  // the tables hold the whole page
    bool m_bAsciiIsSelf = false; // bytes below 0x80 in front of others are ASCII
    std::array<OLECHAR, 256> m_units{};
    std::vector<char> m_bytes; // of each unit, for a single-byte page; 0 for what it lacks
    mutable std::array<std::atomic<UConverter*>, 4> m_idle{};
};
