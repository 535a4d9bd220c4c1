// Each byte has a weight: a divider, a sign between digits, and a mark that another one follows
// within a number weigh something, and all others nothing. A usual line has a usual sum. The
// weights of a block are made by a loop without a branch over all bytes, which compilers turn into
// vector instructions; then they are summed up eight bytes at a time by a multiplication. The
// weights are chosen so that eight of them fit a byte, and that one kind doesn't make up for
// another. A line end has the highest bit. A line without any weight is blank, or text that is bad
// anyway.

#include "tools/tabulex/account/LineSums.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstring>

#include "tools/tabulex/account/SuspectMarks.h"

namespace tabulex {

namespace {

constexpr std::size_t kBlock = 4096;
constexpr std::size_t kWord = sizeof(std::uint64_t);
constexpr std::uint64_t kOnes = 0x0101010101010101;

constexpr unsigned char kDividerWeight = 1, kSignWeight = 17, kMarkWeight = 31;
constexpr unsigned char kLineEndBit = 0x80;

inline bool IsLineEndByte(char c)
{
    return (c == '\n') | (c == '\r');
}

inline bool IsSignInNumber(const char* p)
{
    return ((p[0] == '-') | (p[0] == '+')) & IsDigitByte(p[-1]) & IsDigitByte(p[1]);
}

// With up to three digits to the next mark.
inline bool IsFirstOfTwoMarks(const char* p, char cComma)
{
    const auto isMark = [cComma](char c) { return (c == '.') | (c == cComma); };
    const bool bThird = IsDigitByte(p[3]) & isMark(p[4]);
    const bool bSecond = IsDigitByte(p[2]) & (isMark(p[3]) | bThird);
    return isMark(p[0]) & IsDigitByte(p[1]) & (isMark(p[2]) | bSecond);
}

} // namespace

void LineSums::Expect(const UsualLine& line)
{
    m_sDividers = line.sDividers;
    m_cComma = line.bCommaDivides ? '.' : ',';
    const std::string text = "\n" + line.sTexts + std::string(kAfter, '\n');
    m_nUsual = line.nDividers * kDividerWeight;
    for (std::size_t i = kBefore; i + kAfter < text.size(); ++i) {
        m_nUsual += IsSignInNumber(&text[i]) ? kSignWeight : 0;
        m_nUsual += IsFirstOfTwoMarks(&text[i], m_cComma) ? kMarkWeight : 0;
    }
}

void LineSums::Weigh(const char* bytes, std::size_t n, unsigned char* weights) const
{
    const char cComma = m_cComma;
    for (std::size_t i = 0; i < n; ++i) {
        const unsigned char nEnd = IsLineEndByte(bytes[i]) ? kLineEndBit : 0;
        const unsigned char nSign = IsSignInNumber(bytes + i) ? kSignWeight : 0;
        const unsigned char nMark = IsFirstOfTwoMarks(bytes + i, cComma) ? kMarkWeight : 0;
        weights[i] = static_cast<unsigned char>(nEnd | nSign | nMark);
    }
    for (const char c : m_sDividers)
        for (std::size_t i = 0; i < n; ++i)
            weights[i] =
                static_cast<unsigned char>(weights[i] | (bytes[i] == c ? kDividerWeight : 0));
}

bool LineSums::TakeWord(const unsigned char* weights, std::size_t n)
{
    bool bOdd = false;
    for (std::size_t i = 0; i < n; ++i) {
        if (weights[i] != kLineEndBit) {
            m_nSum += weights[i];
            continue;
        }
        bOdd |= (m_nSum != m_nUsual) & (m_nSum != 0);
        m_nSum = 0;
    }
    return bOdd;
}

bool LineSums::HasOddLine(const char* bytes, std::size_t n)
{
    std::array<unsigned char, kBlock> weights;
    bool bOdd = false;
    for (std::size_t nFrom = 0; nFrom < n; nFrom += kBlock) {
        const std::size_t nBlock = std::min(kBlock, n - nFrom);
        Weigh(bytes + nFrom, nBlock, weights.data());
        std::size_t i = 0;
        for (; i + kWord <= nBlock; i += kWord) {
            std::uint64_t nWord;
            std::memcpy(&nWord, &weights[i], kWord);
            if (nWord & kOnes * kLineEndBit)
                bOdd |= TakeWord(&weights[i], kWord);
            else
                m_nSum += nWord * kOnes >> 56;
        }
        bOdd |= TakeWord(&weights[i], nBlock - i);
    }
    return bOdd;
}

} // namespace tabulex
