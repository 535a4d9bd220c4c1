// First the column is found that a person would take for the date: by its heading, by how many of
// its cells a date template reads, and by the shapes of those that none reads. Then the best
// template says what is wrong: if it reads most cells, the first line that it doesn't read spoils
// the column; if it reads few, the cells have a form that isn't known, and their shape tells which.
#include <algorithm>
#include <array>

#include <fmt/format.h>

#include "tools/tabulex/explain/Causes.h"
#include "tools/tabulex/explain/Cells.h"
#include "tools/tabulex/explain/DateTexts.h"
#include "tools/tabulex/explain/Shown.h"
#include "tools/tabulex/host/Properties.h"
#include "tools/tabulex/text/Text.h"

namespace tabulex {

namespace {

constexpr std::size_t kMostColumns = 64; // that are looked at
constexpr std::size_t kScoredLines = 12;

struct HeadingClue
{
    std::string_view word; // in lower case
    double dScore;
};
constexpr HeadingClue kHeadingClues[] = {
    {"date", 3},  {"datum", 3},  {"fecha", 3}, {"timestamp", 3}, {"\xE6\x97\xA5\xE6\x9C\x9F", 3},
    {"tarih", 3}, {"data", 2.5}, {"day", 2},   {"time", 1.5},    {"\xE6\x97\xB6\xE9\x97\xB4", 1.5},
};

// Forms that no default template reads and a template of one's own can.
constexpr const char* kFurtherTemplates[] = {
    "*y.*m.*d",  "mmm *d *y", "mmm *d, *y", "*d mmm, *y", "mmm-*d-*y", "*d/mmm/*y",
    "*y-mmm-*d", "*y mmm *d", "*d.mmm.*y",  "mmm/*d/*y",  "*y/mmm/*d", "*m.*d.*y",
    "yyyymmmdd", "*d-mmm *y", "yyyyddmm",   "mmddyyyy",   "*y-*m-*d?",
};

// What a person would take for the date, and what the templates make of it.
struct DateColumn
{
    std::size_t nColumn;
    ColumnCells cells;
    TemplateFit best;

