// What is no text is told by its first bytes, in the order of certainty: a signature, the zeros of
// two-byte text, the share of control characters. Only then the lines are asked, and only of a file
// that was read whole, because rows may begin behind what was read. Signatures of text, such as
// "<html", stand beside those of binary files: what follows them is no table either.

#include <algorithm>

#include <fmt/format.h>

#include "tools/tabulex/explain/Causes.h"
#include "tools/tabulex/explain/Cells.h"
#include "tools/tabulex/explain/Shown.h"
#include "tools/tabulex/text/Formats.h"

namespace tabulex {

namespace {

using namespace std::string_view_literals;

struct Signature
{
    std::string_view bytes; // at the beginning of the file
    std::string_view what;
    std::string_view next;
};

constexpr std::string_view kUnpack = "unpack it and convert what is inside";
constexpr std::string_view kSaveAsText = "save the table as CSV text and convert that";
constexpr std::string_view kGetTable = "get the table itself, as CSV text";

constexpr Signature kSignatures[] = {
    {"7z\xBC\xAF\x27\x1C"sv, "this is a 7z archive", kUnpack},
    {"Rar!"sv, "this is a RAR archive", kUnpack},
    {"\x04\x22\x4D\x18"sv, "this is an lz4 file", kUnpack},
    {"\xD0\xCF\x11\xE0"sv, "this is an old office document", kSaveAsText},
    {"PAR1"sv, "this is a Parquet file", kSaveAsText},
    {"ARROW1"sv, "this is an Arrow file", kSaveAsText},
    {"\x89HDF"sv, "this is an HDF5 file", kSaveAsText},
    {"SQLite format 3"sv, "this is an SQLite database", kSaveAsText},
    {"%PDF"sv, "this is a PDF document", kSaveAsText},
    {"\x7F"
     "ELF"sv,
     "this is a program", kGetTable},
    {"MZ\x90"sv, "this is a program", kGetTable},
    {"\x89PNG"sv, "this is a picture", kGetTable},
    {"\xFF\xD8\xFF"sv, "this is a picture", kGetTable},
    {"<!DOCTYPE"sv, "this is a web page", kGetTable},
    {"<!doctype"sv, "this is a web page", kGetTable},
    {"<html"sv, "this is a web page", kGetTable},
    {"<?xml"sv, "this is XML", kSaveAsText},
    {"{\""sv, "this is JSON", kSaveAsText},
    {"[{"sv, "this is JSON", kSaveAsText},
    {"[["sv, "this is JSON", kSaveAsText},
};

constexpr std::size_t kLooked = 4096; // bytes that tell the encoding; more say nothing new

std::string KnownKind(std::string_view bytes)
{
    for (const Signature& signature : kSignatures)
        if (bytes.starts_with(signature.bytes))
            return fmt::format("{} and no text table: {}.", signature.what, signature.next);
    return {};
}

std::size_t ZerosAt(std::string_view bytes, std::size_t nParity)
{
    std::size_t nZeros = 0;
    for (std::size_t i = nParity; i < bytes.size(); i += 2)
        nZeros += bytes[i] == '\0';
    return nZeros;
}

// Nearly every second byte of Latin text in UTF-16 is zero. Three in four allow for other words.
std::string Utf16Kind(std::string_view bytes)
{
    const std::size_t nEven = ZerosAt(bytes, 0), nOdd = ZerosAt(bytes, 1);
    const std::size_t nMost = bytes.size() / 2;
    const bool bMark = bytes.starts_with("\xFF\xFE"sv) || bytes.starts_with("\xFE\xFF"sv);
    const bool bLittle = nOdd * 4 > nMost * 3 && nEven * 10 < nMost;
    const bool bBig = nEven * 4 > nMost * 3 && nOdd * 10 < nMost;
    if (nMost == 0 || (!bMark && !bLittle && !bBig))
        return {};
    return fmt::format("the text is UTF-16 {}, and is read in another encoding: leave --encoding "
                       "out.",
                       bMark ? "with a mark" : "without a mark");
}

bool IsControlByte(char c)
{
    return static_cast<unsigned char>(c) < 0x20 && c != '\t' && c != '\r' && c != '\n' &&
           c != '\f' && c != '\x1A' && c != '\0';
}

std::string BinaryKind(std::string_view bytes)
{
    const auto nZeros = static_cast<std::size_t>(std::ranges::count(bytes, '\0'));
    if (nZeros == bytes.size())
        return "the file holds nothing but zero bytes: get the file anew.";
    const auto nControls = static_cast<std::size_t>(std::ranges::count_if(bytes, IsControlByte));
    // Stray ones are in many texts; programs and pictures have far more than 1 in 20.
    if ((nZeros + nControls) * 20 > bytes.size())
        return fmt::format("the file is no text: {} of its first {} bytes are zero or control "
                           "characters. Give a text table.",
                           WithThousands(nZeros + nControls), WithThousands(bytes.size()));
    return {};
}

std::string EmptyKind(const FileHead& head)
{
    if (head.nSize == 0)
        return "the file is empty: get the file anew.";
    if (!head.lines.empty() || !head.IsWhole())
        return {};
    const bool bDividers = head.sBytes.find_first_of(":,;|") != std::string::npos;
    return fmt::format("the file has no data lines: {}. Get the file anew.",
                       bDividers ? "its lines hold dividers only" : "all its lines are blank");
}

std::string NoRows(const FileHead& head)
{
    constexpr LONG kAllDividers = 2 | 4 | 8 | 16 | 32;
    constexpr std::size_t kFewDigits = 4; // as many as a date has at least
    if (!head.IsWhole() || std::ranges::any_of(head.lines, [&](const ContentLine& line) {
            const std::string_view text = head.TextOf(line);
            return HasData(CellsOf(text, kAllDividers)) ||
                   std::ranges::count_if(text, [](char c) { return c >= '0' && c <= '9'; }) >=
                       static_cast<std::ptrdiff_t>(kFewDigits);
        }))
        return {};
    const ContentLine& last = head.lines.back();
    const std::string text = Shown(head.TextOf(last));
    if (head.lines.size() == 1 && CountCells(head.TextOf(last), kAllDividers & ~2) > 1)
        return fmt::format(
            "the file has no data lines: there is only the heading in line {}, {}. Get "
            "the file anew.",
            last.nNumber, text);
    return fmt::format(
        "the file has no data lines: none holds a number, a date or a time, up to the "
        "last one, line {}, {}. Get the file anew.",
        last.nNumber, text);
}

} // namespace

std::string FileCause(const FileHead& head)
{
    const std::string_view start = std::string_view(head.sBytes).substr(0, kLooked);
    if (head.nSize > 0) {
        for (const auto find : {KnownKind, Utf16Kind, BinaryKind})
            if (std::string cause = find(start); !cause.empty())
                return cause;
    }
    std::string cause = EmptyKind(head);
    return cause.empty() ? NoRows(head) : cause;
}

} // namespace tabulex
