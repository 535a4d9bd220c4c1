// Sample: the first lines of an open file with their numbers in the file, and the last one, as
// the component reads them, beside what it made of them.
//
// What detection decides it decides on these lines. Taking a sample leaves the host as it was
// but for its position; its cost doesn't depend on the size of the file.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "tools/tabulex/explain/FileHead.h"
#include "tools/tabulex/host/FileLayout.h"

namespace tabulex {

struct SampleLine
{
    ULONGLONG nNumber = 0; // in the file, from 1; 0 where it isn't known
    std::string sText;     // UTF-8, cut where the component cuts it

    std::string Name() const; // "line 12", or "the last line"
};

struct Sample
{
    std::string sPath; // of the file, as the system has it
    FileHead head;
    FileLayout layout;
    LONG nDividers = 0;            // mask; 0 where none were found
    std::vector<SampleLine> lines; // with content, from the first
    std::size_t nFirstData = 0;    // behind the header; the first line of `lines` that is data
    SampleLine last;

    // The line that names the columns; null where none does, or where it lies further on.
    const SampleLine* Header() const;
    // The headings; empty without a header.
    std::vector<std::string> Headings() const;
    std::size_t DataLines() const
    {
        return lines.size() > nFirstData ? lines.size() - nFirstData : 0;
    }
    const SampleLine& DataLine(std::size_t i) const { return lines[nFirstData + i]; }
};

Sample TakeSample(const Host& host);

// "column 3", with its heading where it has one: "column 3, 'Last'".
std::string ColumnName(const std::vector<std::string>& headings, std::size_t nColumn);

// Dates, with the time of day where there is one, of the sampled data lines, by the index of
// Sample::DataLine; 0 where a line has none. Moves the parser's current record.
std::vector<DATE> DatesOf(const Host& host, const Sample& sample);

// The cells of one column, line by line as Sample::DataLine, then that of the last line where
// it isn't among these.
struct ColumnCells
{
    std::vector<std::string> texts;       // empty for a line with too few cells
    std::vector<const SampleLine*> lines; // by the same index; they belong to the sample
};
ColumnCells CellsOfColumn(const Sample& sample, std::size_t nColumn);

} // namespace tabulex
