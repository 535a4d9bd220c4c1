// Lines are read by a parser on which position n is line n, so that the lines ahead of the data and
// the header are had as the component reads them. Their numbers in the file come from its bytes, as
// the component doesn't count blank lines. The last line is known from the layout; its number is
// known only where the file's start is all of the file.

#include "tools/tabulex/explain/Sample.h"

#include <fmt/format.h>

#include "tools/tabulex/explain/Cells.h"
#include "tools/tabulex/explain/Shown.h"
#include "tools/tabulex/host/Properties.h"

namespace tabulex {

namespace {

constexpr std::size_t kDataLines = 100; // as many as detection looks at
constexpr ULONG kMostHeaderLines = 100; // further ones aren't sampled

ULONGLONG NumberOf(const FileHead& head, std::size_t nContent)
{
    return nContent < head.lines.size() ? head.lines[nContent].nNumber : 0;
}

// A line by its number is read by a parser of its own, on which the header is a line too.
void ReadLines(const Host& host, Sample& sample)
{
    const com_ptr<IDataParser> reader = host.LineReader();
    for (std::size_t i = 0; i < sample.nFirstData + kDataLines; ++i) {
        Bstr text;
        if (reader->put_Position(i) != S_OK || reader->get_CurrentRecord(text.put()) != S_OK)
            break;
        sample.lines.push_back({NumberOf(sample.head, i), ToUtf8(text.view())});
    }
}

void ReadLastLine(Sample& sample)
{
    const auto& last =
        sample.layout.bInverted ? sample.layout.sFirstRecord : sample.layout.sLastRecord;
    sample.last.sText = last.value_or("");
    if (sample.head.IsWhole() && !sample.head.lines.empty())
        sample.last.nNumber = sample.head.lines.back().nNumber;
}

} // namespace

std::string SampleLine::Name() const
{
    return nNumber > 0 ? fmt::format("line {}", nNumber) : "the last line";
}

const SampleLine* Sample::Header() const
{
    return layout.bHasHeader && nFirstData > 0 && nFirstData <= lines.size()
               ? &lines[nFirstData - 1]
               : nullptr;
}

std::vector<std::string> Sample::Headings() const
{
    const SampleLine* header = Header();
    return header ? CellsOf(header->sText, nDividers) : std::vector<std::string>();
}

Sample TakeSample(const Host& host)
{
    Sample sample;
    sample.sPath = BytesFromPath(GetText(host.Data(), &IDataParser::get_FileName));
    sample.head = ReadHead(sample.sPath);
    if (host.Source())
        for (ContentLine& line : sample.head.lines)
            line.nNumber = host.Source()->NumberOf(line.nNumber);
    sample.layout = ReadLayout(host);
    sample.nDividers = sample.layout.nDividers.value_or(0);
    sample.nFirstData = std::min(sample.layout.nHeaderOffset, kMostHeaderLines) +
                        (sample.layout.bHasHeader ? 1 : 0);
    ReadLines(host, sample);
    ReadLastLine(sample);
    return sample;
}

std::string ColumnName(const std::vector<std::string>& headings, std::size_t nColumn)
{
    return nColumn < headings.size()
               ? fmt::format("column {}, {}", nColumn + 1, Shown(headings[nColumn]))
               : fmt::format("column {}", nColumn + 1);
}

std::vector<DATE> DatesOf(const Host& host, const Sample& sample)
{
    IRecordParser& records = host.Records();
    ULONG nDate = 0;
    records.GetFieldIndex(static_cast<LONG>(TypeDate), &nDate);
    std::vector<DATE> dates;
    for (std::size_t i = 0; i < sample.DataLines(); ++i) {
        Variant value;
        const Bstr record(FromUtf8(sample.DataLine(i).sText));
        const bool bDate = SUCCEEDED(records.Parse(record.get())) &&
                           records.GetFieldValue(value.put(), nDate) == S_OK;
        dates.push_back(bDate ? GetDate(records, &IRecordParser::get_CurrentDateTime) : 0);
    }
    return dates;
}

ColumnCells CellsOfColumn(const Sample& sample, std::size_t nColumn)
{
    ColumnCells column;
    const auto add = [&](const SampleLine& line) {
        const auto cells = CellsOf(line.sText, sample.nDividers);
        column.texts.push_back(nColumn < cells.size() ? cells[nColumn] : std::string());
        column.lines.push_back(&line);
    };
    for (std::size_t i = 0; i < sample.DataLines(); ++i)
        add(sample.DataLine(i));
    const bool bSampled = !sample.lines.empty() && sample.last.nNumber > 0 &&
                          sample.last.nNumber <= sample.lines.back().nNumber;
    if (!bSampled && !sample.last.sText.empty())
        add(sample.last);
    return column;
}

} // namespace tabulex
