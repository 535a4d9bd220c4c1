// The engine's part is played by a trial that gives the rows that it is told to.
#include "advice/Advice.h"

#include <functional>
#include <string>

#include <gtest/gtest.h>

#include "advice/Candidates.h"

namespace tabulex::advice {

namespace {

constexpr const char* kDaily = "Date,Open,High,Low,Close,Volume\n"
                               "2020-01-02,1,2,0.5,1.5,100\n"
                               "2020-01-03,1.5,2,0.5,1.25,90\n"
                               "2020-01-06,1.25,2,0.5,1.5,80\n";
constexpr const char* kUndecided = "Date,Open,High,Low,Close\n"
                                   "02/03/2010,1,2,0.5,1.5\n"
                                   "03/03/2010,1.5,2,0.5,1.25\n";

// What a perfect engine makes of a candidate, and nothing of a file as it stands.
class FakeTrial : public ITrial
{
public:
    explicit FakeTrial(const std::string& text) : m_sample(text), m_table(FindTable(m_sample)) {}

    TrialResult Run(const Reading& reading, std::string_view) override
    {
        ++nRuns;
        TrialResult result;
        if (reading.IsOwn())
            return own;
        const MomentColumns moments = FindMoments(m_table);
        const auto found = FindCandidates(m_table, moments, FindRoles(m_table, moments), true);
        for (const Candidate& candidate : found.list)
            if (candidate.reading.recipe == reading.recipe) {
                result.bRan = true;
                result.rows = candidate.expected;
            }
        if (change)
            change(result);
        return result;
    }

    const Candidates All() const
    {
        const MomentColumns moments = FindMoments(m_table);
        return FindCandidates(m_table, moments, FindRoles(m_table, moments), true);
    }

    TrialResult own;
    std::function<void(TrialResult&)> change;
    std::size_t nRuns = 0;

private:
    FileSample m_sample;
    Table m_table;
};

Advice AdviceOn(const char* pszText, FakeTrial& trial, DayMonth preferred = DayMonth::Certain)
{
    const FileSample sample{std::string(pszText)};
    return Advise(sample, {}, trial, preferred);
}

TrialResult RightOwn(const FakeTrial& trial)
{
    TrialResult own;
    own.bRan = true;
    own.rows = trial.All().list.front().expected;
    own.types = {"Date", "Open", "High", "Low", "Close", "Volume"};
    return own;
}

} // namespace

TEST(Advice, ChangesNothingWhereTheEngineIsRight)
{
    FakeTrial trial(kDaily);
    trial.own = RightOwn(trial);
    const Advice advice = AdviceOn(kDaily, trial);
    EXPECT_EQ(advice.verdict, Verdict::AsItStands);
    ASSERT_EQ(advice.readings.size(), 1u);
    EXPECT_TRUE(advice.readings.front().reading.IsOwn());
    EXPECT_EQ(trial.nRuns, 1u);
}

TEST(Advice, GivesItsOwnWhereTheEngineTakesAColumnForAnother)
{
    FakeTrial trial(kDaily);
    trial.own = RightOwn(trial);
    std::swap(trial.own.types[1], trial.own.types[4]);
    const Advice advice = AdviceOn(kDaily, trial);
    EXPECT_EQ(advice.verdict, Verdict::Advised);
    EXPECT_EQ(advice.sReason, "the component alone: it takes column 2, 'Open', for Close");
    EXPECT_EQ(advice.readings.front().score.Total(), 100);
}

TEST(Advice, GivesItsOwnWhereTheEngineReadsAValueWrong)
{
    FakeTrial trial(kDaily);
    trial.own = RightOwn(trial);
    trial.own.rows.rows[1].values[2] = 0;
    EXPECT_EQ(AdviceOn(kDaily, trial).verdict, Verdict::Advised);
}

TEST(Advice, ShowsBothWhereNothingDecides)
{
    FakeTrial trial(kUndecided);
    const Advice advice = AdviceOn(kUndecided, trial);
    EXPECT_EQ(advice.verdict, Verdict::Undecided);
    ASSERT_EQ(advice.readings.size(), 2u);
    EXPECT_EQ(advice.readings[0].reading.dayMonth, DayMonth::DayFirst);
    EXPECT_EQ(advice.readings[1].reading.dayMonth, DayMonth::MonthFirst);
    EXPECT_NE(advice.sReason.find("'02/03/2010' in line 2"), std::string::npos) << advice.sReason;
}

TEST(Advice, TakesThePreferredOrderWhereNothingElseDecides)
{
    FakeTrial trial(kUndecided);
    const Advice advice = AdviceOn(kUndecided, trial, DayMonth::MonthFirst);
    EXPECT_EQ(advice.verdict, Verdict::Advised);
    EXPECT_EQ(advice.readings.front().reading.dayMonth, DayMonth::MonthFirst);
}

TEST(Advice, GivesNoneWhereTooFewLinesComeOut)
{
    FakeTrial trial(kDaily);
    trial.change = [](TrialResult& result) { result.rows.rows.resize(1); };
    const Advice advice = AdviceOn(kDaily, trial);
    EXPECT_EQ(advice.verdict, Verdict::None);
    EXPECT_TRUE(advice.readings.empty());
    EXPECT_EQ(advice.sReason, "at the best 1 of 3 lines come out");
}

TEST(Advice, SaysWhyThereIsNone)
{
    const std::pair<std::string, const char*> rows[] = {
        {"", "the file has no lines with text"},
        {std::string("a\0b\n", 4), "the file holds bytes that no text has"},
        {"text without columns\n", "no divider cuts the lines into columns"},
        {std::string(kLongestLine + 1, '7'),
         "line 1 is longer than 16384 bytes, so it is no row of quotes"},
        {"14400000,1674100,1674100,1672500,1672700\n14460000,1672500,1672500,1672500,1672500\n",
         "there are times but no dates; name the day of the file by --date"},
        {"Open,Close\n1.5,2.5\n2.5,3.5\n", "no column holds a date"},
    };
    for (const auto& [text, pszReason] : rows) {
        FakeTrial trial(text);
        const Advice advice = Advise(FileSample(text), {}, trial);
        EXPECT_EQ(advice.verdict, Verdict::None) << text.substr(0, 80);
        EXPECT_EQ(advice.sReason, pszReason) << text.substr(0, 80);
        EXPECT_LE(advice.nTries, kMostTries);
    }
}

TEST(Score, ComparesRowsByMomentAndValues)
{
    ReadRows expected{{"Open"}, false, false, {{1, "", {1.5}}, {2, "", {2.5}}, {2, "", {3.5}}}, 0};
    ReadRows delivered = expected;
    std::swap(delivered.rows[0], delivered.rows[2]);
    EXPECT_EQ(Compare(expected, delivered).nSame, 3u);
    delivered.rows[1].values[0] = 9;
    const Agreement agreement = Compare(expected, delivered);
    EXPECT_EQ(agreement.nSame, 2u);
    EXPECT_EQ(agreement.nOther, 1u);
    EXPECT_EQ(agreement.nMissing, 1u);
}

} // namespace tabulex::advice
