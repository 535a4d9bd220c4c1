// Parts of a file that have to be looked at, held against a look at each place.
#include <algorithm>
#include <random>

#include <gtest/gtest.h>

#include "tests/support/Seed.h"
#include "tests/tabulex/units/PlainSuspects.h"
#include "tests/tabulex/units/QuoteText.h"
#include "tools/tabulex/account/SuspectBytes.h"

using namespace tabulex;

namespace {

using Span = std::pair<ULONGLONG, ULONGLONG>; // bytes from, to

// What the fast one and the plain one make of a text that comes in pieces.
class Judge
{
public:
    Judge(const std::string& text, const UsualLine& line) : m_text(text), m_plain(text, line)
    {
        m_suspects.Expect(line);
    }

    // No bytes at the end.
    void Take(std::size_t n)
    {
        m_suspects.Take(m_text.data() + m_nTaken, n);
        const ULONGLONG nFrom = m_nTaken - std::min<ULONGLONG>(m_nTaken, kBefore + kAfter);
        m_nTaken += n;
        // The last places of a piece wait for the next one.
        const std::size_t nSeen = n == 0         ? m_text.size() + 1
                                  : m_nTaken < 4 ? m_nSeen
                                                 : std::max(m_nSeen, m_nTaken - kAfter);
        const auto first = m_plain.Suspects().begin();
        if (std::find(first + std::ptrdiff_t(m_nSeen), first + std::ptrdiff_t(nSeen), true) !=
            first + std::ptrdiff_t(nSeen)) {
            if (m_parts.empty() || m_parts.back().second < nFrom)
                m_parts.push_back({nFrom, m_nTaken});
            m_parts.back().second = m_nTaken;
        }
        m_nSeen = nSeen;
    }

    void ExpectTheSame() const
    {
        std::vector<Span> parts;
        for (const auto& part : m_suspects.Parts())
            parts.push_back({part.nFrom, part.nTo});
        ASSERT_EQ(parts, m_parts) << testing::PrintToString(m_text);
    }

    std::size_t Left() const { return m_text.size() - m_nTaken; }
    bool HasParts() const { return !m_parts.empty(); }

private:
    const std::string& m_text;
    PlainSuspects m_plain;
    SuspectBytes m_suspects;
    std::size_t m_nTaken = 0, m_nSeen = 0;
    std::vector<Span> m_parts;
};

UsualLine RandomLine(std::mt19937& random)
{
    constexpr const char* kDividerSets[] = {",", ",\t", ";", "|\t", ",|", ":,;|\t", "", ":"};
    constexpr const char* kCells[] = {"", "\n2000-01-03\n09:30:00", "\n01.03.00\n1-2-3",
                                      "\n03-Jan-2000\nBRK.A",
                                      "\n2000000000000000000000000000000000000000000-01-3-1.2.3-4"};
    UsualLine line;
    line.sDividers = kDividerSets[random() % std::size(kDividerSets)];
    line.nDividers = random() % 8;
    line.bCommaDivides = line.sDividers.find(',') != std::string::npos || random() % 2 == 0;
    line.sTexts = kCells[random() % std::size(kCells)];
    return line;
}

} // namespace

TEST(SuspectsTest, AreThoseThatEachPlaceShows)
{
    std::mt19937 random(Seed());
    int nSuspect = 0, nOther = 0;
    for (int i = 0; i < Rounds(4000); ++i) {
        const std::string text = RandomQuotes(random, random() % 8 ? 300 : 3000);
        const std::size_t nMost = random() % 2 ? 80 : 1500;
        Judge judge(text, RandomLine(random));
        while (judge.Left() > 0)
            judge.Take(std::min<std::size_t>(judge.Left(), 1 + random() % nMost));
        judge.Take(0);
        ASSERT_NO_FATAL_FAILURE(judge.ExpectTheSame());
        ++(judge.HasParts() ? nSuspect : nOther);
    }
    EXPECT_GT(nSuspect, 0);
    EXPECT_GT(nOther, 0);
}

// At each place of a window, and on both sides of the border of two pieces.
TEST(SuspectsTest, AreFoundWhereverTheyStand)
{
    constexpr const char* kOdd[] = {"\"",  ",,",    ", ,", "-x ",      "+x",
                                    "1-1", "1.1.1", " .",  "1:20:30:4"};
    UsualLine line;
    line.sDividers = ",";
    line.nDividers = 1;
    for (const std::string odd : kOdd)
        for (std::size_t nAhead = 0; nAhead < 200; ++nAhead)
            for (const std::size_t nPiece : {1, 7, 120, 1000}) {
                const std::string text = std::string(nAhead, 'a') + odd + std::string(70, 'b');
                Judge judge(text, line);
                while (judge.Left() > 0)
                    judge.Take(std::min(judge.Left(), nPiece));
                judge.Take(0);
                ASSERT_NO_FATAL_FAILURE(judge.ExpectTheSame());
                ASSERT_EQ(judge.HasParts(), odd != "-x ") << odd << " behind " << nAhead;
            }
}
