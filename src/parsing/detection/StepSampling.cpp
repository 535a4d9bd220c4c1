// Up to 100 records are parsed, from the first on. Two steps are measured side by side:
// days between the dates, in 16 bits, and minutes between the stamps, in 32. The step of a
// path is the smallest one that occurs, if all are multiples of it, and else 1. A step of
// 0 makes the path fail, and so does one of more minutes than 16 bits hold, as every step
// backwards is. Where days are known, minutes aren't.

#include "src/parsing/detection/StepSampling.h"

#include <algorithm>

#include "platform/values.h"
#include "src/parsing/detection/RecordSource.h"
#include "src/values/CaseFold.h"

namespace Hesperon::specifics {
namespace {

constexpr ULONGLONG kSampledRecords = 100;
constexpr std::uint32_t kHoursPerDay = 24;
constexpr std::uint32_t kMinutesPerHour = 60;
constexpr std::uint32_t kMaxMinuteStep = 65535;

// The steps of one path. A change of the symbol counts as a step of 1 in the minimum,
// whatever the step across it is.
template <class Number>
class StepPath
{
public:
    bool HasFailed() const { return m_bFailed; }
    void Fail() { m_bFailed = true; }

    void Add(Number value, string_view_t sSymbol)
    {
        if (m_nSeen > 0)
            AddStep(static_cast<Number>(value - m_previous), sSymbol);
        if (m_bFailed)
            return;
        m_previous = value;
        m_sSymbol = sSymbol;
        ++m_nSeen;
    }

    Number Step() const
    {
        if (m_steps.empty() || m_minimum == 0)
            return 0;
        const bool bMultiples =
            std::ranges::all_of(m_steps, [this](Number n) { return n % m_minimum == 0; });
        return bMultiples ? m_minimum : Number(1);
    }

private:
    void AddStep(Number step, string_view_t sSymbol)
    {
        if constexpr (sizeof(Number) > sizeof(WORD))
            if (step > kMaxMinuteStep)
                return Fail();
        if (m_steps.empty())
            m_minimum = step;
        m_steps.push_back(step);
        m_minimum = EqualIgnoringCase(sSymbol, m_sSymbol) ? std::min(m_minimum, step) : Number(1);
        if (m_minimum == 0)
            Fail();
    }

    std::vector<Number> m_steps;
    Number m_minimum = 0;
    Number m_previous = 0;
    string_t m_sSymbol;
    unsigned m_nSeen = 0;
    bool m_bFailed = false;
};

// Reads the records and feeds both paths.
class StepSampler
{
public:
    StepSampler(ParserState& state, SampleParser& parser)
        : m_parser(parser), m_source(state.m_pDataParser), m_nDate(state.Index(TypeDate)),
          m_nTime(state.Index(TypeTime)), m_nSymbol(state.Index(TypeSymbol))
    {}

    bool Run(Steps& steps)
    {
        if (m_nDate == kNoColumn)
            return false;
        unsigned nRead = 0;
        for (; nRead < kSampledRecords && m_source.Seek(nRead); ++nRead)
            if (!Sample())
                return false;
        return nRead >= 2 && Result(steps);
    }

private:
    bool Sample()
    {
        string_t sRecord;
        if (FAILED(m_source.Read(sRecord)) || FAILED(m_parser.ParseSample(sRecord)))
            return false;
        DATE date = 0;
        if (!DateValue(m_nDate, date))
            return false;
        const string_t sSymbol = Symbol();
        const WORD nDay = static_cast<WORD>(static_cast<LONGLONG>(date));
        if (!m_days.HasFailed())
            m_days.Add(nDay, sSymbol);
        if (m_nTime == kNoColumn || m_minutes.HasFailed())
            return true;
        DATE time = 0;
        if (!DateValue(m_nTime, time))
            return false;
        m_minutes.Add(MinuteOf(nDay, time), sSymbol);
        return true;
    }

    // At most 65536 days of 1440 minutes, which 32 bits hold.
    static std::uint32_t MinuteOf(WORD nDay, DATE time)
    {
        SYSTEMTIME parts{};
        VariantTimeToSystemTime(time, &parts);
        return (nDay * kHoursPerDay + parts.wHour) * kMinutesPerHour + parts.wMinute;
    }

    bool DateValue(std::size_t nColumn, DATE& date)
    {
        Variant value;
        if (FAILED(m_parser.SampleValue(nColumn, &value)) || value.vt != VT_DATE)
            return false;
        date = value.date;
        return true;
    }

    string_t Symbol()
    {
        Variant value;
        if (m_nSymbol == kNoColumn || FAILED(m_parser.SampleValue(m_nSymbol, &value)) ||
            value.vt != VT_BSTR)
            return {};
        return string_t(TextOf(value.bstrVal));
    }

    // A path that failed leaves its step as it is.
    bool Result(Steps& steps) const
    {
        const bool bDays = !m_days.HasFailed();
        const bool bMinutes = m_nTime != kNoColumn && !m_minutes.HasFailed();
        const WORD wDay = bDays ? m_days.Step() : WORD(0);
        if (bDays)
            steps.wDay = wDay;
        if (bMinutes)
            steps.wMinute = wDay != 0 ? WORD(0) : static_cast<WORD>(m_minutes.Step());
        return bDays || bMinutes;
    }

    SampleParser& m_parser;
    RecordSource m_source;
    const std::size_t m_nDate;
    const std::size_t m_nTime;
    const std::size_t m_nSymbol;
    StepPath<WORD> m_days;
    StepPath<std::uint32_t> m_minutes;
};

} // namespace

bool SampleSteps(ParserState& state, SampleParser& parser, Steps& steps)
{
    return StepSampler(state, parser).Run(steps);
}

} // namespace Hesperon::specifics
