// Vendors change forms in the middle of a file, and only a late line may tell days from months. So
// the pieces are spread evenly over the file.
#include "advice/forms/FileSample.h"

#include <algorithm>
#include <utility>

namespace tabulex::advice {

namespace {

constexpr std::size_t kHeadBytes = std::size_t(256) << 10;
constexpr std::size_t kEndBytes = std::size_t(64) << 10;
constexpr std::size_t kPieceBytes = std::size_t(32) << 10;
constexpr std::uint64_t kPieces = 16; // between head and end
constexpr std::size_t kMostLines = 60000;

std::string ReadPiece(const FileSample::ReadAt& read, std::uint64_t nOffset, std::size_t nBytes)
{
    std::string text(nBytes, '\0');
    text.resize(std::min(nBytes, read(nOffset, text)));
    return text;
}

std::size_t LineEnd(std::string_view text, std::size_t nFrom)
{
    return std::min(text.find_first_of("\r\n", nFrom), text.size());
}

std::size_t NextLine(std::string_view text, std::size_t nEnd)
{
    return nEnd + 1 < text.size() && text[nEnd] == '\r' && text[nEnd + 1] == '\n' ? nEnd + 2
                                                                                  : nEnd + 1;
}

bool IsBlankLine(std::string_view text)
{
    return text.find_first_not_of(" \t") == std::string_view::npos;
}

} // namespace

FileSample::FileSample(std::uint64_t nSize, const ReadAt& read) : m_bWhole(nSize <= kWholeBytes)
{
    if (m_bWhole) {
        m_pieces.push_back({ReadPiece(read, 0, static_cast<std::size_t>(nSize)), true, true});
    } else {
        m_pieces.push_back({ReadPiece(read, 0, kHeadBytes), true, false});
        for (std::uint64_t i = 1; i <= kPieces; ++i)
            m_pieces.push_back(
                {ReadPiece(read, nSize / (kPieces + 1) * i, kPieceBytes), false, false});
        m_pieces.push_back({ReadPiece(read, nSize - kEndBytes, kEndBytes), false, true});
    }
    for (const Piece& piece : m_pieces)
        Split(piece);
}

FileSample::FileSample(std::string text)
{
    m_pieces.push_back({std::move(text), true, true});
    Split(m_pieces.front());
}

bool FileSample::HasZeroBytes() const
{
    return std::ranges::any_of(
        m_pieces, [](const Piece& piece) { return piece.sText.find('\0') != std::string::npos; });
}

void FileSample::Split(const Piece& piece)
{
    const std::string_view text = piece.sText;
    std::size_t nAt = piece.bStartsFile ? 0 : NextLine(text, LineEnd(text, 0));
    std::uint64_t nLine = piece.bStartsFile ? 1 : 0;
    bool bFirst = true;
    while (nAt < text.size()) {
        const std::size_t nEnd = LineEnd(text, nAt);
        if (nEnd == text.size() && !piece.bEndsFile) {
            if (nEnd - nAt > kLongestLine && m_nLongLine == 0)
                m_nLongLine = std::max<std::uint64_t>(nLine, 1);
            return;
        }
        if (const auto line = text.substr(nAt, nEnd - nAt); !IsBlankLine(line))
            Add(line, nLine, !std::exchange(bFirst, false));
        nAt = NextLine(text, nEnd);
        if (nLine > 0)
            ++nLine;
    }
}

void FileSample::Add(std::string_view text, std::uint64_t nLine, bool bFollows)
{
    if (text.size() > kLongestLine) {
        if (m_nLongLine == 0)
            m_nLongLine = std::max<std::uint64_t>(nLine, 1);
    } else if (m_lines.size() < kMostLines) {
        m_lines.push_back({text, nLine, bFollows});
    } else {
        m_bWhole = false;
    }
}

} // namespace tabulex::advice
