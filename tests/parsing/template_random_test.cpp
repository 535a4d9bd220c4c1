// The compiled matcher against the plain one, on random templates and texts.

#include <iostream>
#include <random>

#include <gtest/gtest.h>

#include "src/parsing/DataTypes.h"
#include "src/parsing/templates/TemplateDryRun.h"
#include "tests/parsing/FieldText.h"
#include "tests/parsing/PlainTemplate.h"
#include "tests/support/Seed.h"

using namespace Hesperon::specifics;

namespace {

constexpr string_view_t kTemplateAlphabet = OLESTR("yyymmmdddhhhmmsssffftt****???@:/\\.,=|-_ ixP");
constexpr string_view_t kTextAlphabet =
    OLESTR("00112233445566778899:/\\.,=|-_ +-apmPMjanDECx\u012F");
constexpr string_view_t kNumberAlphabet = OLESTR("00001234567899999..,,-+x");
constexpr string_view_t kMonths = OLESTR("janFebMARaprmayjunjulaugsepoctnovdec");

class Source
{
public:
    explicit Source(std::uint32_t seed) : m_engine(seed) {}

    std::size_t Below(std::size_t n)
    {
        return std::uniform_int_distribution<std::size_t>(0, n - 1)(m_engine);
    }
    bool OneIn(std::size_t n) { return Below(n) == 0; }
    OLECHAR CharOf(string_view_t alphabet) { return alphabet[Below(alphabet.size())]; }
    string_t StringOf(string_view_t alphabet, std::size_t maxSize)
    {
        string_t s(Below(maxSize + 1), 0);
        for (OLECHAR& c : s)
            c = CharOf(alphabet);
        return s;
    }

    // One to three characters changed, added or taken away.
    string_t Mutated(string_t s, string_view_t alphabet)
    {
        for (std::size_t n = 1 + Below(3); n > 0; --n)
            Mutate(s, alphabet);
        return s;
    }

private:
    void Mutate(string_t& s, string_view_t alphabet)
    {
        const std::size_t at = Below(s.size() + 1);
        switch (at == s.size() ? 0 : Below(4)) {
        case 0:
            s.insert(at, 1, CharOf(alphabet));
            break;
        case 1:
            s.erase(at, 1 + Below(3));
            break;
        case 2:
            s[at] = CharOf(alphabet);
            break;
        default:
            s.insert(at, 1, s[at]);
        }
    }

    std::mt19937 m_engine;
};

string_t Digits(std::size_t n)
{
    const std::string digits = std::to_string(n);
    return string_t(digits.begin(), digits.end());
}

std::size_t SampleOf(Source& source, unsigned uiType, OLECHAR letter, std::size_t nWidth)
{
    switch (letter) {
    case OLESTR('y'):
        return nWidth >= 4 || source.OneIn(3) ? 1900 + source.Below(200) : source.Below(100);
    case OLESTR('m'):
        return uiType == TypeDate ? 1 + source.Below(12) : source.Below(60);
    case OLESTR('d'):
        return 1 + source.Below(31);
    case OLESTR('h'):
        return source.Below(25);
    case OLESTR('s'):
        return source.Below(60);
    default:
        return source.Below(1200);
    }
}

// A text that the template may take: numbers padded to the length of the run, or of any
// length beside a star; often a month's name for three m, and a PM word.
string_t Rendered(Source& source, unsigned uiType, string_view_t sTemplate)
{
    const std::size_t at = std::min(sTemplate.find(OLESTR('@')), sTemplate.size());
    const string_view_t sPattern = sTemplate.substr(0, at);
    string_t sText;
    for (std::size_t i = 0; i < sPattern.size();) {
        const OLECHAR c = sPattern[i];
        const bool bStarBefore = i > 0 && sPattern[i - 1] == OLESTR('*');
        std::size_t n = 1;
        while (i + n < sPattern.size() && sPattern[i + n] == c)
            ++n;
        i += n;
        const bool bStar = bStarBefore || (i < sPattern.size() && sPattern[i] == OLESTR('*'));
        if (c == OLESTR('*'))
            continue;
        if (c == OLESTR('?'))
            sText += source.CharOf(kTextAlphabet);
        else if (c == OLESTR('t'))
            sText += source.OneIn(2) ? OLESTR("PM") : OLESTR("am");
        else if (c < OLESTR('a') || c > OLESTR('z'))
            sText.append(n, c);
        else if (c == OLESTR('m') && n == 3 && uiType == TypeDate && !source.OneIn(4))
            sText += kMonths.substr(source.Below(12) * 3, 3);
        else {
            string_t sNumber = Digits(SampleOf(source, uiType, c, n));
            if (sNumber.size() < n)
                sNumber.insert(0, n - sNumber.size(), OLESTR('0'));
            if (!bStar)
                sNumber.erase(0, sNumber.size() - n);
            sText += sNumber;
        }
    }
    return sText;
}

struct Tally
{
    std::size_t nCases = 0, nValid = 0, nDryRuns = 0;
};

class Comparison : public testing::Test
{
protected:
    string_t RandomTemplate(unsigned uiType)
    {
        const auto& defaults = m_types.at(uiType).Templates();
        const string_t& sDefault = defaults[m_source.Below(defaults.size())].szTemplate;
        switch (m_source.Below(4)) {
        case 0:
            return sDefault;
        case 1:
            return m_source.StringOf(kTemplateAlphabet, 12);
        default:
            return m_source.Mutated(sDefault, kTemplateAlphabet);
        }
    }

