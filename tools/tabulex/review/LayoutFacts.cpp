// Headings are taken in the encoding in which most of them are words that are known; the
// component's own reading stays where none does better. Rows are taken from the start, which
// decided on the layout, and thinly from further on, where they may have another form. Their cells
// are cut here as well, since the component drops empty ones, and a gap is what the review looks
// for.

#include "tools/tabulex/review/LayoutFacts.h"

#include <algorithm>
#include <set>

#include <fmt/format.h>
#include <fmt/ranges.h>

#include "advice/headings/HeadingWords.h"
#include "tools/tabulex/host/LastRecord.h"
#include "tools/tabulex/host/Properties.h"
#include "tools/tabulex/review/Decoding.h"
#include "tools/tabulex/text/Text.h"

namespace tabulex {

namespace {

constexpr ULONGLONG kFirstRowsRead = 20;
constexpr ULONGLONG kFarRow = 1000; // no row behind is looked at in a file that isn't counted
constexpr ULONGLONG kRowsOverAll = 40;
constexpr std::size_t kMostTextShown = 40; // characters of the file's text in a message

constexpr std::size_t kMostListed = 10;

// In the order of the bits of a mask of dividers.
constexpr std::string_view kDividerBits = ": ,;|\t";

// Of the encodings other than UTF-8, the likelier ones first: a single byte's pages take any
// bytes, so those of several bytes come ahead of them.
constexpr std::string_view kEncodings[] = {"utf-8",        "gbk",          "shift_jis",
                                           "big5",         "windows-1252", "windows-1250",
                                           "windows-1251", "windows-1254"};

bool IsBlank(char c)
{
    return c == ' ' || c == '\t';
}

std::string Trimmed(const std::string& text)
{
    const std::size_t nFirst = text.find_first_not_of(" \t");
    if (nFirst == std::string::npos)
        return {};
    return text.substr(nFirst, text.find_last_not_of(" \t") - nFirst + 1);
}

com_ptr<IRecordParser> CopyOfRecordParser(const Host& host)
{
    com_ptr<IDispatch> copy;
    return SUCCEEDED(host.Records().Clone(copy.put())) ? copy.as<IRecordParser>()
                                                       : com_ptr<IRecordParser>();
}

com_ptr<IDataParser> CopyOfDataParser(const Host& host)
{
    com_ptr<IDispatch> copy;
    return SUCCEEDED(host.Data().Clone(copy.put())) ? copy.as<IDataParser>()
                                                    : com_ptr<IDataParser>();
}

// ---- headings

std::size_t KnownHeadings(const std::vector<std::string>& headings)
{
    return static_cast<std::size_t>(std::ranges::count_if(
        headings, [](const std::string& text) { return MeaningOf(text) != Meaning::Unknown; }));
}

// A mark of the encoding, read as text, isn't part of the first word.
void DropMark(std::vector<std::string>& headings)
{
    constexpr std::string_view kMarks[] = {"\xEF\xBB\xBF", "\xEF\xBF\xBD"};
    for (const std::string_view mark : kMarks)
        while (!headings.empty() && headings.front().starts_with(mark))
            headings.front().erase(0, mark.size());
}

// The heading line in the encoding in which most of its words are known; the component's text
// of it where its own bytes can't be found.
void ReadHeadings(LayoutFacts& facts)
{
    if (!facts.layout.sHeader)
        return;
    const LONG nDividers = facts.layout.nDividers.value_or(0);
    facts.headings = SplitCells(*facts.layout.sHeader, nDividers);
    const auto bytes = facts.start.Line(facts.layout.nHeaderOffset);
    DropMark(facts.headings);
    if (!bytes || IsAscii(*bytes))
        return;
    std::size_t nKnown = KnownHeadings(facts.headings);
    for (const std::string_view encoding : kEncodings) {
        const auto text = DecodeBytes(*bytes, encoding);
        if (!text)
            continue;
        auto headings = SplitCells(*text, nDividers);
        if (const std::size_t n = KnownHeadings(headings); n > nKnown) {
            nKnown = n;
            facts.headings = std::move(headings);
            facts.sHeaderEncoding = encoding;
        }
    }
}

// What pandas and others write over a column without a name is none.
std::string HeadingOf(const LayoutFacts& facts, std::size_t nColumn)
{
    if (nColumn >= facts.headings.size() || facts.headings[nColumn].starts_with("Unnamed:"))
        return {};
    return facts.headings[nColumn];
}

// The last of several settings counts, and one that leaves the type open names nothing.
bool IsNamed(const std::vector<ColumnSetting>& byUser, std::size_t nColumn)
{
    bool bNamed = false;
    for (const ColumnSetting& setting : byUser)
        if (setting.nField == nColumn)
            bNamed = !EqualIgnoringCase(setting.sType, kUnknownName);
    return bNamed;
}

void ReadReviewedColumns(const Host& host, const std::vector<ColumnSetting>& byUser,
                         LayoutFacts& facts)
{
    for (std::size_t i = 0; i < facts.layout.columns.size(); ++i) {
        const LayoutColumn& column = facts.layout.columns[i];
        facts.columns.push_back({host.ColumnType(static_cast<ULONG>(i)), column.sType,
                                 column.sTemplate, HeadingOf(facts, i), IsNamed(byUser, i)});
    }
}

// ---- rows

// The number of records where the component has counted them all.
std::optional<ULONGLONG> KnownCount(const Host& host)
{
    ULONGLONG nCount = 0;
    VARIANT_BOOL bComplete = VARIANT_FALSE;
    const bool bKnown = host.Data().GetCount(&nCount, &bComplete) == S_OK && bComplete;
    return bKnown && nCount > 0 && nCount < ~0ULL / 2 ? std::optional(nCount) : std::nullopt;
}

std::set<ULONGLONG> SamplePositions(std::optional<ULONGLONG> nCount)
{
    std::set<ULONGLONG> positions;
    for (ULONGLONG n = 0; n < kFirstRowsRead; ++n)
        positions.insert(n);
    for (ULONGLONG n = 100; n < kFarRow; n += 100)
        positions.insert(n);
    for (ULONGLONG n = 1; nCount && n <= kRowsOverAll; ++n)
        positions.insert(std::max<ULONGLONG>(n * *nCount / kRowsOverAll, 1) - 1);
    return positions;
}

std::size_t CountWithoutTail(const std::vector<std::string>& cells)
{
    const auto last =
        std::find_if(cells.rbegin(), cells.rend(), [](const auto& cell) { return !cell.empty(); });
    return static_cast<std::size_t>(cells.rend() - last);
}

class RowReader
{
public:
    RowReader(const Host& host, LayoutFacts& facts)
        : m_facts(facts), m_records(CopyOfRecordParser(host)), m_data(CopyOfDataParser(host))
    {}

