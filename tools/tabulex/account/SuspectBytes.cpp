// The tests look at sixteen places at a time and have no branch. The last bytes of a piece wait for
// the next, as tests look ahead, so that each byte is looked at once and with its neighbours.

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
inline ByteMask IsQuote(ByteBlock block)
{
    return Is(block, '"') | IsAmong(block, '\'', 3) | Is(block, '[') | Is(block, ']');
}

// A place with those around it.
struct Places
{
    explicit Places(const char* p)
        : back6(BlockAt(p - 6)), back3(BlockAt(p - 3)), back1(BlockAt(p - 1)), at(BlockAt(p)),
          on1(BlockAt(p + 1)), on2(BlockAt(p + 2)), on3(BlockAt(p + 3)), on4(BlockAt(p + 4)),
          digitBefore(IsDigitByte(back1)), digitBehind(IsDigitByte(on1)), point(Is(at, '.')),
          dash(Is(at, '-'))
    {}

    ByteBlock back6, back3, back1, at, on1, on2, on3, on4;
    ByteMask digitBefore, digitBehind, point, dash;
};

inline ByteMask IsGap(const Places& p, char cDivider)
{
    return Is(p.at, cDivider) & (Is(p.on1, cDivider) | (Is(p.on1, ' ') & Is(p.on2, cDivider)));
}

inline ByteMask IsOddSign(const Places& p)
{
    const ByteMask good = p.digitBehind | Is(p.on1, '.') | (p.dash & IsLetterByte(p.on1));
    return (p.dash | Is(p.at, '+')) & ~good;
}

inline ByteMask IsLoneMark(const Places& p, ByteMask comma)
{
    return (p.point | comma) & ~(p.digitBefore | p.digitBehind | IsLetterByte(p.back1));
}

// cComma is a point where a comma isn't one.
inline ByteMask IsOddFraction(const Places& p, ByteMask comma)
{
    const ByteMask three =
        p.digitBehind & IsDigitByte(p.on2) & IsDigitByte(p.on3) & ~IsDigitByte(p.on4);
    const ByteMask other = (comma & ~p.point) | p.dash | (Is(p.at, ':') & Is(p.back6, ':'));
    return ((p.point & ~three) | other) & Is(p.back3, ':') & p.digitBefore & p.digitBehind;
}

// "1,000" may be a whole number, of which what is behind the comma isn't read.
inline ByteMask IsCommaAtZeros(const Places& p)
{
    return Is(p.at, ',') & Is(p.on1, '0') & Is(p.on2, '0') & Is(p.on3, '0');
}

} // namespace

SuspectBytes::SuspectBytes() : m_sTail(kBefore, '\n') {}

// The places from p on. p[-kBefore] to p[kPlaces + kAfter - 1] can be read.
inline ByteMask SuspectBytes::SuspectsAt(const char* p) const
{
    const Places places(p);
    const char cComma = m_sums.Comma();
    const ByteMask comma = Is(places.at, cComma);
    ByteMask suspects = IsQuote(places.at) | IsOddSign(places) | IsLoneMark(places, comma) |
                        IsOddFraction(places, comma);
    if (cComma == ',')
        suspects |= IsCommaAtZeros(places);
    for (const char c : m_sums.Dividers())
        suspects |= IsGap(places, c);
    return suspects;
}

// bytes[-kBefore] to bytes[n + kAfter - 1] can be read.
bool SuspectBytes::IsSuspect(const char* bytes, std::size_t n)
{
    ByteMask suspects{};
    std::size_t i = 0;
    for (; i + kPlaces <= n; i += kPlaces)
        suspects |= SuspectsAt(bytes + i);
    if (i != n) {
        char last[kBefore + kPlaces + kAfter] = {};
        std::copy(bytes + i - kBefore, bytes + n + kAfter, last);
        suspects |= SuspectsAt(last + kBefore) & FirstPlaces(n - i);
    }
    return m_sums.HasOddLine(bytes, n) | IsAnySet(suspects);
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
