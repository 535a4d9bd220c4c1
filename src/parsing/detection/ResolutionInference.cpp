#include "src/parsing/detection/ResolutionInference.h"

#include <algorithm>
#include <cmath>

#include "platform/values.h"
#include "src/parsing/detection/FieldConstructor.h"
#include "src/parsing/detection/RecordSource.h"
#include "src/values/CaseFold.h"

namespace Hesperon::specifics {
namespace {

constexpr ULONGLONG kSampledRecords = 100;
constexpr std::uint32_t kHoursPerDay = 24;
constexpr std::uint32_t kMinutesPerHour = 60;
constexpr std::uint32_t kMaxMinuteStep = 65535;
constexpr WORD kWeek = 7;

// Size behind the last bar of the offered name of a resolution; 0 for none.
LONG HostSize(const ParserState& state, LONG nResolution)
{
    const auto offered =
        std::ranges::find(state.m_resolutionTemplates, nResolution, &ResolutionTemplate::nId);
    if (offered == state.m_resolutionTemplates.end())
        return 0;
    const std::size_t nBar = offered->sName.rfind('|');
    if (nBar == string_t::npos)
        return 0;
    return std::max<LONG>(0, TextToInt32(string_view_t(offered->sName).substr(nBar + 1)));
}

bool IsOffered(const ParserState& state, LONG nResolution)
{
    return std::ranges::any_of(state.m_resolutionTemplates,
                               [=](auto& offered) { return offered.nId == nResolution; });
}

// ---- steps ----------------------------------------------------------------------

// The smallest step between consecutive values, and whether all are its multiples. A
// change of the symbol starts over: the step across it counts as 1 in the minimum.
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

// ---- inference ------------------------------------------------------------------

class Inference
{
public:
    Inference(ParserState& state, SampleParser& parser, string_view_t sRecord, int flag)
        : m_state(state), m_parser(parser), m_sRecord(sRecord), m_nFlag(flag)
    {}

    HRESULT Run()
    {
        const HRESULT hr = CFieldConstructor(m_state).ProcessRecord(m_sRecord, true, m_nFlag);
        if (FAILED(hr) || m_state.Index(TypeDate) == kNoColumn)
            return hr;
        m_state.PredefineDatesAndTimes(true);
        const std::vector<CDataField> firstLook = m_state.m_fields;
        Steps steps;
        if (SampleSteps(m_state, m_parser, steps) && FitsSteps(steps))
            return S_OK;
        if (Fits(ResolutionTickBars, 0) || Fits(ResolutionTick, 1) || Fits(ResolutionCountBars, 0))
            return S_OK;
        m_state.m_nResolution = ResolutionNone;
        m_state.m_fields = firstLook;
        return hr;
    }

private:
    bool FitsSteps(const Steps& steps)
    {
        return (steps.wDay == kWeek && Fits(ResolutionWeeks, 1)) ||
               (steps.wDay != 0 && Fits(ResolutionDays, 1)) || FitsMinutes(steps.wMinute);
    }

    bool FitsMinutes(WORD wMinute)
    {
        if (wMinute == 0)
            return false;
        const LONG nHostSize = HostSize(m_state, ResolutionMinutes);
        if (nHostSize == 0)
            return Fits(ResolutionMinutes, wMinute);
        return wMinute % nHostSize == 0 && Fits(ResolutionMinutes, nHostSize);
    }

    // Rebuilds the columns with the types that this resolution admits.
    bool Fits(LONG nResolution, LONG nSize)
    {
        if (!IsOffered(m_state, nResolution))
            return false;
        m_state.m_nResolution = nResolution;
        if (FAILED(CFieldConstructor(m_state).ProcessRecord(m_sRecord, false, m_nFlag)) ||
            !HasRequiredTypes(m_state, RequiredTypes(nResolution)) || HasDuplicates(m_state))
            return false;
        m_state.m_nResolutionSize = nSize;
        return true;
    }

    ParserState& m_state;
    SampleParser& m_parser;
    const string_view_t m_sRecord;
    const int m_nFlag;
};

} // namespace

HRESULT FindResolution(ParserState& state, SampleParser& parser, string_view_t sRecord, int flag)
{
    state.FindDivider(sRecord);
    const string_t sNormalised = NormalisedRecord(sRecord);
    state.m_nResolution = ResolutionNone;
    state.m_nResolutionSize = 0;
    return Inference(state, parser, sNormalised, flag).Run();
}

bool SampleSteps(ParserState& state, SampleParser& parser, Steps& steps)
{
    return StepSampler(state, parser).Run(steps);
}

bool HasRequiredTypes(const ParserState& state, std::span<const unsigned> required)
{
    return std::ranges::all_of(required,
                               [&](unsigned uiType) { return state.Index(uiType) != kNoColumn; });
}

bool HasDuplicates(const ParserState& state)
{
    for (std::size_t i = 0; i < state.m_fields.size(); ++i) {
        const unsigned uiType = state.m_fields[i].GetType();
        if (uiType != kNoType && state.Index(uiType) != i)
            return true;
    }
    return false;
}

} // namespace Hesperon::specifics
