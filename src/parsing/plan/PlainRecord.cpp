// Sixteen bytes at a time become three masks of bits: dividers, blanks, and what a normalised
// record doesn't have. Fields end at the bits of the first mask; two blanks side by side are two
// neighbouring bits of the second. A record that has any of that is normalised byte by byte, and
// cut again.

#include "src/parsing/plan/PlainRecord.h"

#include <algorithm>
#include <bit>
#include <cstring>

#ifdef __SSE2__
#include <emmintrin.h>
#endif

namespace Hesperon::specifics {

namespace {

constexpr bool IsBlankByte(char c)
{
    return c == ' ' || c == '\t';
}

constexpr bool IsQuoteByte(char c)
{
    return c == '"' || c == '\'' || c == '(' || c == ')' || c == '[' || c == ']';
}

} // namespace

void PlainRecord::SetDividers(const DividerSet& dividers)
{
    std::size_t n = 0;
    for (OLECHAR c = 1; c < 128; ++c)
        if (dividers.Contains(c) && n++ < kMaxDividers)
            m_dividers[n - 1] = static_cast<char>(c);
    m_bTooManyDividers = n == 0 || n > kMaxDividers;
    if (!m_bTooManyDividers)
        std::fill(m_dividers.begin() + n, m_dividers.end(), m_dividers[0]);
}

#ifdef __SSE2__

// In registers while a record is walked.
struct PlainRecord::Walker
{
    explicit Walker(const std::array<char, kMaxDividers>& dividers)
    {
        for (std::size_t i = 0; i < kMaxDividers; ++i)
            m_dividers[i] = _mm_set1_epi8(dividers[i]);
    }

    Marks At(const char* block) const
    {
        const __m128i bytes = _mm_loadu_si128(reinterpret_cast<const __m128i*>(block));
        const auto is = [bytes](char c) { return _mm_cmpeq_epi8(bytes, _mm_set1_epi8(c)); };
        __m128i dividers = _mm_cmpeq_epi8(bytes, m_dividers[0]);
        for (std::size_t i = 1; i < kMaxDividers; ++i)
            dividers = _mm_or_si128(dividers, _mm_cmpeq_epi8(bytes, m_dividers[i]));
        const __m128i tabs = is('\t');
        const __m128i control = // and those beyond ASCII, which are negative
            _mm_andnot_si128(tabs, _mm_cmplt_epi8(bytes, _mm_set1_epi8(' ')));
        // ' ( ) are three in a row.
        const __m128i quotes =
            _mm_or_si128(_mm_or_si128(is('"'), is('\x7F')),
                         _mm_and_si128(_mm_cmpgt_epi8(bytes, _mm_set1_epi8('&')),
                                       _mm_cmplt_epi8(bytes, _mm_set1_epi8('*'))));
        const __m128i brackets = _mm_or_si128(is('['), is(']'));
        return {Bits(dividers), Bits(_mm_or_si128(tabs, is(' '))),
                Bits(_mm_or_si128(control, _mm_or_si128(quotes, brackets)))};
    }

private:
    static std::uint32_t Bits(__m128i marks)
    {
        return static_cast<std::uint32_t>(_mm_movemask_epi8(marks));
    }

    __m128i m_dividers[kMaxDividers];
};

#else

struct PlainRecord::Walker
{
    explicit Walker(const std::array<char, kMaxDividers>& dividers) : m_dividers(dividers) {}

    Marks At(const char* block) const
    {
        Marks marks{};
        for (std::size_t i = 0; i < kBlock; ++i) {
            const char c = block[i];
            const std::uint32_t bit = 1u << i;
            const bool bPlain = ((c >= ' ' && c < 0x7F) || c == '\t') && !IsQuoteByte(c);
            marks.odd |= bPlain ? 0 : bit;
            marks.blanks |= IsBlankByte(c) ? bit : 0;
            marks.dividers |= std::ranges::find(m_dividers, c) != m_dividers.end() ? bit : 0;
        }
        return marks;
    }

private:
    const std::array<char, kMaxDividers> m_dividers;
};

#endif

// Blanks stand alone, so there is one at each end at most.
inline void PlainRecord::AddField(std::size_t nBegin, std::size_t nEnd)
{
    if (nBegin != nEnd && IsBlankByte(m_pRecord[nBegin]))
        ++nBegin;
    if (nBegin != nEnd && IsBlankByte(m_pRecord[nEnd - 1]))
        --nEnd;
    if (nBegin != nEnd)
        m_fields[m_nFields++] = {static_cast<std::uint16_t>(nBegin),
                                 static_cast<std::uint16_t>(nEnd - nBegin)};
}

bool PlainRecord::Take(std::string_view sRecord, std::size_t nFields)
{
    if (m_bTooManyDividers || sRecord.size() > kMaxPlain || sRecord.empty())
        return false;
    return (Cut(sRecord, nFields) || Cut(Normalise(sRecord), nFields)) && m_nFields == nFields;
}

// As NormaliseRecord, but for a run of blanks at the very end: no field has it.
std::string_view PlainRecord::Normalise(std::string_view sRecord)
{
    char* out = m_normalised.data();
    bool bInRun = false;
    for (const char c : sRecord) {
        const bool bBlank = IsBlankByte(c);
        *out = c;
        out += !(bBlank && bInRun) && !IsQuoteByte(c);
        bInRun = bBlank;
    }
    while (out != m_normalised.data() && IsBlankByte(out[-1]))
        --out;
    return {m_normalised.data(), static_cast<std::size_t>(out - m_normalised.data())};
}

// False where the record isn't normalised; else the fields are those that it has, nFields at most.
bool PlainRecord::Cut(std::string_view sRecord, std::size_t nFields)
{
    const std::size_t nSize = sRecord.size();
    m_pRecord = sRecord.data();
    m_nFields = 0;
    const Walker walker(m_dividers);
    std::size_t nBegin = 0;
    std::uint32_t nBlankBefore = 0; // bit 0: the last byte of the block before
    for (std::size_t nAt = 0; nAt < nSize; nAt += kBlock) {
        Marks marks = walker.At(m_pRecord + nAt);
        if (nSize - nAt < kBlock)
            marks = marks.First(nSize - nAt);
        if (marks.odd | (marks.blanks & (marks.blanks << 1 | nBlankBefore)))
            return false;
        nBlankBefore = marks.blanks >> (kBlock - 1);
        for (std::uint32_t bits = marks.dividers; bits != 0; bits &= bits - 1) {
            const std::size_t nEnd = nAt + static_cast<std::size_t>(std::countr_zero(bits));
            if (m_nFields < nFields)
                AddField(nBegin, nEnd);
            nBegin = nEnd + 1;
        }
    }
    if (m_nFields < nFields)
        AddField(nBegin, nSize);
    return true;
}

} // namespace Hesperon::specifics
