// In turn: is the file text with lines that can be quotes; what does the engine make of it; what
// does the table suggest; is the engine right by that; and if not, which candidate comes out best.
#include "advice/Advice.h"

#include <algorithm>
#include <utility>

#include <fmt/format.h>

#include "advice/Candidates.h"
#include "advice/MomentColumns.h"
#include "advice/OwnReading.h"
#include "advice/Roles.h"

namespace tabulex::advice {

namespace {

constexpr double kLeastDelivered = 0.9;
constexpr double kAll = 0.9995;

std::string WhyNoText(const FileSample& sample)
{
    if (sample.HasZeroBytes())
        return "the file holds bytes that no text has";
    const bool bAhead = sample.Lines().size() < 2 || sample.LongLine() < sample.Lines()[1].nLine;
    if (sample.LongLine() != 0 && bAhead)
        return fmt::format("line {} is longer than {} bytes, so it is no row of quotes",
                           sample.LongLine(), kLongestLine);
    return sample.Lines().empty() ? "the file has no lines with text" : std::string();
}

std::string WhyNoTable(const Table& table)
{
    if (table.columns.size() > kMostColumns)
        return fmt::format("the rows have more than {} cells, so they are no quotes", kMostColumns);
    return table.IsEmpty() ? "no divider cuts the lines into columns" : std::string();
}

std::string WhyNoCandidate(const MomentColumns& moments)
{
    if (moments.bTimeAlone)
        return "there are times but no dates; name the day of the file by --date";
    return moments.choices.empty() ? "no column holds a date" : "no column holds a price";
}

class Adviser
{
public:
    Adviser(const FileSample& sample, const Decoder& decode, ITrial& trial, DayMonth preferred)
        : m_sample(sample), m_decode(decode), m_trial(trial), m_preferred(preferred)
    {
        for (const SampledLine& line : sample.Lines()) {
            m_sText += line.sText;
            m_sText += '\n';
        }
    }

    Advice Work();

private:
    TrialResult Try(const Reading& reading);
    bool HasTime() const
    {
        return m_advice.nTries < kMostTries &&
               std::chrono::steady_clock::now() - m_begin < kMostTime;
    }
    Advice None(const std::string& reason);
    Advice WithoutCandidate(const TrialResult& own, const std::string& reason);
    void AddOwn(const Candidate& candidate, const TrialResult& own);
    void TryAll(Candidates& candidates);
    bool TryCandidate(Candidate candidate);
    TrialResult TryVariants(Candidate& candidate);
    void Decide(const Candidates& candidates);
    std::string AlsoDoubts() const;

