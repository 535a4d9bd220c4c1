// A correction is tried on the file as a run would read it, in a host of its own and without the
// user's range and symbol, which say nothing about the layout. It has to pass the settings check
// first, then find the first row of the table, then agree with the headings, and at last read the
// rows. One row in ten may fail, since files have bad cells; a bar whose High isn't its highest
// price, or its Low the lowest, fails the whole, since it shows that columns are exchanged. Neither
// may it lose a row as a heading. Where the resolution is what lacks, ticks are known by their
// single price, and else the smallest step between dates names one for a second try.

#include "tools/tabulex/explain/Correction.h"

#include <algorithm>
#include <cmath>
#include <map>
#include <optional>
#include <utility>

#include <fmt/format.h>
#include <fmt/ranges.h>

#include "tools/tabulex/explain/Cells.h"
#include "tools/tabulex/explain/DateTexts.h"
#include "tools/tabulex/explain/HeadingColumns.h"
#include "tools/tabulex/host/Properties.h"
#include "tools/tabulex/host/SettingsCheck.h"
#include "tools/tabulex/system/Fault.h"

namespace tabulex {

namespace {

using namespace IQRL_TabulexConverter;

constexpr ULONGLONG kTriedRows = 100; // as many as detection looks at

// Bar prices by type; false where an assigned column isn't read.
bool ReadPrices(const Host& host, std::map<unsigned, double>& prices)
{
    const ULONG nCount = Get(host.Records(), &IRecordParser::get_FieldCount);
    for (ULONG i = 0; i < nCount; ++i) {
        const unsigned uiType = host.ColumnType(i);
        Variant value;
        if (uiType == kNoType)
            continue;
        if (host.Records().GetFieldValue(value.put(), i) != S_OK)
            return false;
        if (IsPriceType(uiType))
            prices[uiType] = value.dblVal;
    }
    return true;
}

bool IsBar(const std::map<unsigned, double>& prices)
{
    const auto high = prices.find(TypeHigh), low = prices.find(TypeLow);
    return std::ranges::all_of(prices, [&](const auto& price) {
        return (high == prices.end() || price.second <= high->second) &&
               (low == prices.end() || price.second >= low->second);
    });
}

// Whether the record last parsed follows the one before it in the steps of the resolution. A
// record of another symbol follows any.
class StepTrial
{
public:
    explicit StepTrial(const Host& host) : m_host(host)
    {
        m_bSymbol = host.Records().GetFieldIndex(static_cast<LONG>(TypeSymbol), &m_nSymbol) == S_OK;
    }

    bool Follows()
    {
        Variant symbol, date;
        if (m_bSymbol)
            m_host.Records().GetFieldValue(symbol.put(), m_nSymbol);
        const string_t name = symbol.vt == VT_BSTR && symbol.bstrVal ? symbol.bstrVal : string_t();
        const DATE dtLast =
            std::exchange(m_dtLast, GetDate(m_host.Records(), &IRecordParser::get_CurrentDateTime));
        m_bSame = std::exchange(m_name, name) == name && dtLast != 0;
        if (!m_bSame)
            return true;
        VARIANT last{};
        last.vt = VT_DATE;
        last.date = dtLast;
        Bstr error;
        return m_host.Records().CheckResolution(last, error.put(), nullptr) == S_OK;
    }

    // Whether the two last records are of one symbol.
    bool IsSame() const { return m_bSame; }

private:
    const Host& m_host;
    bool m_bSymbol;
    ULONG m_nSymbol = 0;
    string_t m_name;
    DATE m_dtLast = 0;
    bool m_bSame = false;
};

// Which of two columns is the open and which the close shows from bar to bar: a market opens near
// the close before it.
class RunOfPrices
{
public:
    void Take(const std::map<unsigned, double>& prices, bool bSameSymbol)
    {
        const auto open = prices.find(TypeOpen), close = prices.find(TypeClose);
        if (open == prices.end() || close == prices.end())
            return;
        if (bSameSymbol && m_last) {
            m_dRight += std::abs(open->second - m_last->second);
            m_dExchanged += std::abs(close->second - m_last->first);
        }
        m_last = {open->second, close->second};
    }