    void ReadAt(ULONGLONG nPosition)
    {
        Bstr text;
        if (m_data && m_records && m_data->put_Position(nPosition) == S_OK &&
            m_data->get_CurrentRecord(text.put()) == S_OK)
            Add(nPosition, text);
    }

    void Add(ULONGLONG nPosition, const Bstr& text)
    {
        SampledRow row;
        row.nPosition = nPosition;
        for (std::size_t i = 0; i < m_facts.columns.size(); ++i) {
            Bstr cell;
            m_records->GetFieldText(text.get(), static_cast<ULONG>(i), cell.put());
            row.cells.push_back(ToUtf8(cell.view()));
        }
        const auto cells = SplitCells(ToUtf8(text.view()), m_facts.layout.nDividers.value_or(0));
        row.nCells = CountWithoutTail(cells);
        for (std::size_t i = 0; i < row.nCells; ++i)
            if (cells[i].empty())
                row.emptyCells.push_back(i);
        m_facts.rows.push_back(std::move(row));
    }

private:
    LayoutFacts& m_facts;
    com_ptr<IRecordParser> m_records;
    com_ptr<IDataParser> m_data;
};

void ReadRows(const Host& host, LayoutFacts& facts)
{
    RowReader reader(host, facts);
    const auto nCount = KnownCount(host);
    for (const ULONGLONG nPosition : SamplePositions(nCount)) {
        reader.ReadAt(nPosition);
        if (nPosition < kFirstRowsRead)
            facts.nFirstRows = facts.rows.size();
    }
    // Its number isn't known, but it comes behind the others.
    if (!nCount && facts.layout.sLastRecord && !facts.rows.empty())
        reader.Add(~0ULL, Bstr(FromUtf8(*facts.layout.sLastRecord)));
}

} // namespace

std::optional<std::size_t> LayoutFacts::ColumnOf(unsigned uiType) const
{
    const auto at = std::ranges::find(columns, uiType, &ReviewedColumn::uiType);
    return at == columns.end() ? std::nullopt
                               : std::optional(static_cast<std::size_t>(at - columns.begin()));
}

bool LayoutFacts::Admits(std::string_view type) const
{
    return std::ranges::find(admitted, type) != admitted.end();
}

LayoutFacts ReadFacts(const Host& host, const std::vector<ColumnSetting>& byUser)
{
    LayoutFacts facts;
    facts.layout = ReadLayout(host);
    facts.start = FileStart(host.Path());
    ReadHeadings(facts);
    ReadReviewedColumns(host, byUser, facts);
    Variant names;
    host.Records().GetTypeNames(names.put());
    facts.admitted = TextsOf(names);
    ReadRows(host, facts);
    return facts;
}

// A run of blanks and tabs counts as its first character.
std::vector<std::string> SplitCells(std::string_view record, LONG nDividers)
{
    std::vector<std::string> cells(1);
    bool bBlank = false;
    for (const char c : record) {
        const bool bFurther = bBlank && IsBlank(c);
        bBlank = IsBlank(c);
        const std::size_t nBit = kDividerBits.find(c);
        if (bFurther)
            continue;
        if (nBit != std::string_view::npos && (nDividers & (1 << nBit)))
            cells.emplace_back();
        else if (c != '"' && c != '\'')
            cells.back() += c;
    }
    std::ranges::transform(cells, cells.begin(), Trimmed);
    return cells;
}

std::string ShownText(std::string_view text)
{
    string_t shown = FromUtf8(text);
    if (shown.size() > kMostTextShown)
        shown = shown.substr(0, kMostTextShown) + OLESTR("...");
    std::ranges::replace_if(
        shown, [](OLECHAR c) { return c < 0x20 || (c >= 0x7F && c < 0xA0); }, OLECHAR('?'));
    return ToUtf8(shown);
}

std::string ColumnText(std::size_t nColumn, const ReviewedColumn& column)
{
    if (column.sHeading.empty())
        return fmt::format("{}", nColumn + 1);
    return fmt::format("{} \"{}\"", nColumn + 1, ShownText(column.sHeading));
}

std::string ListText(const std::vector<std::string>& items)
{
    if (items.size() < 2)
        return items.empty() ? std::string() : items.front();
    const auto first = items.begin();
    if (items.size() <= kMostListed)
        return fmt::format("{} and {}", fmt::join(first, items.end() - 1, ", "), items.back());
    return fmt::format("{} and {} more", fmt::join(first, first + kMostListed - 1, ", "),
                       items.size() - kMostListed + 1);
}

} // namespace tabulex
