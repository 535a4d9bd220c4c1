// A number that is plain is recognised by one walk over its characters and copied. From any other
// what stands around its digits is taken off from outside to inside: signs, currency, percent and
// suffix, exponent. Then the digits are gathered with the place of the point, and written with the
// point moved.

#include "intake/NumberReader.h"

#include <algorithm>
#include <charconv>
#include <cstddef>
#include <cstring>
#include <span>
#include <utility>

namespace tabulex::intake {

namespace {

constexpr bool IsDecimalDigit(char c)
{
    return c >= '0' && c <= '9';
}

constexpr int kMostShift = 30;

struct Ending
{
    std::string_view text; // small letters
    int nTens;
};

// The longer ones first.
constexpr Ending kSuffixes[] = {{"mrd", 9}, {"mio", 6}, {"bln", 9}, {"mln", 6}, {"mn", 6},
                                {"bn", 9},  {"tn", 12}, {"萬", 4},  {"億", 8},  {"万", 4},
                                {"亿", 8},  {"k", 3},   {"m", 6},   {"b", 9},   {"t", 12}};

constexpr std::string_view kCurrencies[] = {"$",   "€",   "£",   "¥",   "₹",   "R$",  "USD",
                                            "EUR", "GBP", "CHF", "JPY", "BTC", "USDT"};

constexpr std::string_view kMinus = "\u2212";

// Blanks that hold a number together.
constexpr std::string_view kBlanks[] = {" ", "\u00A0", "\u202F", "\u2009"};
constexpr std::string_view kApostrophes[] = {"'", "\u2019"};

bool EndsWith(std::string_view text, std::string_view ending)
{
    return text.size() >= ending.size() &&
           std::equal(ending.begin(), ending.end(),
                      text.end() - static_cast<std::ptrdiff_t>(ending.size()),
                      [](char e, char c) { return e == (c >= 'A' && c <= 'Z' ? c | 0x20 : c); });
}

void CutBlanks(std::string_view& text)
{
    for (bool bCut = true; bCut;) {
        bCut = false;
        for (const std::string_view blank : kBlanks) {
            if (text.starts_with(blank)) {
                text.remove_prefix(blank.size());
                bCut = true;
            }
            if (text.ends_with(blank)) {
                text.remove_suffix(blank.size());
                bCut = true;
            }
        }
    }
}

bool CutPrefix(std::string_view& text, std::string_view prefix)
{
    const bool bHas = text.starts_with(prefix);
    if (bHas)
        text.remove_prefix(prefix.size());
    return bHas;
}

// Digits with one point among them at most, or none, and perhaps a minus ahead.
bool IsPlain(std::string_view cell, bool bPoint)
{
    const char* p = cell.data();
    const char* const pEnd = p + cell.size();
    if (*p == '-' && cell.size() > 1)
        ++p;
    if (!IsDecimalDigit(*p) || !IsDecimalDigit(pEnd[-1]))
        return false;
    int nPoints = bPoint ? 0 : 1;
    for (; p != pEnd; ++p)
        if (!IsDecimalDigit(*p) && (*p != '.' || ++nPoints > 1))
            return false;
    return true;
}

std::size_t LengthOfAny(std::string_view text, std::span<const std::string_view> marks)
{
    for (const std::string_view mark : marks)
        if (text.starts_with(mark))
            return mark.size();
    return 0;
}

// Sizes of the groups that were passed; each is checked when the next one begins.
struct Groups
{
    int nCount = 0;
    int nDigits = 0; // of the present one
    bool bGood = true;

