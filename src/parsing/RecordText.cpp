// A record is normalised in place: first runs of blanks and tabs collapse, then quotes and
// brackets go, so blanks that stood on both sides of a quote stay two. Both tests look at
// the low byte of a character only. Then the record is walked from divider to divider.

#include "src/parsing/RecordText.h"

#include <algorithm>
#include <array>

#include "platform/text/CodePage.h"
#include "src/parsing/TextSets.h"
#include "src/parsing/templates/TextTests.h"

namespace Hesperon::specifics {
namespace {

constexpr std::size_t kTextRecordLimit = 259; // bytes

// Tests the low byte of a character. The terminator 0 is a member of every set.
class LowByteSet
{
public:
    constexpr explicit LowByteSet(std::string_view members)
    {
        m_is[0] = true;
        for (char c : members)
            m_is[static_cast<unsigned char>(c)] = true;
    }
    bool Contains(OLECHAR c) const { return m_is[static_cast<unsigned char>(c)]; }

private:
    std::array<bool, 256> m_is{};
};

constexpr LowByteSet kBlanks(" \t");
constexpr LowByteSet kQuotes("'\"()[]");
constexpr LowByteSet kBlanksOrQuotes(" \t'\"()[]");

void CollapseBlanks(string_t& sRecord)
{
    auto out = sRecord.begin();
    for (auto in = sRecord.begin(); in != sRecord.end();) {
        *out++ = *in;
        if (!kBlanks.Contains(*in++))
            continue;
        const auto run =
            std::find_if(in, sRecord.end(), [](OLECHAR c) { return !kBlanks.Contains(c); });
        if (run == sRecord.end()) // a run at the very end stays
            out = std::copy(in, run, out);
        in = run;
    }
    sRecord.erase(out, sRecord.end());
}

bool IsBlank(OLECHAR c)
{
    return c == ' ' || c == '\t';
}

string_view_t Trimmed(string_view_t s)
{
    while (!s.empty() && IsBlank(s.front()))
        s.remove_prefix(1);
    while (!s.empty() && IsBlank(s.back()))
        s.remove_suffix(1);
    return s;
}

bool LooksLikeData(string_view_t sField)
{
    return ConsistsOf(sField, OLESTR("0123456789.,-+")) ||
           ConsistsOf(sField, OLESTR("0123456789./:apmAPM"));
}

} // namespace

void NormaliseRecord(string_t& sRecord)
{
    if (sRecord.size() > kMaxText)
        sRecord.resize(kMaxText);
    // Most records of large files hold neither.
    if (std::ranges::none_of(sRecord, [](OLECHAR c) { return kBlanksOrQuotes.Contains(c); }))
        return;
    CollapseBlanks(sRecord);
    std::erase_if(sRecord, [](OLECHAR c) { return kQuotes.Contains(c); });
}

string_t NormalisedRecord(string_view_t sRecord)
{
    string_t s(sRecord.substr(0, kMaxText));
    NormaliseRecord(s);
    return s;
}

bool FieldWalk::Next()
{
    if (m_bEnd)
        return false;
    std::size_t n = 0;
    while (n < m_sRest.size() && !m_dividers.Contains(m_sRest[n]))
        ++n;
    m_sField = Trimmed(m_sRest.substr(0, n));
    m_bEnd = n == m_sRest.size();
    m_sRest.remove_prefix(m_bEnd ? n : n + 1);
    return true;
}

bool FieldWalk::NextFilled()
{
    while (Next())
        if (!m_sField.empty())
            return true;
    return false;
}

std::optional<string_view_t> FieldAt(string_view_t sRecord, const DividerSet& dividers,
                                     std::size_t nIndex)
{
    FieldWalk walk(sRecord, dividers);
    for (std::size_t i = 0; walk.Next(); ++i)
        if (i == nIndex)
            return walk.Text();
    return {};
}

std::optional<string_view_t> FilledFieldAt(string_view_t sRecord, const DividerSet& dividers,
                                           std::size_t nIndex)
{
    FieldWalk walk(sRecord, dividers);
    for (std::size_t i = 0; walk.NextFilled(); ++i)
        if (i == nIndex)
            return walk.Text();
    return {};
}

bool IsHeaderRecord(string_view_t sRecord, const DividerSet& dividers)
{
    for (FieldWalk walk(sRecord, dividers); walk.NextFilled();)
        if (LooksLikeData(walk.Text()))
            return false;
    return true;
}

bool IsTextRecord(string_view_t sRecord)
{
    const std::string bytes = EncodeText(AnsiCodePage(), sRecord);
    return !bytes.empty() && bytes.size() < kTextRecordLimit &&
           std::ranges::all_of(bytes, [](unsigned char c) {
               return c >= 32 || c == '\t' || c == '\n' || c == '\r';
           });
}

} // namespace Hesperon::specifics
