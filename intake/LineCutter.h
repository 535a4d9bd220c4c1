// LineCutter: the lines of a text that comes in blocks.
//
// A line ends with LF or CR LF, or with CR in a text that has no LF in its first kDecidingBytes.
// Memory is bounded whatever the length of a line. Used by one thread.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace tabulex::intake {

// What takes lines.
class LineTaker
{
public:
    virtual ~LineTaker() = default;
    // A line without its end, with kLinePadding readable bytes behind it; it is good for the call.
    // bCut: there was more of it.
    virtual void Take(std::string_view line, bool bCut) = 0;
};

inline constexpr std::size_t kLinePadding = 16;

class LineCutter
{
public:
    static constexpr std::size_t kDecidingBytes = 1 << 16;

    // The taker must outlive this object.
    LineCutter(LineTaker& taker, std::size_t nMostBytes);

    void Feed(std::string_view text);
    // A last line without an end is a line.
    void Finish();

private:
    bool Decide(std::string_view text);
    void FeedLines(std::string_view text);
    void Keep(std::string_view text);
    void GiveKept();
    void Give(std::string_view line, bool bCut);

    LineTaker& m_taker;
    const std::size_t m_nMostBytes;
    char m_cEnd = 0;      // 0 until it is decided
    std::string m_start;  // the text until then
    std::string m_kept;   // the beginning of a line whose end hasn't come
    bool m_bKept = false; // also for one of no bytes
    bool m_bCut = false;  // of that
};

} // namespace tabulex::intake