    void Next()
    {
        bGood = bGood && nDigits >= 1 && nDigits <= 3 && (nCount == 0 || nDigits >= 2);
        ++nCount;
        nDigits = 0;
    }
    bool End() const { return bGood && (nCount == 0 || nDigits == 3); }
};

} // namespace

NumberReader::NumberReader(const Numbers& numbers, std::vector<std::string> missing)
    : m_numbers(numbers), m_missing(std::move(missing))
{}

bool NumberReader::IsMissing(std::string_view cell) const
{
    return std::ranges::find(m_missing, cell) != m_missing.end();
}

// A point that parts no thousands may stand in a number that is plain already.
bool NumberReader::IsDecimalMark(char c) const
{
    if (c == '.')
        return m_numbers.thousands != Thousands::Point;
    return c == ',' && m_numbers.decimal == Decimal::Comma;
}

std::size_t NumberReader::GroupMarkAt(std::string_view text) const
{
    switch (m_numbers.thousands) {
    case Thousands::None:
        return 0;
    case Thousands::Comma:
        return text[0] == ',' ? 1 : 0;
    case Thousands::Point:
        return text[0] == '.' ? 1 : 0;
    case Thousands::Blank:
        return LengthOfAny(text, kBlanks);
    case Thousands::Apostrophe:
        return LengthOfAny(text, kApostrophes);
    }
    return 0;
}

bool NumberReader::TakeMain(std::string_view cell, DecimalDigits& digits) const
{
    Groups groups;
    bool bPoint = false;
    bool bAny = false;
    while (!cell.empty()) {
        const char c = cell[0];
        if (IsDecimalDigit(c)) {
            if (!digits.Add(c))
                return false;
            bAny = true;
            groups.nDigits += bPoint ? 0 : 1;
            cell.remove_prefix(1);
        } else if (!bPoint && IsDecimalMark(c)) {
            bPoint = true;
            digits.nPoint = digits.nCount;
            cell.remove_prefix(1);
        } else {
            const std::size_t nMark = bPoint ? 0 : GroupMarkAt(cell);
            if (nMark == 0)
                return false;
            groups.Next();
            cell.remove_prefix(nMark);
        }
    }
    if (!bPoint)
        digits.nPoint = digits.nCount;
    return bAny && groups.End();
}

// Brackets around a number are its minus in books.
bool NumberReader::TakeSigns(std::string_view& cell, DecimalDigits& digits) const
{
    if (m_numbers.bCurrency && cell.size() > 2 && cell.front() == '(' && cell.back() == ')') {
        cell = cell.substr(1, cell.size() - 2);
        digits.bNegative = true;
        CutBlanks(cell);
        return true;
    }
    if (CutPrefix(cell, "-") || CutPrefix(cell, kMinus))
        digits.bNegative = true;
    else if (!CutPrefix(cell, "+"))
        return false;
    CutBlanks(cell);
    return true;
}

void NumberReader::TakeCurrency(std::string_view& cell) const
{
    for (const std::string_view name : kCurrencies) {
        CutPrefix(cell, name);
        if (cell.ends_with(name))
            cell.remove_suffix(name.size());
    }
    CutBlanks(cell);
}

bool NumberReader::TakeEnding(std::string_view& cell, DecimalDigits& digits) const
{
    if (m_numbers.bPercent && cell.ends_with('%')) {
        cell.remove_suffix(1);
        CutBlanks(cell);
    }
    if (!m_numbers.bSuffix)
        return true;
    for (const Ending& suffix : kSuffixes)
        if (EndsWith(cell, suffix.text)) {
            cell.remove_suffix(suffix.text.size());
            CutBlanks(cell);
            digits.nPoint += suffix.nTens;
            break;
        }
    return !cell.empty();
}

// Adds to the place of the point, as TakeEnding does.
bool NumberReader::TakeExponent(std::string_view& cell, DecimalDigits& digits) const
{
    const std::size_t nAt = m_numbers.bExponent ? cell.find_first_of("eE") : std::string_view::npos;
    if (nAt == std::string_view::npos)
        return true;
    const char* pBegin = cell.data() + nAt + 1;
    const char* const pEnd = cell.data() + cell.size();
    pBegin += pBegin != pEnd && *pBegin == '+' ? 1 : 0;
    int nTens = 0;
    const auto [p, fault] = std::from_chars(pBegin, pEnd, nTens);
    if (fault != std::errc() || p != pEnd || nTens > kMostShift || nTens < -kMostShift)
        return false;
    digits.nPoint += nTens;
    cell = cell.substr(0, nAt);
    return true;
}

bool NumberReader::Take(std::string_view cell, DecimalDigits& digits) const
{
    CutBlanks(cell);
    const bool bSigned = TakeSigns(cell, digits);
    if (m_numbers.bCurrency)
        TakeCurrency(cell);
    if (!bSigned)
        TakeSigns(cell, digits);
    if (!TakeEnding(cell, digits) || !TakeExponent(cell, digits))
        return false;
    const int nShift = std::exchange(digits.nPoint, 0);
    if (!TakeMain(cell, digits))
        return false;
    digits.nPoint += nShift;
    return true;
}

bool NumberReader::LooksLikeNumber(std::string_view cell) const
{
    while (!cell.empty() && (cell[0] == '-' || cell[0] == '+'))
        cell.remove_prefix(1);
    return !cell.empty() && IsDecimalDigit(cell[0]);
}

NumberText NumberReader::Read(std::string_view cell, int nScale, char*& pOut) const
{
    if (cell.empty() || (!m_missing.empty() && IsMissing(cell)))
        return {NumberState::Missing};
    if (nScale < 0 && IsPlain(cell, IsDecimalMark('.'))) {
        if (cell.size() > kMostBytes)
            return {NumberState::Bad};
        std::memcpy(pOut, cell.data(), cell.size());
        pOut += cell.size();
        return {NumberState::Plain};
    }
    if (std::ranges::none_of(cell, IsDecimalDigit))
        return {NumberState::Missing};
    DecimalDigits digits;
    if (!Take(cell, digits))
        return {NumberState::Bad};
    if (nScale < 0) {
        digits.Write(pOut);
        return {NumberState::Rewritten};
    }
    digits.nPoint += nScale;
    return {NumberState::Rewritten, digits.WriteWhole(pOut)};
}

} // namespace tabulex::intake