    bool RunsOn() const { return m_dRight <= m_dExchanged; }

private:
    std::optional<std::pair<double, double>> m_last; // open and close
    double m_dRight = 0, m_dExchanged = 0;
};

// A few rows may have a cell that is bad in the file itself.
bool RowsComeOut(const Host& host, bool bGuess)
{
    ULONGLONG n = 0, nBad = 0;
    StepTrial steps(host);
    RunOfPrices run;
    for (; n < kTriedRows && host.Data().put_Position(n) == S_OK; ++n) {
        Bstr text;
        std::map<unsigned, double> prices;
        if (host.Data().get_CurrentRecord(text.put()) != S_OK ||
            FAILED(host.Records().Parse(text.get())) || !ReadPrices(host, prices) ||
            !steps.Follows())
            ++nBad;
        else if (!IsBar(prices))
            return false;
        else
            run.Take(prices, steps.IsSame());
    }
    return n > 0 && nBad * 10 <= n && (!bGuess || run.RunsOn());
}

// The first row of the table is a record: at position 0, or in a file that runs backwards the
// last one.
bool HasFirstRow(const Host& host, const Sample& sample, std::size_t nFirstData)
{
    const FileLayout layout = ReadLayout(host);
    const auto& first = layout.bInverted ? layout.sLastRecord : layout.sFirstRecord;
    return nFirstData < sample.lines.size() && first &&
           first->starts_with(sample.lines[nFirstData].sText);
}

// Behind the header and the lines that hold no data.
std::size_t FirstRow(const Host& host, const Sample& sample, LONG nDividers)
{
    std::size_t i = Get(host.Data(), &IDataParser::get_HeaderOffset) +
                    (GetFlag(host.Data(), &IDataParser::get_HasHeader) ? 1 : 0);
    while (i < sample.lines.size() && !HasData(CellsOf(sample.lines[i].sText, nDividers)))
        ++i;
    return i;
}

// A row of the table among the lines that are left out ahead of it.
bool LosesRow(const Sample& sample, std::size_t nFirst, std::size_t nCells, LONG nDividers)
{
    return std::any_of(
        sample.lines.begin(), sample.lines.begin() + static_cast<std::ptrdiff_t>(nFirst),
        [&](const SampleLine& line) {
            const auto cells = CellsOf(line.sText, nDividers);
            const auto nData = std::ranges::count_if(cells, LooksLikeData);
            return cells.size() == nCells && static_cast<std::size_t>(nData) * 2 > nCells;
        });
}

// The first row has a date where the symbol is to be.
bool HasDatesForSymbols(const Host& host, const std::string& line, LONG nDividers)
{
    ULONG nSymbol = 0;
    const auto cells = CellsOf(line, nDividers);
    if (host.Records().GetFieldIndex(static_cast<LONG>(TypeSymbol), &nSymbol) != S_OK ||
        nSymbol >= cells.size() || cells[nSymbol].size() < 8)
        return false;
    const DateShape* shape = DateShapeOf(cells[nSymbol]);
    return shape && shape->kind != DateShapeKind::NoDate;
}

bool Comes(const Host& host, const Sample& sample, const Settings& given,
           const Correction& correction)
{
    if (!WhyNotConvertible(host).empty())
        return false;
    const LONG nDividers = Get(host.Records(), &IRecordParser::get_FieldDividers);
    const std::size_t nFirst = FirstRow(host, sample, nDividers);
    if (!HasFirstRow(host, sample, nFirst))
        return false;
    const std::size_t nCells = CellsOf(sample.lines[nFirst].sText, nDividers).size();
    const bool bHeader = GetFlag(host.Data(), &IDataParser::get_HasHeader);
    if (bHeader && nFirst > 0 &&
        CellsOf(sample.lines[nFirst - 1].sText, nDividers).size() != nCells)
        return false;
    return !LosesRow(sample, nFirst, nCells, nDividers) &&
           FollowsHeadings(host, sample, given, correction.settings, nFirst) &&
           !HasDatesForSymbols(host, sample.lines[nFirst].sText, nDividers) &&
           RowsComeOut(host, correction.bGuess);
}

// The name under which the resolution is offered that the steps between dates show; empty where
// they show none.
std::string ResolutionOfSteps(const Host& host)
{
    DATE dtLast = 0, dLeast = 1e6;
    for (ULONGLONG n = 0; n < kTriedRows && host.Data().put_Position(n) == S_OK; ++n) {
        Bstr text;
        if (host.Data().get_CurrentRecord(text.put()) != S_OK ||
            FAILED(host.Records().Parse(text.get())))
            continue;
        const DATE date = GetDate(host.Records(), &IRecordParser::get_CurrentDateTime);
        if (dtLast != 0 && date > dtLast)
            dLeast = std::min(dLeast, date - dtLast);
        dtLast = date;
    }
    const bool bTime = host.HasColumn(TypeTime);
    // A little less than each step, as dates are binary fractions of days.
    const LONG nId = dLeast >= 6.99         ? ResolutionWeeks
                     : dLeast >= 0.99       ? ResolutionDays
                     : !bTime               ? ResolutionNone
                     : dLeast > 0.99 / 1440 ? ResolutionMinutes
                                            : ResolutionTickBars;
    const auto* row = nId == ResolutionNone ? nullptr : host.Offers().FindId(nId);
    return row ? row->sName : std::string();
}

// A tick has a price and no more; without a resolution it is called a close.
std::string LikelyResolution(const Host& host)
{
    const bool bTicks = (host.HasColumn(TypePrice) || host.HasColumn(TypeClose)) &&
                        host.HasColumn(TypeTime) && !host.HasColumn(TypeOpen) &&
                        !host.HasColumn(TypeHigh) && !host.HasColumn(TypeLow);
    const auto* row = bTicks ? host.Offers().FindId(ResolutionTick) : nullptr;
    return row ? row->sName : ResolutionOfSteps(host);
}

// One of the corrections on the file. `resolution` then is what might help, where it lacks one.
bool Works(const Host& host, const Sample& sample, const Settings& given,
           const Correction& correction, std::string& resolution)
try {
    Settings tried = correction.settings;
    tried.dtFrom.reset();
    tried.dtTo.reset();
    tried.sSymbol.reset();
    tried.bWholeFile = false;
    Host trial(host.Offers());
    OpenWithSettings(trial, sample.sPath, tried);
    if (Comes(trial, sample, given, correction))
        return true;
    if (!tried.sResolution && trial.HasColumn(TypeDate) &&
        Get(trial.Records(), &IRecordParser::get_Resolution) == ResolutionNone)
        resolution = LikelyResolution(trial);
    return false;
} catch (const Fault&) {
    return false; // a setting is refused
}

std::string Step(const Correction& correction)
{
    return correction.dropped.empty()
               ? "try " + correction.sOptions
               : fmt::format("without {}, try {}", fmt::join(correction.dropped, " and "),
                             correction.sOptions);
}

// A resolution may take types away that it doesn't admit, or give others.
Correction WithResolution(Correction correction, const std::string& resolution)
{
    correction.settings.sResolution = resolution;
    const bool bBlank = resolution.find(' ') != std::string::npos;
    correction.sOptions += fmt::format("{}--resolution {}", correction.sOptions.empty() ? "" : " ",
                                       bBlank ? fmt::format("'{}'", resolution) : resolution);
    return correction;
}

} // namespace

std::string FirstThatWorks(const Host& host, const Sample& sample, const Settings& given,
                           const std::vector<Correction>& corrections)
{
    for (const Correction& correction : corrections) {
        std::string resolution, unused;
        if (Works(host, sample, given, correction, resolution) && !correction.sOptions.empty())
            return Step(correction);
        if (resolution.empty())
            continue;
        const Correction chosen = WithResolution(correction, resolution);
        if (Works(host, sample, given, chosen, unused))
            return Step(chosen);
        for (const Correction& whole : WithHeadings(host, sample, chosen))
            if (whole.sOptions != chosen.sOptions && Works(host, sample, given, whole, unused))
                return Step(whole);
    }
    return {};
}

std::string ColumnOption(ULONG nColumn, const std::string& sType, const std::string& sTemplate)
{
    const bool bBlank = sType.find(' ') != std::string::npos;
    if (sTemplate.empty() && !bBlank)
        return fmt::format("--column {}={}", nColumn + 1, sType);
    return fmt::format("--column '{}={}{}{}'", nColumn + 1, sType, sTemplate.empty() ? "" : ":",
                       sTemplate);
}

void AddColumnSetting(Correction& correction, const ColumnSetting& column)
{
    std::erase_if(correction.settings.columns,
                  [&](const ColumnSetting& old) { return old.nField == column.nField; });
    correction.settings.columns.push_back(column);
    if (!correction.sOptions.empty())
        correction.sOptions += ' ';
    correction.sOptions += ColumnOption(column.nField, column.sType, column.sTemplate);
}

void LeaveOut(Correction& correction, ULONG nColumn, const std::string& sName)
{
    AddColumnSetting(correction, {nColumn, std::string(kUnknownName), {}});
    correction.dropped.push_back(sName);
}

} // namespace tabulex
