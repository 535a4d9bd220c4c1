// ContentKind: what the first bytes of a file say about it, whatever its name is.
//
// Text is what nothing else is recognised in. Two-byte text without a mark is recognised by its
// zero bytes, which stand in one of two places only and where other control characters are rare.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace tabulex {

enum class ContentKind
{
    Text,
    Utf8,    // with the mark of UTF-8 in front
    Utf16Le, // two-byte text, low byte first
    Utf16Be, // the same, high byte first
    Gzip,    // one packed file
    Packed,  // likewise, by another method
    Zip,     // packed files with names
    Tar,     // files with names
    Binary,  // zeros and control characters; perhaps a program
    Refused  // what would be taken for something else
};

struct Content
{
    ContentKind kind = ContentKind::Text;
    std::size_t nMark = 0; // bytes of the mark in front of the text
    std::string sReason;   // Binary, Refused: what it is, and what to do
};

// How many bytes RecogniseContent wants to see.
inline constexpr std::size_t kRecognisedBytes = 4096;

// Takes the first kRecognisedBytes of a file, or all that it has.
Content RecogniseContent(std::string_view head);

// What needs unpacking before it can be read.
inline bool IsArchive(ContentKind kind)
{
    return kind == ContentKind::Gzip || kind == ContentKind::Packed || kind == ContentKind::Zip ||
           kind == ContentKind::Tar;
}

} // namespace tabulex
