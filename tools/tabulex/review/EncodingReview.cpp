// Plain ASCII reads the same in all encodings, and two-byte text is recognised elsewhere: neither
// is looked at. In any other file the first line beyond ASCII is compared with its bytes. UTF-8 is
// told by its form. For the rest there are two signs only, characters that couldn't be read and
// headings that make words in another encoding, since a one-byte page reads any bytes without a
// complaint.

#include <algorithm>

#include <fmt/format.h>

#include "tools/tabulex/host/Properties.h"
#include "tools/tabulex/review/Decoding.h"
#include "tools/tabulex/review/LayoutReview.h"

namespace tabulex {

namespace {

constexpr OLECHAR kReplacement = 0xFFFD;
constexpr std::size_t kCutBytes = 500; // a line of fewer comes whole

constexpr OLECHAR kMark = 0xFEFF; // of an encoding, ahead of the text

bool IsUtf16(std::string_view bytes)
{
    return bytes.starts_with("\xFF\xFE") || bytes.starts_with("\xFE\xFF");
}

string_t BeyondAscii(string_view_t text)
{
    string_t result;
    for (const OLECHAR c : text)
        if (c >= 0x80 && c != kMark)
            result += c;
    return result;
}

// The first line beyond ASCII, as the component reads it and as its bytes stand.
struct TextLine
{
    string_t sText;
    std::string_view bytes;
};

std::optional<TextLine> FirstTextLine(const Host& host, const FileStart& start)
{
    const auto nLine = start.FirstLineBeyondAscii();
    if (!nLine)
        return std::nullopt;
    const auto lines = host.LineReader();
    if (lines->put_Position(*nLine) != S_OK)
        return std::nullopt;
    return TextLine{GetText(*lines.get(), &IDataParser::get_CurrentRecord), *start.Line(*nLine)};
}

// The component cuts a long line, perhaps within a character.
bool IsReadAsUtf8(const TextLine& line)
{
    string_t read = BeyondAscii(line.sText);
    const string_t meant = BeyondAscii(FromUtf8(line.bytes));
    if (line.bytes.size() > kCutBytes && !read.empty())
        read.pop_back();
    return line.bytes.size() > kCutBytes ? meant.starts_with(read) : meant == read;
}

// Where the bytes aren't UTF-8: the encoding that makes words of the headings, or one that can
// read them at all.
std::string LikelyEncoding(const LayoutFacts& facts, std::string_view bytes)
{
    if (!facts.sHeaderEncoding.empty())
        return facts.sHeaderEncoding;
    for (const std::string_view encoding : {"gbk", "windows-1252"})
        if (DecodeBytes(bytes, encoding))
            return std::string(encoding);
    return "NAME";
}

} // namespace

void ReviewEncoding(const Host& host, const LayoutFacts& facts, Warnings& warnings)
{
    if (IsAscii(facts.start.Bytes()) || IsUtf16(facts.start.Bytes()))
        return;
    const auto line = FirstTextLine(host, facts.start);
    if (!line || line->sText.empty())
        return;
    const bool bUtf8 = IsUtf8(facts.start.Bytes());
    if (bUtf8 && !IsReadAsUtf8(*line))
        warnings.Add("read-in-other-encoding",
                     fmt::format("the file's text is UTF-8 but is read in another encoding, as "
                                 "\"{}\"; give --encoding utf-8",
                                 ShownText(ToUtf8(line->sText))));
    else if (!bUtf8 && line->sText.find(kReplacement) != string_t::npos)
        warnings.Add("undecoded-text",
                     fmt::format("text of the file can't be read in the encoding in use: \"{}\"; "
                                 "give another one, such as --encoding {}",
                                 ShownText(ToUtf8(line->sText)),
                                 LikelyEncoding(facts, line->bytes)));
    else if (!bUtf8 && !facts.sHeaderEncoding.empty())
        warnings.Add("read-in-other-encoding",
                     fmt::format("the heading line makes words in {}, but is read in another "
                                 "encoding; give --encoding {}",
                                 facts.sHeaderEncoding, facts.sHeaderEncoding));
}

} // namespace tabulex
