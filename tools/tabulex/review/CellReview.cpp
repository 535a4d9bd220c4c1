// A cell is judged by the type of its column only: fractions in dates and times, the form of
// numbers, nothing in symbols and in columns without a type. Of each fault the first line is kept
// as an example and the others are counted, so a file full of them gives one warning.

#include "tools/tabulex/review/CellReview.h"

#include <algorithm>
#include <array>
#include <optional>
#include <utility>

#include <fmt/format.h>

#include "interfaces/FieldsAndResolutions.h"
#include "tools/tabulex/host/Properties.h"
#include "tools/tabulex/review/CellFaults.h"
#include "tools/tabulex/review/RecordFinder.h"
#include "tools/tabulex/text/Formats.h"
#include "tools/tabulex/text/Text.h"

namespace tabulex {

namespace {

constexpr std::string_view kDividers = ": ,;|\t"; // by the bits of the mask
constexpr std::size_t kShown = 40;                // characters of a text in a warning

enum CellFault
{
    NoNumber,
    TwoMarks,
    OddNumber,
    Fraction,
    QuotedDivider,
    MoreCells,
    EmptyCell,
    kFaults
};

struct Found
{
    ULONGLONG nLines = 0;
    ULONGLONG nFirst = 0; // line of the file
    ULONGLONG nLast = 0;
    std::string sText; // what the first one holds
};

bool IsNumberType(unsigned uiType)
{
    return uiType != kNoType && uiType != TypeDate && uiType != TypeTime && uiType != TypeSymbol;
}

std::string DividersOf(const Host& host)
{
    const LONG nMask = Get(host.Records(), &IRecordParser::get_FieldDividers);
    std::string dividers;
    for (std::size_t i = 0; i < kDividers.size(); ++i)
        if (nMask & (1 << i))
            dividers += kDividers[i];
    return dividers;
}

bool HasQuotedDivider(std::string_view line, std::string_view dividers)
{
    bool bQuoted = false;
    for (const char c : line)
        if (c == '"')
            bQuoted = !bQuoted;
        else if (bQuoted && dividers.find(c) != dividers.npos)
            return true;
    return false;
}

class CellReview
{
public:
    CellReview(const Host& host, LineMap& lines);

    void Run();
    void Warn(Warnings& warnings) const;

private:
    void TakeLine(const ContentLine& line, std::string_view bytes);
    std::optional<std::size_t> GapIn(std::string_view line) const;
    void TakeGap(const ContentLine& line, std::string_view bytes);
    void TakeCell(const ContentLine& line, std::size_t nField, std::string_view cell);
    void TakeNumber(const ContentLine& line, std::string_view cell, bool bWhole);
    void Add(CellFault fault, const ContentLine& line, std::string_view text);

