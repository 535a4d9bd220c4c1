// Two-byte text is taken unit by unit, ASCII in blocks of units, and only half a pair is kept from
// one piece to the next. A half without its other one becomes U+FFFD and the text goes on: a bad
// character in one cell is no reason to refuse a table. The line of the first is kept.

#include "tools/tabulex/input/Transcode.h"

#include <string>
#include <vector>

#include "platform/text/Utf8.h"

namespace tabulex {

namespace {

constexpr std::size_t kPieceBytes = std::size_t(1) << 18;

// Takes two-byte text piece by piece; a half that waits for its other one is kept.
class Utf16Reader
{
public:
    explicit Utf16Reader(bool bBigEndian) : m_nHigh(bBigEndian ? 0 : 1) {}

    // Appends UTF-8. A piece has a whole number of units, but for the last one of the file.
    void Take(std::string_view piece, std::string& out);
    // After the last piece.
    void Finish(std::string& out);

    const TranscodeLoss& Loss() const { return m_loss; }

private:
    static constexpr std::size_t kBlock = 16; // units

    bool TakeAsciiBlock(const char* units, std::string& out);
    void TakeUnit(char32_t unit, std::string& out);
    void Replace(std::string& out);
    void CountLine(char32_t unit);

    const std::size_t m_nHigh; // of the two bytes
    char32_t m_high = 0;       // surrogate that waits for its other half; 0 for none
    char32_t m_before = 0;     // the unit before
    ULONGLONG m_nLine = 1;
    TranscodeLoss m_loss;
};

void Utf16Reader::Take(std::string_view piece, std::string& out)
{
    const auto byteAt = [&](std::size_t i) { return static_cast<unsigned char>(piece[i]); };
    for (std::size_t i = 0; i + 1 < piece.size();) {
        if (i + 2 * kBlock <= piece.size() && !m_high && TakeAsciiBlock(&piece[i], out)) {
            i += 2 * kBlock;
            continue;
        }
        TakeUnit(char32_t(byteAt(i + m_nHigh)) << 8 | byteAt(i + 1 - m_nHigh), out);
        i += 2;
    }
    m_loss.bOddByte = piece.size() % 2 != 0;
}

// False, and nothing is taken, where a unit isn't ASCII. In loops of a fixed length, which the
// compiler makes vectors of.
bool Utf16Reader::TakeAsciiBlock(const char* units, std::string& out)
{
    char text[1 + kBlock]; // behind the unit before
    text[0] = m_before < 0x80 ? static_cast<char>(m_before) : ' ';
    unsigned char beyond = 0;
    for (std::size_t i = 0; i < kBlock; ++i) {
        text[1 + i] = units[2 * i + 1 - m_nHigh];
        beyond |= static_cast<unsigned char>(units[2 * i + m_nHigh]) |
                  (static_cast<unsigned char>(text[1 + i]) & 0x80);
    }
    if (beyond != 0)
        return false;
    out.append(text + 1, kBlock);
    unsigned char nLines = 0;
    for (std::size_t i = 0; i < kBlock; ++i)
        nLines += (text[1 + i] == '\r') | ((text[1 + i] == '\n') & (text[i] != '\r'));
    m_nLine += nLines;
    m_before = static_cast<char32_t>(text[kBlock]);
    return true;
}

void Utf16Reader::Finish(std::string& out)
{
    if (m_high)
        Replace(out);
}

void Utf16Reader::TakeUnit(char32_t unit, std::string& out)
{
    if (m_high && Utf8::IsLowSurrogate(unit)) {
        Utf8::Append(out, 0x10000 + ((m_high - 0xD800) << 10) + (unit - 0xDC00));
        m_high = 0;
        return;
    }
    if (m_high)
        Replace(out);
    if (Utf8::IsHighSurrogate(unit))
        m_high = unit;
    else if (Utf8::IsSurrogate(unit))
        Replace(out);
    else
        Utf8::Append(out, unit);
    CountLine(unit);
}

void Utf16Reader::Replace(std::string& out)
{
    Utf8::Append(out, Utf8::kReplacement);
    m_high = 0;
    if (m_loss.nReplaced++ == 0)
        m_loss.nFirstReplaced = m_nLine;
}

// A line ends with CR, LF or CR LF.
void Utf16Reader::CountLine(char32_t unit)
{
    m_nLine += unit == '\r' || (unit == '\n' && m_before != '\r');
    m_before = unit;
}

} // namespace

TranscodeLoss TranscodeUtf16(InputStream& from, bool bBigEndian, SpillFile& to)
{
    Utf16Reader reader(bBigEndian);
    std::vector<char> piece(kPieceBytes);
    std::string out;
    std::size_t nRead = 0;
    do {
        nRead = from.Read(piece);
        out.clear();
        reader.Take({piece.data(), nRead}, out);
        if (nRead < piece.size())
            reader.Finish(out);
        to.WriteUnlessInterrupted(out);
    } while (nRead == piece.size());
    return reader.Loss();
}

void CopyBytes(InputStream& from, SpillFile& to)
{
    std::vector<char> piece(kPieceBytes);
    while (const std::size_t nRead = from.Read(piece))
        to.WriteUnlessInterrupted({piece.data(), nRead});
}

void SkipBytes(InputStream& from, std::size_t nCount)
{
    std::string skipped(nCount, '\0');
    from.Read(skipped);
}

} // namespace tabulex
