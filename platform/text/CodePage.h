// Code pages: the text encodings in which quote files are read.
//
// A code page is named by its published number (1252, 936, 65001 ...). The
// thread's ANSI code page is one value for the whole process. It starts as that
// of the environment's locale, Windows-1252 in the "C" and "POSIX" locales.
#pragma once

#include <cstddef>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "platform/component.h"

inline constexpr UINT kAnsiCodePage = 3; // stands for the thread's ANSI code page
inline constexpr UINT kLatinCodePage = 1252;

// The process-wide ANSI code page. Setting fails, and changes nothing, for a
// number that the system has no converter for. A change takes effect for text
// that is decoded afterwards; set it before files are opened.
UINT AnsiCodePage();
bool SetAnsiCodePage(UINT nCodePage);

// Number of a code page by name ("windows-1252", "GBK", "utf-8", "936"); 0 for
// an unknown one.
UINT CodePageByName(std::string_view name);

// Bytes to UTF-16, appended to `out`. Bytes that a page of single bytes leaves undefined keep
// their value. In the pages of one and two bytes a lead byte and the byte after it, which isn't
// zero, are a pair; one that spells no character gives '?', in code page 932 U+30FB, and so does
// a lead byte without a second one. In UTF-8 and other pages a malformed sequence gives U+FFFD.
// Zero bytes are characters like others. A code page that the system has no converter for is
// read as Windows-1252, here and in EncodeText(). On Windows the system decides about pages
// other than these.
void DecodeBytes(UINT nCodePage, std::string_view bytes, string_t& out);

// Whether all bytes are below 0x80 and each is decoded to the unit of its value, as in most pages.
bool IsAsciiText(UINT nCodePage, std::string_view bytes);

// UTF-16 to bytes. A character that the code page lacks becomes '?', except that
// what an undefined byte was decoded to goes back to that byte. On Windows each
// surrogate has a mark of its own, and UTF-8 has U+FFFD for a lone one.
std::string EncodeText(UINT nCodePage, string_view_t text);

struct CodePageDescription
{
    UINT nCodePage;
    string_t sDescription; // for the user, such as "Western European (Windows)"
};

// The code pages that text can be read in, in the system's order; empty where the system
// can't tell. On Windows those that it offers for documents, with descriptions in the
// user's language, and the thread must be in an apartment; elsewhere the published ones that
// there is a converter for, with English descriptions.
std::vector<CodePageDescription> CodePages();

struct DetectedCodePage
{
    UINT nCodePage;
    int nConfidence; // 0 to 100
};

// Candidates for the encoding of the bytes, best first, at most nMost; none where the
// system finds none. Names that have no published number are left out. On Windows the
// thread must be in an apartment.
std::vector<DetectedCodePage> DetectCodePages(std::string_view bytes, std::size_t nMost);
