// Rules on a byte and its neighbours, of which a line seldom meets any: a few shifts of masks find
// the places that may meet one, and only those are looked at byte by byte. The last bytes of a
// piece wait for the next, as rules look ahead, so that each byte is looked at once and with its
// neighbours.

#include "tools/tabulex/account/SuspectBytes.h"

#include <algorithm>
#include <array>
#include <bit>

namespace tabulex {

namespace {

constexpr std::size_t kAround = kBefore + kAfter;
constexpr std::size_t kWindowsAtOnce = 16; // that are looked at together

bool IsDigitByte(char c)
{
    return c >= '0' && c <= '9';
}

// Bytes beyond ASCII count as letters.
bool IsLetterByte(char c)
{
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c & 0x80) != 0;
}

bool IsOddSign(const char* p)
{
    const bool bGood = IsDigitByte(p[1]) || p[1] == '.' || (p[0] == '-' && IsLetterByte(p[1]));
    return (p[0] == '-' || p[0] == '+') && !bGood;
}

// Of seconds, unless it is a point and three digits. At a mark.
bool IsOddFraction(const char* p)
{
    if (p[-3] != ':' || !IsDigitByte(p[-1]) || !IsDigitByte(p[1]))
        return false;
    const bool bThree = IsDigitByte(p[2]) && IsDigitByte(p[3]) && !IsDigitByte(p[4]);
    return p[0] != '.' || !bThree;
}

bool IsLoneMark(const char* p)
{
    return !IsDigitByte(p[-1]) && !IsDigitByte(p[1]) && !IsLetterByte(p[-1]);
}

// "1,000" may be a whole number, of which what is behind the comma isn't read.
bool IsAheadOfZeros(const char* p)
{
    return p[1] == '0' && p[2] == '0' && p[3] == '0';
}

bool IsGap(const char* p)
{
    return p[1] == p[0] || (p[1] == ' ' && p[2] == p[0]);
}

// All places that may be suspects, and some others.
std::uint64_t Candidates(const LineMarks::Masks& at)
{
    const std::uint64_t digits = at[Digits], marks = at[Marks], dividers = at[Dividers];
    const std::uint64_t before = digits << 1, behind = digits >> 1;
    const std::uint64_t parts = marks | at[Signs] | (at[Colons] & at[Colons] << 6);
    const std::uint64_t fractions = parts & at[Colons] << 3 & before & behind;
    const std::uint64_t lone = (at[Signs] | (marks & ~before)) & ~behind;
    const std::uint64_t zeros = marks & at[Zeros] >> 1 & at[Zeros] >> 2 & at[Zeros] >> 3;
    const std::uint64_t gaps = dividers & (dividers >> 1 | (dividers >> 2 & ~behind));
    return at[Quotes] | fractions | lone | zeros | gaps;
}

} // namespace

SuspectBytes::SuspectBytes() : m_sTail(kBefore, '\n') {}

void SuspectBytes::Expect(const UsualLine& line)
{
    m_line = line;
    m_marks = MarksOf(line);
    m_sums.Expect(line);
}

// p[-kBefore] to p[kAfter] can be read.
bool SuspectBytes::IsSuspectAt(const char* p) const
{
    const char c = *p;
    const bool bComma = c == ',' && !m_line.bCommaDivides;
    if (IsOddSign(p))
        return true;
    if ((c == '.' || bComma) && (IsLoneMark(p) || IsOddFraction(p)))
        return true;
    if (bComma && IsAheadOfZeros(p))
        return true;
    if ((c == '-' || (c == ':' && p[-6] == ':')) && IsOddFraction(p))
        return true;
    return kQuotes.find(c) != kQuotes.npos ||
           (m_line.sDividers.find(c) != std::string::npos && IsGap(p));
}

// p is where the window begins.
bool SuspectBytes::HasSuspect(const char* p, std::uint64_t candidates) const
{
    for (; candidates; candidates &= candidates - 1)
        if (IsSuspectAt(p + std::countr_zero(candidates)))
            return true;
    return false;
}

// The first window begins at p. Lines are summed up whatever was found.
bool SuspectBytes::AnySuspect(const char* p, std::size_t nWindows, std::uint64_t places)
{
    std::array<LineMarks::Masks, kWindowsAtOnce> windows;
    m_marks.Find(p, kPlaces, {windows.data(), nWindows});
    bool bSuspect = m_sums.HasOddLine({windows.data(), nWindows}, places);
    for (std::size_t i = 0; i < nWindows && !bSuspect; ++i)
        bSuspect = HasSuspect(p + i * kPlaces, Candidates(windows[i]) & places);
    return bSuspect;
}

// bytes[-kBefore] to bytes[n + kAfter - 1] can be read.
bool SuspectBytes::IsSuspect(const char* bytes, std::size_t n)
{
    bool bSuspect = false;
    const char* p = bytes - kBefore;
    for (std::size_t nLeft = n / kPlaces; nLeft > 0;) {
        const std::size_t nWindows = std::min(nLeft, kWindowsAtOnce);
        bSuspect |= AnySuspect(p, nWindows, FirstPlaces(kPlaces));
        p += nWindows * kPlaces;
        nLeft -= nWindows;
    }
    if (const std::size_t nRest = n % kPlaces) {
        char last[kWindowBytes] = {};
        std::copy(p, p + kBefore + nRest + kAfter, last);
        bSuspect |= AnySuspect(last, 1, FirstPlaces(nRest));
    }
    return bSuspect;
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
