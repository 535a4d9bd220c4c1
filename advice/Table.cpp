// The dialect comes first. The first row is the first line of about as many cells as most that are
// mostly data; of the lines right above it that are mostly words, the one with most known headings
// names the columns. How numbers are written holds for the whole file: the style that reads the
// most cells.
#include "advice/Table.h"

#include <algorithm>

#include "advice/forms/Dialects.h"
#include "advice/headings/HeadingPlaces.h"
#include "advice/headings/HeadingWords.h"
#include "advice/headings/Utf8.h"

namespace tabulex::advice {

namespace {

constexpr std::size_t kFactRows = 3000; // spread over all
constexpr std::size_t kHeadingLines = 3;

bool IsMoment(std::string_view cell)
{
    const auto readings = ReadingsOfMoment(cell);
    return std::ranges::any_of(readings, [](const MomentReading& reading) {
        return reading.form.date != intake::DateForm::None;
    });
}

// Half of the cells at least are data.
bool IsRow(const std::vector<std::string_view>& cells, std::size_t nUsual)
{
    std::size_t nFilled = 0, nData = 0;
    bool bMoment = false;
    for (const std::string_view cell : cells) {
        if (cell.empty())
            continue;
        ++nFilled;
        nData += IsDataCell(cell) ? 1 : 0;
        bMoment = bMoment || IsMoment(cell);
    }
    return nFilled >= 2 && cells.size() * 10 >= nUsual * 6 &&
           (nData * 2 >= nFilled || (bMoment && nData * 4 >= nFilled)) && nData > 0;
}

std::size_t KnownHeadings(const std::vector<std::string_view>& cells)
{
    return static_cast<std::size_t>(std::ranges::count_if(
        cells, [](std::string_view cell) { return MeaningOf(cell) != Meaning::Unknown; }));
}

// Words, or few cells of which two are known: a heading may hold a number, such as "52 W High".
bool IsHeading(const std::vector<std::string_view>& cells, std::size_t nUsual)
{
    const auto nWords = std::ranges::count_if(
        cells, [](std::string_view cell) { return !cell.empty() && !IsDataCell(cell); });
    return cells.size() * 10 >= nUsual * 6 &&
           (static_cast<std::size_t>(nWords) * 2 >= cells.size() || KnownHeadings(cells) >= 2);
}

void FindHeading(const FileSample& sample, std::size_t nUsual, Table& table)
{
    std::size_t nBest = 0;
    const std::size_t nFrom =
        table.nFirstRow - std::min<std::size_t>(table.nFirstRow, kHeadingLines);
    for (std::size_t i = table.nFirstRow; i-- > nFrom;) {
        const auto cells = CellsOf(sample.Lines()[i].sText, table.dialect);
        if (!IsHeading(cells, nUsual))
            continue;
        const std::size_t nKnown = KnownHeadings(cells) + 1;
        if (nKnown > nBest) {
            nBest = nKnown;
            table.nHeading = i;
            table.bHeading = true;
        }
    }
}

// The widest of the lines that aren't rare: rows may end early, and a rare wide one is a bad line.
std::size_t ColumnCount(const Table& table)
{
    std::vector<std::size_t> counts(kMostCells + 1);
    for (const TableRow& row : table.rows)
        ++counts[std::min(row.cells.size(), kMostCells)];
    std::size_t nMost = 0;
    for (std::size_t n = 0; n < counts.size(); ++n)
        if (counts[n] * 50 >= table.rows.size() && counts[n] > 0)
            nMost = n;
    return nMost;
}

// Every cell of a spread of the rows.
template <class Use>
void ForSomeRows(const Table& table, Use use)
{
    const std::size_t nStep = std::max<std::size_t>(1, table.rows.size() / kFactRows);
    for (std::size_t i = 0; i < table.rows.size(); i += nStep)
        use(table.rows[i]);
}

// How many cells a style reads, and what speaks against marks between thousands.
struct StyleFacts
{
    std::size_t nRead = 0;
    std::size_t nMarked = 0;   // with a mark between thousands, and no decimal mark
    std::size_t nUnmarked = 0; // of four digits and more, without such a mark
};

StyleFacts FactsOf(const Table& table, const NumberStyle& style)
{
    StyleFacts facts;
    ForSomeRows(table, [&](const TableRow& row) {
        for (const std::string_view cell : row.cells) {
            const auto number = cell.size() < 32 ? ReadNumber(cell, style) : std::nullopt;
            if (!number)
                continue;
            ++facts.nRead;
            facts.nMarked += (number->uMarks & MarkThousands) && !(number->uMarks & MarkDecimal);
            facts.nUnmarked +=
                number->dValue >= 1000 && !(number->uMarks & MarkThousands) && !IsMoment(cell);
        }
    });
    return facts;
}

// "1,234" is a thousand, or one and a fraction, and nothing else in the file may tell. Who marks
// thousands marks them all, and where a semicolon divides the comma is free for fractions.
bool IsRatherFraction(const Table& table, const StyleFacts& asThousands)
{
    return asThousands.nMarked > 0 && (asThousands.nUnmarked > 0 || table.dialect.cDivider == ';' ||
                                       table.dialect.cDivider == '\t');
}

// The style that reads the most cells, and of several the plainest.
NumberStyle FindStyle(Table& table)
{
    StyleFacts best;
    NumberStyle found;
    for (const NumberStyle& style : NumberStyles()) {
        const StyleFacts facts = FactsOf(table, style);
        if (facts.nRead > best.nRead) {
            best = facts;
            found = style;
        }
    }
    if (found == NumberStyle{'.', ','} && FactsOf(table, {',', 0}).nRead == best.nRead) {
        if (IsRatherFraction(table, best))
            return {',', 0};
        table.bMarksUnclear = best.nMarked > 0;
    }
    return found;
}

void CountForms(Column& column, std::string_view cell)
{
    for (const MomentReading& reading : ReadingsOfMoment(cell)) {
        const auto at = std::ranges::find(column.forms, reading.form, &FormCount::form);
        if (at == column.forms.end())
            column.forms.push_back({reading.form, 1});
        else
            ++at->nRead;
    }
}

void TakeCell(Column& column, std::string_view cell, const NumberStyle& style)
{
    if (IsMissing(cell)) {
        ++column.nMissing;
        return;
    }
    if (column.nCells++ == 0)
        column.sFirst = cell;
    column.bConstant = column.bConstant && cell == column.sFirst;
    CountForms(column, cell);
    const auto number = ReadNumber(cell, style);
    if (number) {
        column.dLeast =
            column.nNumbers == 0 ? number->dValue : std::min(column.dLeast, number->dValue);
        column.dMost =
            column.nNumbers == 0 ? number->dValue : std::max(column.dMost, number->dValue);
        ++column.nNumbers;
        column.nMostDecimals = std::max(column.nMostDecimals, number->nDecimals);
        column.uMarks |= number->uMarks;
    } else {
        column.nTexts +=
            std::ranges::any_of(cell, [](char c) { return (c | 0x20) >= 'a'; }) ? 1 : 0;
    }
}

void ReadColumns(Table& table)
{
    for (std::size_t i = 0; i < table.columns.size(); ++i)
        ForSomeRows(table, [&](const TableRow& row) {
            TakeCell(table.columns[i], row.Cell(i), table.style);
        });
}

bool IsPlainText(std::string_view text)
{
    while (!text.empty())
        if (TakeCharacter(text) == 0xFFFD)
            return false;
    return true;
}

// Bytes of one language are letters in the encodings of others as well, so known words decide.
std::vector<std::string> DecodedHeadings(const std::vector<std::string_view>& cells,
                                         const Decoder& decode, Table& table)
{
    constexpr const char* kEncodings[] = {"gb18030",      "big5",         "shift_jis",
                                          "euc-kr",       "windows-1250", "windows-1251",
                                          "windows-1254", "windows-1252"};
    std::vector<std::string> best(cells.begin(), cells.end());
    if (!decode || std::ranges::all_of(cells, IsPlainText))
        return best;
    std::size_t nBest = 0;
    for (const char* pszEncoding : kEncodings) {
        std::vector<std::string> texts;
        for (const std::string_view cell : cells)
            texts.push_back(decode(cell, pszEncoding).value_or(std::string(cell)));
        const std::size_t nKnown =
            KnownHeadings(std::vector<std::string_view>(texts.begin(), texts.end()));
        if (nKnown > nBest) {
            nBest = nKnown;
            best = texts;
            table.sEncoding = pszEncoding;
        }
    }
    return best;
}

void NameColumns(const FileSample& sample, const Decoder& decode, Table& table)
{
    if (!table.bHeading)
        return;
    auto cells = CellsOf(sample.Lines()[table.nHeading].sText, table.dialect);
    while (cells.size() > table.columns.size() && cells.back().empty())
        cells.pop_back();
    const auto placed = PlaceHeadings(DecodedHeadings(cells, decode, table), table.columns);
    for (std::size_t i = 0; i < table.columns.size(); ++i)
        table.columns[i].sHeading = placed[i];
    table.bShifted = cells.size() + 1 == placed.size() && placed.back() == cells.back();
}

} // namespace

std::size_t Column::ReadBy(const MomentForm& form) const
{
    const auto at = std::ranges::find(forms, form, &FormCount::form);
    return at == forms.end() ? 0 : at->nRead;
}

Table FindTable(const FileSample& sample, const Decoder& decode)
{
    Table table;
    const auto found = FindDialect(sample.Lines());
    if (!found)
        return table;
    table.dialect = found->dialect;
    const auto& lines = sample.Lines();
    std::size_t n = 0;
    while (n < lines.size() && !IsRow(CellsOf(lines[n].sText, table.dialect), found->nCells))
        ++n;
    table.nFirstRow = n;
    FindHeading(sample, found->nCells, table);
    for (; n < lines.size(); ++n)
        table.rows.push_back(
            {lines[n].nLine, lines[n].sText, CellsOf(lines[n].sText, table.dialect)});
    table.columns.resize(std::min(ColumnCount(table), kMostCells));
    if (table.columns.size() > kMostColumns)
        return table;
    table.style = FindStyle(table);
    ReadColumns(table);
    NameColumns(sample, decode, table);
    return table;
}

} // namespace tabulex::advice
