// Values as text and back.
//
// A number is read into its digits and a power of ten. An integer and a currency are rounded
// on the digits themselves, exact in 64 bits; only a floating-point target goes through the
// correctly rounding conversion of the standard library.

#include "platform/variant/VariantText_posix.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <string>

#include <fmt/format.h>

#include "platform/variant/VariantNumber_posix.h"

namespace {

constexpr int kCurrencyDigits = 4;
constexpr int kMostExponent = 100000;

bool IsBlank(OLECHAR c)
{
    return c == u' ' || (c >= u'\t' && c <= u'\r') || c == 0x00A0 || c == 0x3000;
}

char Digit(int nValue)
{
    return static_cast<char>('0' + nValue);
}

// A number as text writes it; its value is the digits times a power of ten.
struct Decimal
{
    bool bNegative = false;
    std::string digits; // without leading zeros
    int nExponent = 0;
};

// Reads a Decimal. A sign may lead or follow, parentheses mean a negative number, a dollar
// may stand on either side, commas group the digits in front of the point.
class DecimalReader
{
public:
    explicit DecimalReader(string_view_t text) : m_text(text) {}

    bool Read(Decimal& result)
    {
        SkipMarks();
        const bool bParenthesis = Take(u'(');
        const bool bSigned = !bParenthesis && ReadSign(result);
        SkipMarks();
        if (!ReadDigits(result) || !ReadExponent(result))
            return false;
        SkipMarks();
        if (bParenthesis)
            result.bNegative = true;
        if (bParenthesis && !Take(u')'))
            return false;
        if (!bParenthesis && !bSigned)
            ReadSign(result);
        SkipMarks();
        return m_text.empty();
    }

private:
    bool Take(OLECHAR c)
    {
        if (m_text.empty() || m_text.front() != c)
            return false;
        m_text.remove_prefix(1);
        return true;
    }

    // Blanks, and the dollar once.
    void SkipMarks()
    {
        for (; !m_text.empty(); m_text.remove_prefix(1)) {
            const bool bDollar = m_text.front() == u'$' && !m_bDollar;
            if (!bDollar && !IsBlank(m_text.front()))
                return;
            m_bDollar = m_bDollar || bDollar;
        }
    }

    bool ReadSign(Decimal& result)
    {
        result.bNegative = Take(u'-');
        return result.bNegative || Take(u'+');
    }

    bool ReadDigits(Decimal& result)
    {
        bool bAny = false;
        bool bPoint = false;
        for (;; m_text.remove_prefix(1)) {
            const OLECHAR c = m_text.empty() ? u'\0' : m_text.front();
            if (IsDigit(c)) {
                bAny = true;
                result.nExponent -= bPoint ? 1 : 0;
                if (c != u'0' || !result.digits.empty())
                    result.digits.push_back(Digit(c - u'0'));
            } else if (c == u'.' && !bPoint)
                bPoint = true;
            else if (c != u',' || bPoint || !bAny)
                return bAny;
        }
    }

    // True when there is none.
    bool ReadExponent(Decimal& result)
    {
        if (!Take(u'e') && !Take(u'E'))
            return true;
        const bool bNegative = Take(u'-');
        if (!bNegative)
            Take(u'+');
        if (m_text.empty() || !IsDigit(m_text.front()))
            return false;
        int nExponent = 0;
        for (; !m_text.empty() && IsDigit(m_text.front()); m_text.remove_prefix(1))
            nExponent = std::min(nExponent * 10 + (m_text.front() - u'0'), kMostExponent);
        result.nExponent += bNegative ? -nExponent : nExponent;
        return true;
    }

