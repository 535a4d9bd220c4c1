// The head of a text that reads as a number is scanned once, its digits gathered in 64 bits.
// If they fit a double exactly, and the power of ten does too, the value is the quotient of
// the two, which is correctly rounded. Longer numbers and exponents go through a general
// conversion. Whole numbers are summed up below zero, where there is room for one more, and
// stop at the ends of the type.

#include "src/parsing/templates/NumberText.h"

#include <algorithm>
#include <array>
#include <limits>

#include <fast_float/fast_float.h>

#include "src/parsing/templates/TextTests.h"

namespace Hesperon::specifics {

namespace {

constexpr std::uint64_t kMaxMantissa = std::numeric_limits<std::uint64_t>::max() / 10 - 1;

bool IsBlank(OLECHAR c)
{
    return c == OLESTR(' ') || (c >= OLESTR('\t') && c <= OLESTR('\r'));
}

bool IsSign(OLECHAR c)
{
    return c == OLESTR('-') || c == OLESTR('+');
}

string_view_t SkipBlanks(string_view_t sText)
{
    return sText.substr(std::ranges::find_if_not(sText, IsBlank) - sText.begin());
}

// Sign, digits, mark, digits: the readable head of a text.
struct DecimalHead
{
    std::uint64_t nMantissa = 0;
    std::size_t nScale = 0;  // digits after the mark
    std::size_t nDigits = 0; // digits in all
    std::size_t nSize = 0;   // characters, with sign and mark
    bool bNegative = false;
    bool bExact = true; // nMantissa holds all digits
};

class HeadReader
{
public:
    HeadReader(string_view_t sText, bool bCommaIsPoint) : m_sText(sText)
    {
        if (!sText.empty() && IsSign(sText.front()))
            m_head.bNegative = sText[m_head.nSize++] == OLESTR('-');
        ReadDigitRun();
        if (!IsMark(bCommaIsPoint))
            return;
        ++m_head.nSize;
        const std::size_t nWhole = m_head.nDigits;
        ReadDigitRun();
        m_head.nScale = m_head.nDigits - nWhole;
    }

    const DecimalHead& Head() const { return m_head; }

private:
    bool IsMark(bool bCommaIsPoint) const
    {
        if (m_head.nSize == m_sText.size())
            return false;
        const OLECHAR c = m_sText[m_head.nSize];
        return c == OLESTR('.') || (bCommaIsPoint && c == OLESTR(','));
    }
    void ReadDigitRun()
    {
        for (; m_head.nSize < m_sText.size() && IsDigit(m_sText[m_head.nSize]); ++m_head.nSize) {
            m_head.bExact = m_head.bExact && m_head.nMantissa <= kMaxMantissa;
            if (m_head.bExact)
                m_head.nMantissa = m_head.nMantissa * 10 + (m_sText[m_head.nSize] - OLESTR('0'));
            ++m_head.nDigits;
        }
    }

    string_view_t m_sText;
    DecimalHead m_head;
};

// The exponent's characters at the start of a text, 0 if it isn't a whole one.
std::size_t ExponentSize(string_view_t sText)
{
    if (sText.empty() || (sText[0] != OLESTR('e') && sText[0] != OLESTR('E')))
        return 0;
    std::size_t n = 1;
    n += n < sText.size() && IsSign(sText[n]);
    const std::size_t nFirstDigit = n;
    while (n < sText.size() && IsDigit(sText[n]))
        ++n;
    return n > nFirstDigit ? n : 0;
}

// An unsigned decimal number, correctly rounded; infinite beyond the type.
double RoundedDouble(string_view_t sNumber)
{
    std::array<char, kMaxText> ascii;
    sNumber = sNumber.substr(0, ascii.size());
    std::ranges::transform(sNumber, ascii.begin(),
                           [](OLECHAR c) { return c == OLESTR(',') ? '.' : static_cast<char>(c); });
    double value = 0;
    fast_float::from_chars(ascii.data(), ascii.data() + sNumber.size(), value);
    return value;
}

double DoubleOf(const DecimalHead& head, string_view_t sText, std::size_t nExponentSize)
{
    if (head.nDigits == 0)
        return 0;
    double value;
    if (nExponentSize == 0 && head.bExact && head.nMantissa <= kMaxExactMantissa &&
        head.nScale < kExactPowers.size()) {
        value = ExactQuotient(head.nMantissa, head.nScale);
    } else {
        const std::size_t nSign = IsSign(sText.front());
        value = RoundedDouble(sText.substr(nSign, head.nSize + nExponentSize - nSign));
    }
    return head.bNegative ? -value : value;
}

LONGLONG SaturatedInteger(string_view_t sDigits, bool bNegative)
{
    constexpr LONGLONG kMin = std::numeric_limits<LONGLONG>::min();
    LONGLONG value = 0; // kept negative, where there is room for one more
    for (OLECHAR c : sDigits) {
        const int digit = c - OLESTR('0');
        if (value < (kMin + digit) / 10)
            return bNegative ? kMin : std::numeric_limits<LONGLONG>::max();
        value = value * 10 - digit;
    }
    if (bNegative)
        return value;
    return value == kMin ? std::numeric_limits<LONGLONG>::max() : -value;
}

} // namespace

bool ReadFloatText(string_view_t sText, double& value)
{
    const DecimalHead head = HeadReader(sText, true).Head();
    if (!IsFloatText(sText.substr(head.nSize)))
        return false;
    value = DoubleOf(head, sText, 0);
    return true;
}

bool ReadManyDigits(string_view_t sText, LONGLONG& value)
{
    if (!std::ranges::all_of(sText, IsDigit))
        return false;
    value = SaturatedInteger(sText, false);
    return true;
}

bool ReadIntegerText(string_view_t sText, LONGLONG& value)
{
    if (ReadDigits(sText, value))
        return true;
    if (!IsIntegerText(sText, true))
        return false;
    value = TextToInt64(sText);
    return true;
}

double TextToDouble(string_view_t sText)
{
    sText = SkipBlanks(sText);
    const DecimalHead head = HeadReader(sText, false).Head();
    return DoubleOf(head, sText, ExponentSize(sText.substr(head.nSize)));
}

LONGLONG TextToInt64(string_view_t sText)
{
    sText = SkipBlanks(sText);
    const bool bSigned = !sText.empty() && IsSign(sText.front());
    const string_view_t digits = sText.substr(bSigned);
    const auto nDigits = std::ranges::find_if_not(digits, IsDigit) - digits.begin();
    return SaturatedInteger(digits.substr(0, nDigits), bSigned && sText.front() == OLESTR('-'));
}

LONG TextToInt32(string_view_t sText)
{
    using Limits = std::numeric_limits<LONG>;
    return static_cast<LONG>(
        std::clamp<LONGLONG>(TextToInt64(sText), Limits::min(), Limits::max()));
}

} // namespace Hesperon::specifics