    const FileSample& m_sample;
    const Decoder& m_decode;
    ITrial& m_trial;
    DayMonth m_preferred;
    std::string m_sText;
    std::string m_sFailure; // why the first candidate fell
    bool m_bFirstFell = false;
    Advice m_advice;
    std::chrono::steady_clock::time_point m_begin = std::chrono::steady_clock::now();
};

TrialResult Adviser::Try(const Reading& reading)
{
    ++m_advice.nTries;
    return m_trial.Run(reading, m_sText);
}

Advice Adviser::None(const std::string& reason)
{
    m_advice.verdict = Verdict::None;
    m_advice.sReason = reason;
    return m_advice;
}

// What can't be judged is left to the engine, and to the warnings of who runs it.
Advice Adviser::WithoutCandidate(const TrialResult& own, const std::string& reason)
{
    const std::size_t nRows = own.rows.rows.size();
    if (!own.bRan || nRows == 0 || own.rows.nBad * 10 > nRows + own.rows.nBad)
        return None(reason);
    m_advice.verdict = Verdict::AsItStands;
    m_advice.sReason =
        fmt::format("the component reads it, and nothing better is known: {}", reason);
    m_advice.doubts.push_back(m_advice.sReason);
    AddOwn({}, own);
    return m_advice;
}

void Adviser::AddOwn(const Candidate& candidate, const TrialResult& own)
{
    m_advice.readings.push_back({Reading(), ScoreOf(candidate, own)});
    m_advice.readings.back().reading.sWhat = "as it stands";
}

// Sorting holds back all rows, so it is done only where the engine needs it: it takes the direction
// of a file from two rows, which may be of one moment. And a clock in one cell with its date may be
// read only as any clock is.
TrialResult Adviser::TryVariants(Candidate& candidate)
{
    using intake::Order;
    const Reading first = candidate.reading;
    const auto variant = [&](Order order, bool bAnyClock) {
        Reading reading = first;
        reading.recipe.order = order;
        if (order == Order::AsRead && first.recipe.order == Order::SymbolAndMoment)
            reading.steps.clear();
        if (bAnyClock && reading.recipe.moment->clock != intake::ClockForm::None)
            reading.recipe.moment->clock = intake::ClockForm::Any;
        return reading;
    };
    const bool bSymbols = candidate.expected.bSymbols;
    const Order sorted = bSymbols ? Order::SymbolAndMoment : Order::Moment;
    const bool bMustSort = first.recipe.order == Order::Moment;
    const Reading variants[] = {variant(bMustSort ? sorted : Order::AsRead, false),
                                variant(sorted, false), variant(sorted, true)};
    TrialResult best;
    for (const Reading& reading : variants) {
        TrialResult result = Try(reading);
        if (&reading == variants || result.rows.rows.size() > best.rows.rows.size()) {
            best = std::move(result);
            candidate.reading = reading;
        }
        const double dExpected = static_cast<double>(candidate.expected.rows.size());
        if (static_cast<double>(best.rows.rows.size()) >= kAll * dExpected || !HasTime())
            break;
    }
    return best;
}

bool Adviser::TryCandidate(Candidate candidate)
{
    const TrialResult result = TryVariants(candidate);
    const Score score = ScoreOf(candidate, result);
    const bool bGood = result.bRan && score.parts[0].dShare >= kLeastDelivered;
    if (bGood)
        m_advice.readings.push_back({candidate.reading, score});
    else if (m_sFailure.empty())
        m_sFailure = !result.bRan ? result.sRefusal
                                  : fmt::format("at the best {} come out", score.parts[0].sReason);
    return bGood;
}

void Adviser::TryAll(Candidates& candidates)
{
    const auto preferred = std::ranges::find_if(candidates.list, [&](const Candidate& candidate) {
        return m_preferred != DayMonth::Certain && candidate.reading.dayMonth == m_preferred;
    });
    if (preferred != candidates.list.end()) {
        std::rotate(candidates.list.begin(), preferred, preferred + 1);
        candidates.bUndecided = false;
    }
    for (std::size_t i = 0; i < candidates.list.size() && HasTime(); ++i)
        if (!TryCandidate(candidates.list[i]) && i == 0)
            m_bFirstFell = true;
}

std::string Adviser::AlsoDoubts() const
{
    std::string text;
    for (const std::string& doubt : m_advice.doubts)
        text += "; " + doubt;
    return text;
}

void Adviser::Decide(const Candidates& candidates)
{
    if (m_advice.readings.empty()) {
        None(m_sFailure.empty() ? "no reading comes out well" : m_sFailure + AlsoDoubts());
    } else if (m_bFirstFell && m_advice.readings.front().reading.dayMonth == DayMonth::Certain) {
        m_advice.readings.clear(); // another choice of columns isn't what was meant
        None(m_sFailure);
    } else if (candidates.bUndecided && m_advice.readings.size() > 1) {
        m_advice.verdict = Verdict::Undecided;
        m_advice.sReason = candidates.sUndecided;
    } else {
        m_advice.verdict = Verdict::Advised;
    }
}

Advice Adviser::Work()
{
    if (const auto reason = WhyNoText(m_sample); !reason.empty())
        return None(reason);
    const Table table = FindTable(m_sample, m_decode);
    if (const auto reason = WhyNoTable(table); !reason.empty())
        return None(reason);
    const TrialResult own = Try(Reading());
    const MomentColumns moments = FindMoments(table);
    const Roles roles = FindRoles(table, moments);
    Candidates candidates = FindCandidates(table, moments, roles, m_sample.IsWhole());
    if (candidates.list.empty())
        return WithoutCandidate(own, WhyNoCandidate(moments));
    m_advice.doubts = candidates.doubts;
    if (m_sample.LongLine() != 0)
        m_advice.doubts.push_back(
            fmt::format("line {} is longer than {} bytes, and wasn't looked at",
                        m_sample.LongLine(), kLongestLine));
    const std::string fault = WhyOwnIsWrong(table, roles, candidates.list.front(), own);
    if (fault.empty() && !candidates.bUndecided) {
        m_advice.verdict = Verdict::AsItStands;
        m_advice.sReason = "the component's own reading is right";
        AddOwn(candidates.list.front(), own);
        return m_advice;
    }
    TryAll(candidates);
    Decide(candidates);
    if (m_advice.verdict == Verdict::Advised)
        m_advice.sReason = fault.empty() ? "the order is preferred"
                                         : fmt::format("the component alone: {}", fault);
    return m_advice;
}

} // namespace

Advice Advise(const FileSample& sample, const Decoder& decode, ITrial& trial, DayMonth preferred)
{
    return Adviser(sample, decode, trial, preferred).Work();
}

} // namespace tabulex::advice