    bool IsPartlyRead() const { return best.nRead * 4 > cells.texts.size(); }
    // The first cell that isn't read.
    std::size_t Failing() const { return std::min(best.nFirstFailure, cells.texts.size() - 1); }
};

double HeadingScore(const std::string& heading)
{
    const std::string text = LowerCase(heading);
    double dScore = 0;
    for (const HeadingClue& clue : kHeadingClues)
        if (text.find(clue.word) != std::string::npos)
            dScore = std::max(dScore, clue.dScore);
    return dScore;
}

// Templates of digits alone read many a number; a date has six digits at least, and one with a
// single point among its digits is a price.
bool IsShortNumber(const std::string& text)
{
    const auto nPoints = std::ranges::count(text, '.') + std::ranges::count(text, ',');
    return text.find_first_not_of("0123456789.,+-") == std::string::npos && nPoints < 2 &&
           std::ranges::count(text, '-') == 0 &&
           (nPoints == 1 ? text.find_first_of(".,") < 9 : text.size() < 6);
}

bool AreShortNumbers(const std::vector<std::string>& texts)
{
    return std::ranges::all_of(texts, IsShortNumber);
}

double ShapeScore(const std::string& text)
{
    const DateShape* shape = DateShapeOf(text);
    if (!shape || shape->kind == DateShapeKind::NoDate || IsShortNumber(text))
        return 0;
    return shape->kind == DateShapeKind::TimeOnly ? 0.5 : 3;
}

double ColumnScore(const Case& theCase, std::size_t nColumn, const std::string& heading)
{
    ColumnCells cells = CellsOfColumn(theCase.sample, nColumn);
    cells.texts.resize(std::min(cells.texts.size(), kScoredLines));
    if (cells.texts.empty())
        return 0;
    const auto fits = AreShortNumbers(cells.texts) ? std::vector<TemplateFit>()
                                                   : theCase.trials.FitsOf(TypeDate, cells.texts);
    double dShapes = 4 * static_cast<double>(fits.empty() ? 0 : fits.front().nRead);
    if (dShapes == 0)
        for (const std::string& text : cells.texts)
            dShapes += ShapeScore(text);
    return HeadingScore(heading) + dShapes / static_cast<double>(cells.texts.size());
}

std::size_t MostCells(const Sample& sample)
{
    std::size_t nMost = sample.Headings().size();
    for (std::size_t i = 0; i < std::min(sample.DataLines(), kScoredLines); ++i)
        nMost = std::max(nMost, CellsOf(sample.DataLine(i).sText, sample.nDividers).size());
    return std::min(nMost, kMostColumns);
}

std::optional<std::size_t> LikelyDateColumn(const Case& theCase)
{
    const auto headings = theCase.sample.Headings();
    std::optional<std::size_t> best;
    double dBest = 1;
    for (std::size_t i = 0; i < MostCells(theCase.sample); ++i) {
        const double dScore =
            ColumnScore(theCase, i, i < headings.size() ? headings[i] : std::string());
        if (dScore > dBest) {
            best = i;
            dBest = dScore;
        }
    }
    return best;
}

DateColumn FitsOfColumn(const Case& theCase, std::size_t nColumn)
{
    DateColumn column{nColumn, CellsOfColumn(theCase.sample, nColumn), {}};
    const FileLayout& layout = theCase.sample.layout;
    if (nColumn < layout.columns.size() && layout.columns[nColumn].sType == "Date") {
        column.best =
            theCase.trials.FitOf(TypeDate, layout.columns[nColumn].sTemplate, column.cells.texts);
        return column;
    }
    const auto fits = theCase.trials.FitsOf(TypeDate, column.cells.texts);
    if (!fits.empty())
        column.best = fits.front();
    return column;
}

// ---- steps to take

void AddTemplateCorrections(const Case& theCase, const DateColumn& column,
                            const std::string& sTemplate, std::vector<Correction>& corrections)
{
    Correction correction{theCase.settings, {}};
    AddColumnSetting(correction, {static_cast<ULONG>(column.nColumn), "Date", sTemplate});
    AddWithHeadings(theCase, column.nColumn, correction, corrections);
}

// Those that read nearly all cells, the component's and further ones.
std::vector<std::string> TemplatesThatRead(const Case& theCase, const DateColumn& column)
{
    std::vector<std::string> templates;
    const auto readsMost = [&](const TemplateFit& fit) {
        return fit.nRead * 10 > column.cells.texts.size() * 9;
    };
    if (readsMost(column.best))
        templates.push_back(column.best.sTemplate);
    for (const char* pszTemplate : kFurtherTemplates)
        if (readsMost(theCase.trials.FitOf(TypeDate, pszTemplate, column.cells.texts)))
            templates.emplace_back(pszTemplate);
    return templates;
}

std::string TemplateStep(const Case& theCase, const DateColumn& column)
{
    std::vector<Correction> corrections;
    for (const std::string& sTemplate : TemplatesThatRead(theCase, column))
        AddTemplateCorrections(theCase, column, sTemplate, corrections);
    return StepOf(theCase, corrections);
}

// A blank as divider makes two columns of the date and the time; the headings then no longer fit,
// so the lines up to them are skipped.
std::string BlankDividerStep(const Case& theCase, std::size_t nDate)
{
    constexpr LONG kBlank = 2, kTab = 32;
    Correction correction{theCase.settings, {}};
    correction.settings.nDividers = theCase.sample.nDividers | kBlank;
    const LONG nNamed = (theCase.sample.nDividers & ~kTab) | kBlank;
    correction.sOptions = DividerOption(theCase.sample.nDividers == kTab ? kTab | kBlank : nNamed);
    std::vector<Correction> corrections{correction};
    const auto nSkip = static_cast<ULONG>(theCase.sample.nFirstData);
    correction.settings.nLinesToSkip = nSkip;
    correction.sOptions += fmt::format(" --lines-to-skip {}", nSkip);
    correction.nShift = 1;
    AddWithHeadings(theCase, nDate, correction, corrections);
    return StepOf(theCase, corrections);
}

std::string StepFor(const Case& theCase, const DateColumn& column, const DateShape* shape)
{
    const std::string options = TemplateStep(theCase, column);
    if (options.empty() && shape && shape->kind == DateShapeKind::DateAndTime)
        return BlankDividerStep(theCase, column.nColumn);
    return options;
}

// ---- causes

// Dates in two forms; empty if no template reads the failing cell.
std::string MixtureCause(const Case& theCase, const DateColumn& column)
{
    const std::size_t i = column.Failing();
    const std::string& text = column.cells.texts[i];
    const auto fits = theCase.trials.FitsOf(TypeDate, {text});
    if (AreShortNumbers({text}) || fits.empty() || fits.front().nRead == 0)
        return {};
    return fmt::format(
        "{} has dates in two forms: {} of {} sampled lines are read by '{}', and {} has "
        "{}, which is read by '{}': write all dates in one form before converting.",
        ColumnName(theCase.sample.Headings(), column.nColumn), column.best.nRead,
        column.cells.texts.size(), column.best.sTemplate, column.cells.lines[i]->Name(),
        Shown(text), fits.front().sTemplate);
}

std::string SpoilerCause(const Case& theCase, const DateColumn& column)
{
    const Sample& sample = theCase.sample;
    const std::size_t i = column.Failing();
    if (std::string cause = MixtureCause(theCase, column); !cause.empty())
        return cause;
    const DateShape* shape = DateShapeOf(column.cells.texts[i]);
    const std::string options = StepFor(theCase, column, shape);
    return fmt::format(
        "{} reads as dates by '{}' in {} of {} sampled lines, but {} has {} there{}{}",
        ColumnName(sample.Headings(), column.nColumn), column.best.sTemplate, column.best.nRead,
        column.cells.texts.size(), column.cells.lines[i]->Name(), ShownCell(column.cells.texts[i]),
        shape && shape->kind != DateShapeKind::NoDate ? fmt::format(" ({})", shape->what) : "",
        NextStep(options, "mend or remove that line"));
}

std::string FormCause(const Case& theCase, const DateColumn& column)
{
    const std::size_t i = column.Failing();
    const std::string& text = column.cells.texts[i];
    const DateShape* shape = DateShapeOf(text);
    const std::string options = StepFor(theCase, column, shape);
    return fmt::format(
        "{}: {} in {} is no date that a template reads{}{}", column.cells.lines[i]->Name(),
        ShownCell(text), ColumnName(theCase.sample.Headings(), column.nColumn),
        shape ? fmt::format("; {}", shape->what) : "",
        NextStep(options, shape ? shape->next : "write the dates as 2024-01-31 before converting"));
}

// Headings in other letters can't name a column.
bool HasLetters(const std::vector<std::string>& headings)
{
    const auto has = [&](auto isSuch) {
        return std::ranges::any_of(headings, [&](const std::string& heading) {
            return std::ranges::any_of(heading, isSuch);
        });
    };
    return !has([](char c) { return (c & 0x80) != 0; }) ||
           has([](char c) { return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z'); });
}

// The lines behind the header without it, or as rows from the header on if it is one.
std::string HeaderStep(const Case& theCase, bool bRow)
{
    const auto nLines = static_cast<ULONG>(theCase.sample.nFirstData - (bRow ? 1 : 0));
    Correction correction{theCase.settings, {}};
    if (bRow) {
        correction.settings.header = HeaderChoice::No;
        correction.sOptions = "--header no";
    }
    if (nLines > 0) {
        correction.settings.nLinesToSkip = nLines;
        correction.sOptions += fmt::format("{}--lines-to-skip {}", bRow ? " " : "", nLines);
    }
    return StepOf(theCase, {correction});
}

bool IsRow(const std::vector<std::string>& cells)
{
    return static_cast<std::size_t>(std::ranges::count_if(cells, LooksLikeData)) * 2 > cells.size();
}

// The column reads, so the headings kept it from being found.
std::string UnusedCause(const Case& theCase, const DateColumn& column)
{
    const Sample& sample = theCase.sample;
    const auto headings = sample.Headings();
    const SampleLine* header = sample.Header();
    const bool bRow = header && IsRow(headings);
    std::string step = bRow ? HeaderStep(theCase, bRow) : std::string();
    if (step.empty())
        step = TemplateStep(theCase, column);
    if (step.empty() && header && !bRow)
        step = HeaderStep(theCase, bRow);
    if (bRow)
        return fmt::format("{} is taken for the headings and looks like data, {}{}", header->Name(),
                           Shown(header->sText), NextStep(step, "put a line of headings there"));
    if (header && !HasLetters(headings))
        return fmt::format(
            "The headings in {} have no Latin letters, by which columns are known, so "
            "none was taken for the date{}",
            header->Name(),
            NextStep(step, fmt::format("give {} the headings Date, Open, High, Low, Close "
                                       "and so on",
                                       header->Name())));
    if (header && headings.size() != CountCells(header->sText, sample.nDividers))
        return fmt::format(
            "{} has an empty heading, and empty cells aren't counted, so the headings "
            "stand over other columns than their own{}",
            header->Name(), NextStep(step, "put a heading there"));
    return fmt::format("{} reads as dates by '{}', but wasn't taken for the date{}",
                       ColumnName(headings, column.nColumn), column.best.sTemplate,
                       NextStep(step, fmt::format("name the columns by --column, this one by "
                                                  "--column '{}=Date:{}'",
                                                  column.nColumn + 1, column.best.sTemplate)));
}

// The template that the user gave for the column; null for none.
const std::string* GivenTemplate(const Case& theCase, std::size_t nColumn)
{
    for (const ColumnSetting& setting : theCase.settings.columns)
        if (setting.nField == nColumn && !setting.sTemplate.empty())
            return &setting.sTemplate;
    return nullptr;
}

// Another template reads what the given one doesn't.
std::string GivenCause(const Case& theCase, DateColumn column)
{
    const std::string* given = GivenTemplate(theCase, column.nColumn);
    if (!given)
        return {};
    const std::size_t i = column.Failing();
    column.best = theCase.trials.FitsOf(TypeDate, column.cells.texts).front();
    const auto others = TemplatesThatRead(theCase, column);
    if (others.empty() || AreShortNumbers({column.cells.texts[i]}))
        return {};
    return fmt::format(
        "The template given by --column {}, '{}', doesn't read {} in {}; '{}' does{}",
        column.nColumn + 1, *given, Shown(column.cells.texts[i]), column.cells.lines[i]->Name(),
        others.front(), NextStep(TemplateStep(theCase, column), "give that one"));
}

std::string NoColumnCause(const Case& theCase)
{
    const Sample& sample = theCase.sample;
    if (sample.DataLines() == 0)
        return {};
    const SampleLine& line = sample.DataLine(0);
    if (std::string cause = PreambleCause(theCase); !cause.empty())
        return cause;
    const auto cells = CellsOf(line.sText, sample.nDividers);
    const auto isTime = [&](const std::string& cell) {
        const auto fits = theCase.trials.FitsOf(TypeTime, {cell});
        return cell.find(':') != std::string::npos && !fits.empty() && fits.front().nRead > 0;
    };
    if (std::ranges::any_of(cells, isTime))
        return fmt::format("The file has times and no date ({}: {}): add a column with the date.",
                           line.Name(), Shown(line.sText));
    return fmt::format("No column of {} looks like a date: {}. Add a column with dates, or name "
                       "theirs by --column N=Date:TEMPLATE.",
                       line.Name(), Shown(line.sText));
}

} // namespace

std::string DateCause(const Case& theCase)
{
    const bool bDates = theCase.sample.layout.dtStart != 0 && theCase.sample.layout.dtEnd != 0;
    ULONG nDate = 0;
    const bool bDateColumn =
        theCase.host.Records().GetFieldIndex(static_cast<LONG>(TypeDate), &nDate) == S_OK;
    if (bDates && bDateColumn)
        return {};
    const auto nColumn =
        bDateColumn ? std::optional<std::size_t>(nDate) : LikelyDateColumn(theCase);
    if (!nColumn)
        return NoColumnCause(theCase);
    const DateColumn column = FitsOfColumn(theCase, *nColumn);
    if (column.cells.texts.empty())
        return NoColumnCause(theCase);
    if (column.best.nRead == column.cells.texts.size())
        return UnusedCause(theCase, column);
    if (std::string cause = GivenCause(theCase, column); !cause.empty())
        return cause;
    return column.IsPartlyRead() ? SpoilerCause(theCase, column) : FormCause(theCase, column);
}

} // namespace tabulex