    const Host& m_host;
    LineMap& m_lines;
    std::string m_sDividers;
    std::vector<unsigned> m_types;         // by field
    std::size_t m_nRead = 0;               // columns up to the last one that has a type
    std::optional<std::size_t> m_usualGap; // as CellsAheadOfGap gives it; moves no cell
    std::array<Found, kFaults> m_found;
};

CellReview::CellReview(const Host& host, LineMap& lines)
    : m_host(host), m_lines(lines), m_sDividers(DividersOf(host))
{
    const ULONG nFields = Get(host.Records(), &IRecordParser::get_FieldCount);
    for (ULONG i = 0; i < nFields; ++i) {
        m_types.push_back(host.ColumnType(i));
        if (m_types.back() != kNoType)
            m_nRead = i + 1;
    }
}

// Without headings the columns were counted without the cells that are empty in all lines.
void CellReview::Run()
{
    const bool bHeader = GetFlag(m_host.Data(), &IDataParser::get_HasHeader);
    const ULONGLONG nBefore =
        Get(m_host.Data(), &IDataParser::get_HeaderOffset) + (bHeader ? 1u : 0u);
    if (!bHeader)
        m_usualGap = GapIn(m_lines.BytesOf(nBefore));
    m_lines.VisitSuspects(nBefore, [this](const ContentLine& line, std::string_view bytes) {
        TakeLine(line, bytes);
    });
}

void CellReview::Add(CellFault fault, const ContentLine& line, std::string_view text)
{
    Found& found = m_found[fault];
    if (std::exchange(found.nLast, line.nNumber) == line.nNumber || ++found.nLines > 1)
        return;
    found.nFirst = line.nNumber;
    found.sText =
        ToUtf8(string_view_t(FromUtf8(text)).substr(0, kShown)); // bytes may be of any encoding
}

void CellReview::TakeLine(const ContentLine& line, std::string_view bytes)
{
    if (bytes.find('"') != bytes.npos && HasQuotedDivider(bytes, m_sDividers))
        Add(QuotedDivider, line, bytes);
    std::string_view rest = bytes;
    std::size_t nField = 0;
    while (const auto cell = NextCell(rest, m_sDividers))
        if (!Trimmed(*cell).empty() && !Bare(*cell).empty())
            TakeCell(line, nField++, Trimmed(*cell));
    if (nField + 1 >= m_nRead) // else it is no row, which is told
        TakeGap(line, bytes);
}

// What is left of a cell may be blanks only.
std::optional<std::size_t> CellReview::GapIn(std::string_view line) const
{
    if (line.find_first_of(" '\"()[]") == line.npos)
        return CellsAheadOfGap(line, m_sDividers);
    std::string bare = Bare(line);
    std::erase(bare, ' ');
    return CellsAheadOfGap(bare, m_sDividers);
}

// Where blanks divide, a gap can't be told from a wide space between two columns.
void CellReview::TakeGap(const ContentLine& line, std::string_view bytes)
{
    if (m_sDividers.find(' ') != m_sDividers.npos)
        return;
    const auto nGap = GapIn(bytes);
    if (nGap && *nGap < m_nRead && nGap != m_usualGap)
        Add(EmptyCell, line, bytes);
}

void CellReview::TakeCell(const ContentLine& line, std::size_t nField, std::string_view cell)
{
    if (nField >= m_types.size()) {
        if (nField == m_types.size())
            Add(MoreCells, line, cell);
        return;
    }
    const unsigned uiType = m_types[nField];
    if (uiType == TypeTime || uiType == TypeDate) {
        if (HasOddFraction(cell))
            Add(Fraction, line, cell);
    } else if (IsNumberType(uiType)) {
        TakeNumber(line, cell, IQRL_TabulexConverter::IsWholeType(uiType));
    }
}

void CellReview::TakeNumber(const ContentLine& line, std::string_view cell, bool bWhole)
{
    switch (FaultInNumber(cell, bWhole)) {
    case NumberFault::NoNumber:
        return Add(NoNumber, line, cell);
    case NumberFault::TwoMarks:
        return Add(TwoMarks, line, cell);
    case NumberFault::Other:
        return Add(OddNumber, line, cell);
    default:
        return;
    }
}

void CellReview::Warn(Warnings& warnings) const
{
    const struct
    {
        CellFault fault;
        const char* pszCode;
        const char* pszText;
    } rows[] = {
        {NoNumber, "no-number",
         "{}: a cell holds no number and was read as 0; the first is line {} with '{}'"},
        {TwoMarks, "number-cut",
         "{}: a number with two marks was read up to the second one; the first is line {} with "
         "'{}'. Write numbers without thousands marks"},
        {OddNumber, "number-odd",
         "{}: a number isn't written as digits with one mark, and was read without its sign or "
         "marks, or only in part; the first is line {} with '{}'. Write such numbers as -118.5"},
        {Fraction, "fraction-cut",
         "{}: digits of a second that aren't three behind a point are cut or left out; the first "
         "is line {} with '{}'"},
        {QuotedDivider, "quoted-divider",
         "{}: a divider stands between quotation marks, and divides all the same; the first is "
         "line {}: {}"},
        {MoreCells, "more-cells",
         "{}: more cells than the layout has; the first is line {}, which goes on with '{}'. "
         "See whether its values stand in their columns"},
        {EmptyCell, "cells-empty",
         "{}: a cell is empty, and the cells behind it are read one column too early; the first is "
         "line {}: {}. Fill such cells, or take those lines out"},
    };
    for (const auto& row : rows)
        if (const Found& found = m_found[row.fault]; found.nLines > 0 && !warnings.Has(row.pszCode))
            warnings.Add(row.pszCode,
                         fmt::format(fmt::runtime(row.pszText), Counted(found.nLines, "line"),
                                     found.nFirst, found.sText),
                         found.nFirst);
}

} // namespace

// Of the first record, whose dates have dashes and points as those of all others.
void ExpectCells(const Host& host, LineMap& lines)
{
    const std::string dividers = DividersOf(host);
    const ULONG nFields = Get(host.Records(), &IRecordParser::get_FieldCount);
    UsualLine line;
    if (nFields > 0 && dividers.find(' ') == dividers.npos) {
        line.sDividers = dividers;
        line.nDividers = nFields - 1;
    }
    line.bCommaDivides = dividers.find(',') != dividers.npos;
    RecordFinder records(host, nullptr);
    for (ULONG i = 0; i < nFields; ++i)
        if (!IsNumberType(host.ColumnType(i)))
            line.sTexts += "\n" + records.CellAt(0, i);
    lines.Suspects().Expect(line);
}

void ReviewCells(const Host& host, LineMap& lines, Warnings& warnings)
{
    CellReview review(host, lines);
    review.Run();
    review.Warn(warnings);
}

} // namespace tabulex