    string_view_t m_text;
    bool m_bDollar = false; // one was read
};

HRESULT ToReal(const Decimal& number, double& r)
{
    r = 0;
    if (number.digits.empty())
        return S_OK;
    const std::string text = number.digits + 'e' + std::to_string(number.nExponent);
    const auto result = std::from_chars(text.data(), text.data() + text.size(), r);
    if (result.ec == std::errc::result_out_of_range) {
        // Too small is zero; only too large is an error.
        if (static_cast<int>(number.digits.size()) + number.nExponent > 0)
            return DISP_E_OVERFLOW;
        r = 0;
    }
    if (number.bNegative)
        r = -r;
    return S_OK;
}

bool RoundsUp(std::string_view kept, std::string_view dropped)
{
    if (dropped.empty() || dropped.front() != '5')
        return !dropped.empty() && dropped.front() > '5';
    const bool bOdd = !kept.empty() && (kept.back() - '0') % 2 != 0;
    return bOdd || dropped.find_first_not_of('0', 1) != std::string_view::npos;
}

// Digits in front of the point; the rest rounds to the nearest, halves to the even digit. No number
// of 64 bits has more than 20. Where there are none in front, reading them leaves 0, and the
// rounding alone counts.
HRESULT ToWhole(const Decimal& number, int nScale, ULONGLONG& magnitude)
{
    magnitude = 0;
    if (number.digits.empty())
        return S_OK;
    const int nDigits = static_cast<int>(number.digits.size());
    const int nWhole = nDigits + number.nExponent + nScale;
    if (nWhole > 20)
        return DISP_E_OVERFLOW;
    if (nWhole < 0)
        return S_OK;
    std::string whole =
        number.digits.substr(0, static_cast<std::size_t>(std::min(nWhole, nDigits)));
    const std::string_view dropped = std::string_view(number.digits).substr(whole.size());
    const bool bUp = RoundsUp(whole, dropped);
    whole.append(static_cast<std::size_t>(nWhole) - whole.size(), '0');
    const auto result = std::from_chars(whole.data(), whole.data() + whole.size(), magnitude);
    if (result.ec == std::errc::result_out_of_range ||
        __builtin_add_overflow(magnitude, bUp ? 1u : 0u, &magnitude))
        return DISP_E_OVERFLOW;
    return S_OK;
}

// The whole number that the text rounds to, exact in 64 bits.
HRESULT ToInteger(const Decimal& number, int nScale, Number& result)
{
    ULONGLONG magnitude = 0;
    if (HRESULT hr = ToWhole(number, nScale, magnitude); FAILED(hr))
        return hr;
    constexpr ULONGLONG kMostNegative = 1ULL << 63;
    if (!number.bNegative)
        result = magnitude;
    else if (magnitude > kMostNegative)
        return DISP_E_OVERFLOW;
    else
        result = static_cast<LONGLONG>(0 - magnitude);
    return S_OK;
}

HRESULT ParseReal(const Decimal& number, VARTYPE vt, VARIANT& to)
{
    double r = 0;
    const HRESULT hr = ToReal(number, r);
    return FAILED(hr) ? hr : WriteNumber(r, vt, to);
}

HRESULT ParseCurrency(const Decimal& number, VARIANT& to)
{
    Number scaled;
    if (HRESULT hr = ToInteger(number, kCurrencyDigits, scaled); FAILED(hr))
        return hr;
    VARIANT units;
    const HRESULT hr = WriteNumber(scaled, VT_I8, units);
    to.cyVal.int64 = units.llVal;
    return hr;
}

string_view_t WithoutBlanks(string_view_t text)
{
    while (!text.empty() && IsBlank(text.front()))
        text.remove_prefix(1);
    while (!text.empty() && IsBlank(text.back()))
        text.remove_suffix(1);
    return text;
}

unsigned DigitOf(OLECHAR c)
{
    if (IsDigit(c))
        return static_cast<unsigned>(c - u'0');
    const OLECHAR lower = c | 0x20;
    return lower >= u'a' && lower <= u'f' ? static_cast<unsigned>(lower - u'a' + 10) : 16;
}

// 0 for a letter that stands for none.
unsigned BaseOf(OLECHAR letter)
{
    switch (letter) {
    case u'H':
    case u'h':
        return 16;
    case u'O':
    case u'o':
        return 8;
    default:
        return 0;
    }
}

// The bits of a whole number, as "&HFF" or "&O377" write them.
HRESULT ParseBits(string_view_t text, VARTYPE vt, VARIANT& to)
{
    const unsigned nBase = text.size() > 2 ? BaseOf(text[1]) : 0;
    if (nBase == 0)
        return DISP_E_TYPEMISMATCH;
    ULONGLONG bits = 0;
    for (const OLECHAR c : text.substr(2)) {
        const unsigned nDigit = DigitOf(c);
        if (nDigit >= nBase)
            return DISP_E_TYPEMISMATCH;
        if (__builtin_mul_overflow(bits, nBase, &bits))
            return DISP_E_OVERFLOW;
        bits += nDigit;
    }
    return WriteBits(bits, vt, to);
}

HRESULT ParseNumber(string_view_t text, VARTYPE vt, VARIANT& to)
{
    text = WithoutBlanks(text);
    if (text.starts_with(u'&'))
        return ParseBits(text, vt, to);
    Decimal decimal;
    if (!DecimalReader(text).Read(decimal))
        return DISP_E_TYPEMISMATCH;
    if (vt == VT_R8 || vt == VT_R4 || vt == VT_BOOL)
        return ParseReal(decimal, vt, to);
    if (vt == VT_CY)
        return ParseCurrency(decimal, to);
    Number number;
    const HRESULT hr = ToInteger(decimal, 0, number);
    return FAILED(hr) ? hr : WriteNumber(number, vt, to);
}

bool EqualIgnoringCase(string_view_t text, string_view_t lower)
{
    return std::equal(
        text.begin(), text.end(), lower.begin(), lower.end(),
        [](OLECHAR a, OLECHAR b) { return (a >= u'A' && a <= u'Z' ? a + (u'a' - u'A') : a) == b; });
}

HRESULT ParseBool(string_view_t text, VARIANT& to)
{
    if (text == u"#TRUE#" || EqualIgnoringCase(text, u"true"))
        to.boolVal = VARIANT_TRUE;
    else if (text == u"#FALSE#" || EqualIgnoringCase(text, u"false"))
        to.boolVal = VARIANT_FALSE;
    else
        return ParseNumber(text, VT_BOOL, to);
    return S_OK;
}

std::string RealText(double r, int nDigits)
{
    if (r == 0)
        return "0"; // no negative zero
    if (std::isinf(r))
        return r < 0 ? "-1.#INF" : "1.#INF";
    if (std::isnan(r))
        return "-1.#IND";
    return fmt::format("{:.{}G}", r, nDigits);
}

std::string CurrencyText(LONGLONG n)
{
    const auto magnitude = static_cast<ULONGLONG>(n);
    const ULONGLONG value = n < 0 ? 0 - magnitude : magnitude;
    std::string text = fmt::format("{}{}.{:04}", n < 0 ? "-" : "", value / 10000, value % 10000);
    text.erase(text.find_last_not_of('0') + 1);
    if (text.back() == '.')
        text.pop_back();
    return text;
}

struct NumberText
{
    VARTYPE vt;
    std::string operator()(LONGLONG n) const { return fmt::format("{}", n); }
    std::string operator()(ULONGLONG n) const { return fmt::format("{}", n); }
    std::string operator()(double r) const { return RealText(r, vt == VT_R4 ? 7 : 15); }
    std::string operator()(Currency value) const { return CurrencyText(value.nTenThousandths); }
};

} // namespace

HRESULT FormatValue(const VARIANT& from, bool bAlphaBool, string_t& text)
{
    text.clear();
    if (from.vt == VT_EMPTY)
        return S_OK;
    if (from.vt == VT_DATE)
        return FormatDate(from.date, text);
    if (from.vt == VT_BOOL && bAlphaBool) {
        text = from.boolVal ? u"True" : u"False";
        return S_OK;
    }
    Number number;
    if (!ReadNumber(from, number))
        return DISP_E_TYPEMISMATCH;
    const std::string ascii = std::visit(NumberText{from.vt}, number);
    text.assign(ascii.begin(), ascii.end());
    return S_OK;
}

HRESULT ParseValue(string_view_t text, VARTYPE vt, VARIANT& to)
{
    text = text.substr(0, text.find(u'\0'));
    if (vt == VT_DATE)
        return ParseDate(text, to.date);
    return vt == VT_BOOL ? ParseBool(text, to) : ParseNumber(text, vt, to);
}