    string_t RandomText(unsigned uiType, string_view_t sTemplate)
    {
        switch (m_source.Below(8)) {
        case 0:
            return m_source.StringOf(kTextAlphabet, 14);
        case 1:
        case 2:
        case 3:
            return m_source.Mutated(Rendered(m_source, uiType, sTemplate), kTextAlphabet);
        default:
            return Rendered(m_source, uiType, sTemplate);
        }
    }

    void CompareTexts(unsigned uiType, const string_t& sTemplate, int nTexts)
    {
        CDataField field;
        field.SetTypeAndTemplate(uiType, sTemplate);
        PlainField plain(uiType, sTemplate);
        for (int i = 0; i < nTexts && !HasFailure(); ++i)
            Compare(field, plain, RandomText(uiType, field.GetTemplate()));
    }

    void Compare(CDataField& field, PlainField& plain, const string_t& sText)
    {
        SCOPED_TRACE("type " + std::to_string(plain.uiType) + ", template \"" +
                     Shown(plain.sTemplate) + "\", text \"" + Shown(sText) + "\"");
        field.ParseField(sText);
        const bool bValid = plain.Parse(sText);
        EXPECT_EQ(field.IsValid(), bValid);
        ExpectSameVariables(field, plain);
        if (bValid)
            ExpectSameValue(field, plain);
        ++m_tally.nCases;
        m_tally.nValid += bValid;
    }

    void CompareDryRun(unsigned uiType, const string_t& sTemplate, const string_t& sText)
    {
        SCOPED_TRACE("dry run, type " + std::to_string(uiType) + ", template \"" +
                     Shown(sTemplate) + "\", text \"" + Shown(sText) + "\"");
        const bool bCould = PlainCouldTake(uiType, sTemplate, sText);
        EXPECT_EQ(CouldTake(uiType, sTemplate, sText), bCould);
        ++m_tally.nCases;
        m_tally.nDryRuns += bCould;
    }

    static void ExpectSameVariables(CDataField& field, const PlainField& plain)
    {
        if (IsPriceType(plain.uiType))
            return;
        for (OLECHAR letter = OLESTR('a'); letter <= OLESTR('z'); ++letter) {
            const tagMATHVALUE* value = field.FindVariable(letter);
            const auto at = plain.vars.find(letter);
            ASSERT_EQ(value != nullptr, at != plain.vars.end()) << static_cast<char>(letter);
            if (value != nullptr) {
                EXPECT_EQ(value->nValue, at->second) << static_cast<char>(letter);
            }
        }
    }

    static void ExpectSameValue(CDataField& field, const PlainField& plain)
    {
        VARIANT value{};
        ASSERT_EQ(field.GetValue(&value), plain.HasValue() ? S_OK : E_FAIL);
        if (!plain.HasValue())
            return;
        if (value.vt == VT_I8)
            EXPECT_EQ(value.llVal, plain.vars.at(OLESTR('i')));
        else
            EXPECT_EQ(value.dblVal, plain.Value());
    }

    Source m_source{Seed()};
    const TypeTable m_types = DefaultTypes();
    Tally m_tally;
};

TEST_F(Comparison, DatesAndTimes)
{
    for (int i = 0; i < Rounds(40000) && !HasFailure(); ++i) {
        const unsigned uiType = m_source.OneIn(2) ? TypeDate : TypeTime;
        CompareTexts(uiType, RandomTemplate(uiType), 8);
    }
    std::cout << m_tally.nCases << " cases, " << m_tally.nValid << " valid\n";
    EXPECT_GT(m_tally.nValid, m_tally.nCases / 10);
    EXPECT_LT(m_tally.nValid, m_tally.nCases * 9 / 10);
}

TEST_F(Comparison, DryRuns)
{
    for (int i = 0; i < Rounds(200000) && !HasFailure(); ++i) {
        const unsigned uiType = m_source.OneIn(2) ? TypeDate : TypeTime;
        const string_t sTemplate = RandomTemplate(uiType);
        CompareDryRun(uiType, sTemplate, RandomText(uiType, sTemplate));
    }
    std::cout << m_tally.nCases << " cases, " << m_tally.nDryRuns << " could be taken\n";
    EXPECT_GT(m_tally.nDryRuns, m_tally.nCases / 10);
    EXPECT_LT(m_tally.nDryRuns, m_tally.nCases * 9 / 10);
}

TEST_F(Comparison, Numbers)
{
    for (unsigned uiType : {TypeClose, TypeVolume}) {
        CDataField field;
        field.SetType(uiType);
        PlainField plain(uiType, {});
        for (int i = 0; i < Rounds(100000) && !HasFailure(); ++i)
            Compare(field, plain, m_source.StringOf(kNumberAlphabet, m_source.OneIn(4) ? 45 : 10));
    }
    std::cout << m_tally.nCases << " cases, " << m_tally.nValid << " valid\n";
    EXPECT_GT(m_tally.nValid, m_tally.nCases / 10);
}

TEST_F(Comparison, NumbersOfFullPrecision)
{
    CDataField field;
    field.SetType(TypePrice);
    PlainField plain(TypePrice, {});
    for (int i = 0; i < Rounds(100000) && !HasFailure(); ++i) {
        string_t sText = m_source.StringOf(OLESTR("0123456789"), 25);
        sText.insert(m_source.Below(sText.size() + 1), 1, m_source.CharOf(OLESTR(".,")));
        Compare(field, plain, (m_source.OneIn(3) ? OLESTR("-") : OLESTR("")) + sText);
    }
    EXPECT_EQ(m_tally.nValid, m_tally.nCases);
}

} // namespace
