// Types are given out in turn, as each stands once: to the headings that are the name of a type,
// then to other words for it, and to adjusted prices last. In a table without Open, High and Low a
// close is a price of ticks.

#include "tools/tabulex/explain/HeadingColumns.h"

#include <algorithm>
#include <cctype>
#include <numeric>

#include "tools/tabulex/explain/Cells.h"
#include "tools/tabulex/host/Properties.h"
#include "tools/tabulex/system/Fault.h"

namespace tabulex {

namespace {

using namespace IQRL_TabulexConverter;

// What any table may have; other types belong to some resolutions only.
constexpr unsigned kPlainTypes[] = {TypeSymbol, TypeDate,  TypeTime,  TypeOpen,   TypeHigh,
                                    TypeLow,    TypeClose, TypePrice, TypeVolume, TypeOpenInterest};

bool IsPlain(const Host& host, const std::string& sType)
{
    return std::ranges::any_of(kPlainTypes,
                               [&](unsigned uiType) { return host.TypeNames()[uiType] == sType; });
}

std::string LettersOf(std::string_view text)
{
    std::string letters;
    for (const char c : text)
        if (std::isalpha(static_cast<unsigned char>(c)))
            letters += static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    return letters;
}

std::string NamedType(const Host& host, const std::string& heading)
{
    const std::string letters = LettersOf(heading);
    for (const std::string& sType : host.TypeNames())
        if (LettersOf(sType) == letters)
            return sType;
    return {};
}

bool IsBarHeading(const std::string& heading)
{
    const Meaning meaning = MeaningOf(heading);
    return meaning == Meaning::Open || meaning == Meaning::High || meaning == Meaning::Low;
}

// The plainest headings of a type first.
std::vector<std::size_t> InTurn(const Host& host, const std::vector<std::string>& headings)
{
    std::vector<std::size_t> order(headings.size());
    std::iota(order.begin(), order.end(), 0);
    std::ranges::stable_sort(order, {}, [&](std::size_t i) {
        return IsAdjusted(headings[i]) ? 2 : NamedType(host, headings[i]).empty() ? 1 : 0;
    });
    return order;
}

// By heading; empty for one that gets no type.
std::vector<std::string> WantedTypes(const Host& host, const std::vector<std::string>& headings,
                                     bool bPlain)
{
    const bool bBars = std::ranges::any_of(headings, IsBarHeading);
    const auto& names = host.TypeNames();
    std::vector<std::string> wanted(headings.size()), claimed;
    for (const std::size_t i : InTurn(host, headings)) {
        std::string sType = TypeOfHeading(host, headings[i]);
        if (sType == names[TypeClose] || sType == names[TypePrice])
            sType = names[bBars ? TypeClose : TypePrice];
        if (sType.empty() || std::ranges::find(claimed, sType) != claimed.end() ||
            (bPlain && !IsPlain(host, sType)))
            continue;
        claimed.push_back(sType);
        wanted[i] = sType;
    }
    return wanted;
}

bool IsSet(const Settings& settings, ULONG nColumn)
{
    return std::ranges::any_of(
        settings.columns, [&](const ColumnSetting& column) { return column.nField == nColumn; });
}

// By column, kNoType for none; empty where the settings are refused.
std::vector<unsigned> TypesUnder(const Host& host, const std::string& path, Settings settings)
try {
    settings.dtFrom.reset();
    settings.dtTo.reset();
    settings.sSymbol.reset();
    Host trial(host.Offers());
    OpenWithSettings(trial, path, settings);
    std::vector<unsigned> types(Get(trial.Records(), &IRecordParser::get_FieldCount));
    for (ULONG i = 0; i < types.size(); ++i)
        types[i] = trial.ColumnType(i);
    return types;
} catch (const Fault&) {
    return {};
}

// The heading that stands over a column of the trial: its own, or the one before where the date
// and the time of one heading are two columns now. Null where headings can't be told apart.
const std::string* HeadingOver(const Host& host, const std::vector<std::string>& headings,
                               std::size_t nCells, std::size_t nColumn)
{
    if (nCells == headings.size())
        return &headings[nColumn];
    ULONG nTime = 0;
    const bool bSplit = nCells == headings.size() + 1 &&
                        host.Records().GetFieldIndex(static_cast<LONG>(TypeTime), &nTime) == S_OK;
    return bSplit && nColumn > 0 ? &headings[nColumn >= nTime ? nColumn - 1 : nColumn] : nullptr;
}

// What a line says of its columns; empty for one that isn't made of headings. A single word that is
// known may stand in any line, but not in as many cells as a row.
std::vector<std::string> HeadingsIn(const std::string& line, LONG nDividers, std::size_t nCells)
{
    const auto cells = CellsOf(line, nDividers);
    const auto nKnown = std::ranges::count_if(
        cells, [](const std::string& cell) { return MeaningOf(cell) != Meaning::Unknown; });
    return nKnown > 1 || (nKnown == 1 && cells.size() == nCells && nCells > 1)
               ? cells
               : std::vector<std::string>();
}

// Those of the trial, or where it has none those of the last line that it skips and that names
// columns. A blank that divides rows may stand within a heading.
std::vector<std::string> HeadingsOf(const Host& trial, const Sample& sample, std::size_t nFirst,
                                    std::size_t nCells)
{
    constexpr LONG kBlank = 2, kTab = 32;
    const FileLayout layout = ReadLayout(trial);
    const LONG nDividers = layout.nDividers.value_or(0);
    if (layout.bHasHeader && layout.sHeader)
        return CellsOf(*layout.sHeader, nDividers);
    const LONG nOthers = nDividers & ~kBlank;
    for (std::size_t i = std::min(nFirst, sample.lines.size()); i-- > 0;)
        if (auto headings =
                HeadingsIn(sample.lines[i].sText, nOthers & ~kTab ? nOthers : nDividers, nCells);
            !headings.empty())
            return headings;
    return {};
}

// A heading may go without its type where another column has that.
bool MayLack(const Host& trial, const std::string& heading)
{
    const Meaning meaning = MeaningOf(heading);
    const unsigned uiType = TypeOfMeaning(meaning);
    return uiType == kNoType || !std::ranges::count(kPlainTypes, uiType) ||
           trial.HasColumn(uiType) || (uiType == TypeClose && trial.HasColumn(TypePrice));
}

// Where a run sees no headings, it can't question what was taken for another word.
bool AgreeUnseen(const Host& trial, const std::string& heading, unsigned uiType)
{
    const unsigned uiMeant = TypeOfMeaning(MeaningOf(heading));
    const bool bDated = uiType == TypeDate || uiType == TypeTime;
    return uiType == kNoType || bDated || uiType == uiMeant ||
           (uiType == TypePrice && uiMeant == TypeClose) ||
           trial.TypeNames()[uiType] == NamedType(trial, heading);
}

bool Agree(const Host& trial, const std::string& heading, unsigned uiType, bool bSet)
{
    const Meaning meaning = MeaningOf(heading);
    const bool bDated = uiType == TypeDate || uiType == TypeTime;
    if (uiType == kNoType)
        return !bSet || MayLack(trial, heading);
    if (meaning == Meaning::Unknown)
        return bSet || bDated;
    return Agrees(meaning, uiType) || (bDated && Agrees(meaning, TypeDate)) ||
           trial.TypeNames()[uiType] == NamedType(trial, heading);
}

} // namespace

std::string TypeOfHeading(const Host& host, const std::string& heading)
{
    std::string sType = NamedType(host, heading);
    if (!sType.empty())
        return sType;
    const unsigned uiType = TypeOfMeaning(MeaningOf(heading));
    return uiType == kNoType ? std::string() : host.TypeNames()[uiType];
}

bool MayBe(const std::string& heading, unsigned uiType)
{
    const Meaning meaning = MeaningOf(heading);
    return meaning == Meaning::Unknown || Agrees(meaning, uiType);
}

std::vector<Correction> WithHeadings(const Host& host, const Sample& sample,
                                     const Correction& correction)
{
    const auto types = TypesUnder(host, sample.sPath, correction.settings);
    const auto headings = sample.Headings();
    std::vector<Correction> corrections;
    for (const bool bPlain : {false, true}) {
        Correction whole = correction;
        const auto wanted = WantedTypes(host, headings, bPlain);
        for (std::size_t i = 0; i < headings.size(); ++i) {
            const auto nColumn = static_cast<ULONG>(
                i + (correction.nDate && i > *correction.nDate ? correction.nShift : 0));
            if (i == correction.nDate || IsSet(correction.settings, nColumn) ||
                nColumn >= types.size())
                continue;
            const unsigned uiType = wanted[i].empty() ? kNoType : host.TypeOf(wanted[i]);
            if (uiType == kNoType && types[nColumn] != kNoType)
                LeaveOut(whole, nColumn, ColumnName(headings, i));
            else if (uiType != types[nColumn])
                AddColumnSetting(whole, {nColumn, wanted[i], {}});
        }
        if (corrections.empty() || corrections.front().sOptions != whole.sOptions)
            corrections.push_back(std::move(whole));
    }
    return types.empty() ? std::vector<Correction>() : corrections;
}

bool FollowsHeadings(const Host& trial, const Sample& sample, const Settings& given,
                     const Settings& corrected, std::size_t nFirst)
{
    const LONG nDividers = Get(trial.Records(), &IRecordParser::get_FieldDividers);
    const std::size_t nCells = CellsOf(sample.lines[nFirst].sText, nDividers).size();
    const bool bSeen = GetFlag(trial.Data(), &IDataParser::get_HasHeader);
    const auto headings = HeadingsOf(trial, sample, nFirst, nCells);
    for (ULONG i = 0; i < nCells && !headings.empty(); ++i) {
        const std::string* found = HeadingOver(trial, headings, nCells, i);
        const std::string heading = found ? *found : std::string();
        if (IsSet(given, i))
            continue;
        if (!Agree(trial, heading, trial.ColumnType(i), IsSet(corrected, i)) ||
            (!bSeen && !IsSet(corrected, i) && !AgreeUnseen(trial, heading, trial.ColumnType(i))))
            return false;
    }
    return true;
}

} // namespace tabulex
