// Every test is a loop without a branch over all bytes, which compilers turn into vector
// instructions; this file is compiled for that. The last bytes of a piece wait for the next, as
// tests look ahead, so that each byte is looked at once and with its neighbours.

#include "tools/tabulex/account/SuspectBytes.h"

#include <algorithm>

#include "tools/tabulex/account/SuspectMarks.h"

namespace tabulex {

namespace {

constexpr std::size_t kBefore = 6; // bytes that a test looks back
constexpr std::size_t kAfter = LineSums::kAfter;
constexpr std::size_t kAround = kBefore + kAfter;
static_assert(kBefore >= LineSums::kBefore);

// The component drops them, wherever they stand.
inline bool IsQuote(char c)
{
    return (c == '"') | (static_cast<unsigned char>(c - '\'') < 3) | (c == '[') | (c == ']');
}

inline bool IsOddSign(const char* p)
{
    const bool bDash = p[0] == '-';
    const bool bGood = IsDigitByte(p[1]) | (p[1] == '.') | (bDash & IsLetterByte(p[1]));
    return (bDash | (p[0] == '+')) & !bGood;
}

inline bool IsLoneMark(const char* p, char cComma)
{
    const bool bBeside = IsDigitByte(p[-1]) | IsLetterByte(p[-1]) | IsDigitByte(p[1]);
    return ((p[0] == '.') | (p[0] == cComma)) & !bBeside;
}

inline bool IsOddFraction(const char* p, char cComma)
{
    const bool bThree =
        IsDigitByte(p[1]) & IsDigitByte(p[2]) & IsDigitByte(p[3]) & !IsDigitByte(p[4]);
    const bool bOther =
        ((p[0] == cComma) & (cComma != '.')) | (p[0] == '-') | ((p[0] == ':') & (p[-6] == ':'));
    return (((p[0] == '.') & !bThree) | bOther) & (p[-3] == ':') & IsDigitByte(p[-1]) &
           IsDigitByte(p[1]);
}

// "1,000" may be a whole number, of which what is behind the comma isn't read.
inline bool IsCommaAtZeros(const char* p)
{
    return (p[0] == ',') & (p[1] == '0') & (p[2] == '0') & (p[3] == '0');
}

} // namespace

SuspectBytes::SuspectBytes() : m_sTail(kBefore, '\n') {}

unsigned char SuspectBytes::Gaps(const char* bytes, std::size_t n) const
{
    unsigned char nAny = 0;
    for (const char c : m_sums.Dividers())
        for (std::size_t i = 0; i < n; ++i)
            nAny |= static_cast<unsigned char>(
                (bytes[i] == c) &
                ((bytes[i + 1] == c) | ((bytes[i + 1] == ' ') & (bytes[i + 2] == c))));
    return nAny;
}

// bytes[-kBefore] to bytes[n + kAfter - 1] can be read. A sum in a byte, since compilers make
// branches of one in a bool.
bool SuspectBytes::IsSuspect(const char* bytes, std::size_t n)
{
    unsigned char nAny = Gaps(bytes, n);
    const char cComma = m_sums.Comma();
    for (std::size_t i = 0; i < n; ++i)
        nAny |= static_cast<unsigned char>(IsQuote(bytes[i]));
    for (std::size_t i = 0; i < n; ++i)
        nAny |= static_cast<unsigned char>(IsOddSign(bytes + i));
    for (std::size_t i = 0; i < n; ++i)
        nAny |= static_cast<unsigned char>(IsLoneMark(bytes + i, cComma));
    for (std::size_t i = 0; i < n; ++i)
        nAny |= static_cast<unsigned char>(IsOddFraction(bytes + i, cComma));
    for (std::size_t i = 0; i < n && cComma == ','; ++i)
        nAny |= static_cast<unsigned char>(IsCommaAtZeros(bytes + i));
    return m_sums.HasOddLine(bytes, n) | (nAny != 0);
}

// At the end of the file the last line gets an end.
void SuspectBytes::Take(const char* bytes, std::size_t n)
{
    const ULONGLONG nFrom = m_nTaken - std::min<ULONGLONG>(m_nTaken, kAround);
    m_nTaken += n;
    const std::size_t nFirst = std::min(n, kAround);
    m_sTail.append(bytes, nFirst);
    if (n == 0)
        m_sTail.append(kAfter + 1, '\n');
    bool bSuspect = false;
    if (m_sTail.size() > kAround)
        bSuspect = IsSuspect(m_sTail.data() + kBefore, m_sTail.size() - kAround);
    if (n > kAround) {
        bSuspect |= IsSuspect(bytes + kBefore, n - kAround);
        m_sTail.assign(bytes + n - kAround, kAround);
    } else if (m_sTail.size() > kAround) {
        m_sTail.erase(0, m_sTail.size() - kAround);
    }
    if (!bSuspect)
        return;
    if (!m_parts.empty() && m_parts.back().nTo >= nFrom)
        m_parts.back().nTo = m_nTaken;
    else
        m_parts.push_back({nFrom, m_nTaken});
}

} // namespace tabulex
