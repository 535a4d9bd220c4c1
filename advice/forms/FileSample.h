// FileSample: lines out of a file of any size: its head, its end, and pieces between them.
//
// A file of at most kWholeBytes is taken whole. Memory and time don't grow with the file. Lines end
// at LF, CR or both; blank ones are left out. A line that is cut by a piece is left out too, so all
// lines are whole. Plain data once it is made; may be read by several threads.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace tabulex::advice {

inline constexpr std::size_t kWholeBytes = std::size_t(2) << 20;
inline constexpr std::size_t kLongestLine = std::size_t(1) << 14; // bytes; data have shorter ones

struct SampledLine
{
    std::string_view sText;  // as it stands, without its end
    std::uint64_t nLine = 0; // from 1, blank lines counted; 0 where it isn't known
    bool bFollows = true;    // on the line before it in the sample, blank ones aside
};

class FileSample
{
public:
    // Fills the buffer from a place of the file; gives how much was read.
    using ReadAt = std::function<std::size_t(std::uint64_t nOffset, std::span<char> buffer)>;

    FileSample(std::uint64_t nSize, const ReadAt& read);
    // A text as a whole.
    explicit FileSample(std::string text);
    FileSample(const FileSample&) = delete;
    FileSample& operator=(const FileSample&) = delete;

    const std::vector<SampledLine>& Lines() const { return m_lines; }
    // Whether Lines() are all lines of the file.
    bool IsWhole() const { return m_bWhole; }
    // The number of a line of more than kLongestLine bytes, which isn't among Lines(); 0 for none.
    std::uint64_t LongLine() const { return m_nLongLine; }
    // Whether a byte is 0: no text has it.
    bool HasZeroBytes() const;

private:
    struct Piece
    {
        std::string sText;
        bool bStartsFile;
        bool bEndsFile;
    };

    void Split(const Piece& piece);
    void Add(std::string_view text, std::uint64_t nLine, bool bFollows);

    std::vector<Piece> m_pieces; // what the lines are parts of
    std::vector<SampledLine> m_lines;
    bool m_bWhole = true;
    std::uint64_t m_nLongLine = 0;
};

} // namespace tabulex::advice
