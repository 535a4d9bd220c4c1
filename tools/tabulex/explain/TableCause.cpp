// A table is looked for without the component, by the number of cells in its lines, and compared
// with what the component took. Lines in front of it show in two ways, by their place and by their
// cells, so more than half of the lines are enough to say so; other dividers show by the number of
// cells alone, and need more than four in five. Quotes and empty cells are asked for later, as they
// shift cells in a table that was found well. Of both only the first rows are looked at, since the
// layout was worked out from those.

#include <algorithm>
#include <cctype>

#include <fmt/format.h>

#include "tools/tabulex/explain/Causes.h"
#include "tools/tabulex/explain/Cells.h"
#include "tools/tabulex/explain/Shown.h"
#include "tools/tabulex/explain/TableStart.h"
#include "tools/tabulex/text/Formats.h"

namespace tabulex {

namespace {

constexpr std::size_t kLineLimit = 259; // bytes from which a line can't begin a layout

const SampleLine* StudiedLine(const Sample& sample)
{
    const std::size_t i = sample.layout.nHeaderOffset;
    return i < sample.lines.size() ? &sample.lines[i] : nullptr;
}

std::string CutText(const Sample& sample, const SampleLine& line)
{
    const auto cells = CellsOf(line.sText, sample.nDividers);
    if (cells.size() == 1)
        return fmt::format("{} is one field, {}", line.Name(), Shown(cells.front()));
    return fmt::format("{} falls into {} fields", line.Name(), cells.size());
}

Correction SkipTo(const Case& theCase, std::size_t nLines, std::optional<LONG> nDividers)
{
    Correction correction{theCase.settings, {}};
    correction.settings.nLinesToSkip = static_cast<ULONG>(nLines);
    if (nDividers) {
        correction.settings.nDividers = nDividers;
        correction.sOptions = DividerOption(*nDividers & ~LONG(32) ? *nDividers & ~LONG(32) : 32);
        correction.sOptions += ' ';
    }
    correction.sOptions += fmt::format("--lines-to-skip {}", nLines);
    return correction;
}

std::vector<Correction> SkipCorrections(const Case& theCase, const TableStart& start)
{
    std::vector<Correction> corrections;
    for (const std::size_t nLines : {start.First(), start.nData})
        for (const auto nDividers : {std::optional<LONG>(), std::optional(start.nDividers)})
            for (const auto header : {HeaderChoice::Auto, HeaderChoice::No}) {
                Correction correction = SkipTo(theCase, nLines, nDividers);
                if (header == HeaderChoice::No) {
                    if (start.bHeader || theCase.settings.header != HeaderChoice::Auto)
                        continue;
                    correction.settings.header = header;
                    correction.sOptions += " --header no";
                }
                corrections.push_back(std::move(correction));
            }
    return corrections;
}

// Blank lines in front aren't counted by --lines-to-skip, so the step names options only where
// they were tried.
std::string CauseBefore(const Case& theCase, const TableStart& start)
{
    const Sample& sample = theCase.sample;
    const std::string options = StepOf(theCase, SkipCorrections(theCase, start));
    const SampleLine& first = sample.lines[start.First()];
    return fmt::format("The table seems to begin at {} ({}), behind {} other line{}{}",
                       first.Name(), Shown(first.sText), start.First(),
                       start.First() == 1 ? "" : "s",
                       NextStep(options, "remove the lines in front of it"));
}

// The component has looked for the columns further down.
std::string LateCause(const Case& theCase, const TableStart& start)
{
    const Sample& sample = theCase.sample;
    const SampleLine& first = sample.lines[start.First()];
    return fmt::format(
        "The table seems to begin at {} ({}), but {} was taken for the first of it{}", first.Name(),
        Shown(first.sText),
        sample.lines[std::min<std::size_t>(sample.layout.nHeaderOffset, sample.lines.size() - 1)]
            .Name(),
        NextStep(StepOf(theCase, SkipCorrections(theCase, start)),
                 "write the dates as 2024-01-31 before converting"));
}

bool IsCutAlike(const Sample& sample, const TableStart& start)
{
    return (sample.nDividers & start.nDividers) == start.nDividers;
}

std::string DividerCause(const Case& theCase, const TableStart& start)
{
    const Sample& sample = theCase.sample;
    Correction correction{
        theCase.settings,
        DividerOption(start.nDividers & ~LONG(32) ? start.nDividers & ~LONG(32) : start.nDividers)};
    correction.settings.nDividers = start.nDividers;
    const std::string options = StepOf(theCase, {correction});
    return fmt::format("By the dividers {} {}, while {} makes {} of most lines{}",
                       DividerNames(sample.nDividers), CutText(sample, sample.lines.front()),
                       DividerNames(start.nDividers), start.nCells,
                       NextStep(options, "use one divider in all lines"));
}

// A sign that seems to divide the first two lines; 0 for none. It has to stand in both twice, for
// one alone may belong to a text.
char OtherDivider(const Sample& sample)
{
    if (sample.lines.size() < 2)
        return 0;
    for (const char c : {'~', '^', '#', '!', '&', '*', '\\', '/', '\1', '_'}) {
        if (std::ranges::count(sample.lines[0].sText, c) > 1 &&
            std::ranges::count(sample.lines[1].sText, c) > 1)
            return c;
    }
    return 0;
}

std::string NoTableCause(const Sample& sample)
{
    const SampleLine& line = sample.lines.front();
    if (CellsOf(line.sText, sample.nDividers).size() > 1)
        return {};
    const char c = OtherDivider(sample);
    return fmt::format(
        "{} is one field, {}: no tab, bar, semicolon, comma or blank divides it. {}.", line.Name(),
        Shown(line.sText),
        c ? fmt::format("Replace {} by one of these, such as a semicolon", Shown(std::string(1, c)))
          : "Give a text table with one of these dividers");
}

// The first cell in quotes that holds a divider; empty if there is none.
std::string DividedQuote(const SampleLine& line, LONG nDividers)
{
    for (std::size_t nAt = 0; (nAt = line.sText.find('"', nAt)) != std::string::npos;) {
        const std::size_t nEnd = line.sText.find('"', nAt + 1);
        if (nEnd == std::string::npos)
            break;
        const std::string cell = line.sText.substr(nAt, nEnd - nAt + 1);
        if (CellsOf(cell, nDividers).size() > 1)
            return cell;
        nAt = nEnd + 1;
    }
    return {};
}

// An empty cell at the end moves no other.
bool IsLastCellEmpty(const SampleLine& line, const Sample& sample)
{
    const auto cells = CellsOf(line.sText, sample.nDividers);
    return CellsOf(line.sText + 'x', sample.nDividers).size() == cells.size() + 1 &&
           CountCells(line.sText, sample.nDividers) == cells.size() + 1;
}

std::string BytesCause(const SampleLine& line)
{
    const auto at = std::ranges::find_if(line.sText, [](char c) {
        return static_cast<unsigned char>(c) < 0x20 && c != '\t' && c != '\r' && c != '\n';
    });
    if (at == line.sText.end())
        return {};
    return fmt::format(
        "{} holds the control character \\x{:02X} at place {}, so the layout can't be "
        "worked out from it: remove it.",
        line.Name(), static_cast<unsigned>(*at), at - line.sText.begin() + 1);
}

std::string LengthCause(const Sample& sample, const SampleLine& line)
{
    const std::size_t i = sample.layout.nHeaderOffset;
    const std::size_t nBytes =
        i < sample.head.lines.size() ? sample.head.lines[i].nLength : line.sText.size();
    if (nBytes < kLineLimit || !sample.layout.columns.empty())
        return {};
    return fmt::format("{} has {} bytes{}, and the layout is only worked out from a line of fewer "
                       "than {}: shorten it, or take columns out that aren't needed.",
                       line.Name(), WithThousands(nBytes),
                       sample.head.lines.size() == 1 && !sample.head.IsWhole() ? " or more" : "",
                       kLineLimit);
}

} // namespace

std::string EncodingCause(const Case& theCase)
{
    const Sample& sample = theCase.sample;
    const auto isPlain = [](char c) { return std::isalnum(static_cast<unsigned char>(c)) != 0; };
    if (sample.lines.empty() || sample.head.lines.empty())
        return {};
    const auto bytes = sample.head.TextOf(sample.head.lines.front());
    if (bytes.find('\0') != std::string_view::npos || std::ranges::none_of(bytes, isPlain) ||
        std::ranges::any_of(sample.lines.front().sText, isPlain))
        return {};
    return fmt::format("Line {} is {} by its bytes, and {} in the encoding that is read: leave "
                       "--encoding out.",
                       sample.head.lines.front().nNumber, Shown(bytes),
                       Shown(sample.lines.front().sText));
}

std::string PreambleCause(const Case& theCase)
{
    const auto start = FindTableStart(theCase.sample);
    return start && start->First() > 0 && start->nCells > 2 ? CauseBefore(theCase, *start)
                                                            : std::string();
}

std::string FirstLineCause(const Case& theCase)
{
    const Sample& sample = theCase.sample;
    const SampleLine* line = StudiedLine(sample);
    if (!line && sample.lines.empty())
        return "The file has no data lines: all its lines are blank. Get the file anew.";
    if (!line)
        return fmt::format("The file has {} lines with content, and {} are to be skipped: give a "
                           "smaller number by --lines-to-skip.",
                           sample.lines.size(), sample.layout.nHeaderOffset);
    std::string cause = BytesCause(*line);
    return cause.empty() ? LengthCause(sample, *line) : cause;
}

std::string TableCause(const Case& theCase)
{
    const Sample& sample = theCase.sample;
    const auto start = FindTableStart(sample);
    if (!start)
        return StudiedLine(sample) ? NoTableCause(sample) : std::string();
    if (start->First() > 0 && start->agreement > 0.5 &&
        (sample.nFirstData != start->nData || !IsCutAlike(sample, *start)))
        return CauseBefore(theCase, *start);
    if (start->agreement > 0.8 && !IsCutAlike(sample, *start))
        return DividerCause(theCase, *start);
    if (start->First() == 0 && start->agreement > 0.5 && !theCase.settings.nLinesToSkip &&
        sample.nFirstData > start->nData + 1 && !theCase.host.HasColumn(TypeDate))
        return LateCause(theCase, *start);
    return {};
}

std::string QuoteCause(const Case& theCase)
{
    const Sample& sample = theCase.sample;
    const auto headings = sample.Headings();
    for (std::size_t i = 0; i < std::min<std::size_t>(sample.DataLines(), 10); ++i) {
        const SampleLine& line = sample.DataLine(i);
        if (std::ranges::count(line.sText, '"') % 2 != 0)
            return fmt::format(
                "A cell in quotes goes on behind the end of {}, {}, and a row ends with "
                "its line all the same: write each row in one line.",
                line.Name(), Shown(line.sText));
    }
    if (sample.DataLines() == 0)
        return {};
    const SampleLine& line = sample.DataLine(0);
    const std::string cell = DividedQuote(line, sample.nDividers);
    const auto nCells = CellsOf(line.sText, sample.nDividers).size();
    if (!cell.empty() && (headings.empty() || headings.size() != nCells))
        return fmt::format(
            "{} has {}, and quotes don't keep the divider inside from cutting it in "
            "two, so the columns are shifted: write the file with another divider, such "
            "as a tab or a semicolon.",
            line.Name(), Shown(cell));
    return {};
}

std::string ShiftCause(const Case& theCase)
{
    const Sample& sample = theCase.sample;
    const SampleLine* header = sample.Header();
    if (!header || sample.DataLines() == 0)
        return {};
    const SampleLine& line = sample.DataLine(0);
    const std::size_t nPlaces = CountCells(header->sText, sample.nDividers);
    const std::size_t nHeadings = sample.Headings().size();
    const std::size_t nCells = CellsOf(line.sText, sample.nDividers).size();
    if (nHeadings != nPlaces || nCells == nPlaces ||
        CountCells(line.sText, sample.nDividers) != nPlaces || IsLastCellEmpty(line, sample))
        return {};
    return fmt::format(
        "{} has an empty cell ({}), and empty cells aren't counted, so the cells behind "
        "it stand under other headings than their own: fill empty cells, for example "
        "with 0.",
        line.Name(), Shown(line.sText));
}

} // namespace tabulex
