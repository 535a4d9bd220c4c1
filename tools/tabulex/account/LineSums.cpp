// Each byte has a weight: a divider, a sign between digits, and a mark that another one follows
// within a number weigh something, and all others nothing. A usual line has a usual sum. The
// weights of a block are made for sixteen bytes at a time; then they are summed up eight bytes at a
// time by a multiplication. The weights are chosen so that eight of them fit a byte, and that one
// kind doesn't make up for another. A line end has the highest bit. A line without any weight is
// blank, or text that is bad anyway.

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

// The places from p on. p[-1] to p[kPlaces + 3] can be read.
inline ByteMask SignsInNumbers(const char* p)
{
    const ByteBlock at = BlockAt(p);
    return (Is(at, '-') | Is(at, '+')) & IsDigitByte(BlockAt(p - 1)) & IsDigitByte(BlockAt(p + 1));
}

// With up to three digits to the next mark.
inline ByteMask FirstOfTwoMarks(const char* p, char cComma)
{
    const auto isMark = [=](std::size_t n) {
        return Is(BlockAt(p + n), '.') | Is(BlockAt(p + n), cComma);
    };
    const auto isDigit = [=](std::size_t n) { return IsDigitByte(BlockAt(p + n)); };
    const ByteMask third = isDigit(3) & isMark(4);
    const ByteMask second = isDigit(2) & (isMark(3) | third);
    return isMark(0) & isDigit(1) & (isMark(2) | second);
}

inline ByteBlock Weight(ByteMask mask, unsigned char nWeight)
{
    return reinterpret_cast<ByteBlock>(mask) & nWeight;
}

} // namespace

void LineSums::Expect(const UsualLine& line)
{
    m_sDividers = line.sDividers;
    m_cComma = line.bCommaDivides ? '.' : ',';
    m_nUsual = line.nDividers * kDividerWeight;
    const std::string text = "\n" + line.sTexts + std::string(kPlaces + kAfter, '\n');
    for (std::size_t i = kBefore; i <= line.sTexts.size(); ++i) {
        m_nUsual += SignsInNumbers(&text[i])[0] ? kSignWeight : 0;
        m_nUsual += FirstOfTwoMarks(&text[i], m_cComma)[0] ? kMarkWeight : 0;
    }
}

inline ByteBlock LineSums::WeightsAt(const char* p) const
{
    const ByteBlock at = BlockAt(p);
    ByteBlock weights = Weight(Is(at, '\n') | Is(at, '\r'), kLineEndBit) |
                        Weight(SignsInNumbers(p), kSignWeight) |
                        Weight(FirstOfTwoMarks(p, m_cComma), kMarkWeight);
    for (const char c : m_sDividers)
        weights |= Weight(Is(at, c), kDividerWeight);
    return weights;
}

void LineSums::Weigh(const char* bytes, std::size_t n, unsigned char* weights) const
{
    std::size_t i = 0;
    for (; i + kPlaces <= n; i += kPlaces) {
        const ByteBlock block = WeightsAt(bytes + i);
        std::memcpy(weights + i, &block, sizeof block);
    }
    if (i == n)
        return;
    char last[kBefore + kPlaces + kAfter] = {};
    std::copy(bytes + i - kBefore, bytes + n + kAfter, last);
    const ByteBlock block = WeightsAt(last + kBefore);
    std::memcpy(weights + i, &block, n - i);
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
