// A divider is right if it cuts most lines into the same number of cells, and if the cells are
// numbers, moments and short words. A wrong one leaves pieces such as "5;2", which are neither.
#include "advice/forms/Dialects.h"

#include <algorithm>
#include <map>

#include "advice/forms/MomentForms.h"
#include "advice/forms/NumberForms.h"

namespace tabulex::advice {

namespace {

constexpr char kDividers[] = {'\t', '|', ';', ',', ' ', ':'};
constexpr std::size_t kProbed = 240; // lines
constexpr double kWordWeight = 0.6;
constexpr double kLeastScore = 0.25;

bool IsPlainWord(std::string_view cell)
{
    return cell.size() <= 40 && cell.find_first_of("\t|;,") == std::string_view::npos;
}

bool BeginsQuoted(std::string_view line, char cDivider)
{
    for (std::size_t i = 0; i < line.size(); ++i) {
        const std::size_t nText = line.find_first_not_of(' ', i);
        if (nText == std::string_view::npos)
            return false;
        if (line[nText] == '"')
            return true;
        i = std::min(line.find(cDivider, i), line.size());
    }
    return false;
}

// The first lines, and some from behind.
std::vector<std::string_view> ProbedLines(std::span<const SampledLine> lines)
{
    std::vector<std::string_view> probed;
    const std::size_t nStep = std::max<std::size_t>(1, lines.size() / (kProbed / 2));
    for (std::size_t i = 0; i < lines.size(); i += i < kProbed / 2 ? 1 : nStep)
        probed.push_back(lines[i].sText);
    return probed;
}

struct DialectScore
{
    double dScore = 0;
    std::size_t nCells = 0;
};

DialectScore ScoreOf(const std::vector<std::string_view>& lines, const Dialect& dialect)
{
    std::map<std::size_t, std::pair<std::size_t, double>> byCount; // lines, and cells that are data
    for (const std::string_view line : lines) {
        const auto cells = CellsOf(line, dialect);
        double dGood = 0;
        for (const std::string_view cell : cells)
            dGood += IsDataCell(cell) ? 1 : IsPlainWord(cell) ? kWordWeight : 0;
        auto& [nLines, dSum] = byCount[cells.size()];
        ++nLines;
        dSum += dGood / static_cast<double>(cells.size());
    }
    DialectScore best;
    for (const auto& [nCells, count] : byCount) {
        if (nCells < 2)
            continue;
        const double dScore = count.second / static_cast<double>(lines.size());
        if (dScore > best.dScore)
            best = {dScore, nCells};
    }
    return best;
}

} // namespace

bool IsDataCell(std::string_view cell)
{
    if (IsMissing(cell))
        return true;
    for (const NumberStyle& style : NumberStyles())
        if (ReadNumber(cell, style))
            return true;
    return !ReadingsOfMoment(cell).empty();
}

std::optional<FoundDialect> FindDialect(std::span<const SampledLine> lines)
{
    const auto probed = ProbedLines(lines);
    std::optional<FoundDialect> best;
    double dBest = kLeastScore;
    for (const char cDivider : kDividers) {
        const Dialect dialect{cDivider, std::ranges::any_of(probed, [&](std::string_view line) {
                                  return BeginsQuoted(line, cDivider);
                              })};
        const DialectScore score = ScoreOf(probed, dialect);
        if (score.dScore > dBest + 0.02) {
            dBest = score.dScore;
            best = FoundDialect{dialect, score.nCells};
        }
    }
    return best;
}

} // namespace tabulex::advice
