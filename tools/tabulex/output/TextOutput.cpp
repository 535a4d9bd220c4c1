// Several inputs may go into one CSV text, which has one header. The first writes it; the others
// must have the same columns in the same order, since rows under a wrong name are worse than none.
// JSON Lines name their values in each row and need no such rule.

#include "tools/tabulex/output/TextOutput.h"

#include <fmt/format.h>
#include <fmt/ranges.h>

#include "tools/tabulex/output/CsvWriter.h"
#include "tools/tabulex/output/JsonLinesWriter.h"
#include "tools/tabulex/system/Fault.h"
#include "tools/tabulex/system/FileBytes.h"
#include "tools/tabulex/system/OutputPlace.h"
#include "tools/tabulex/text/VisibleText.h"

namespace tabulex {

namespace {

// Large enough for few writes, and small beside what the component keeps of the file.
constexpr std::size_t kFileBuffer = std::size_t{256} * 1024;

std::unique_ptr<RowWriter> MakeWriter(OutputFormat format, std::vector<Column> columns)
{
    if (format == OutputFormat::JsonLines)
        return std::make_unique<JsonLinesWriter>(std::move(columns));
    return std::make_unique<CsvWriter>(std::move(columns));
}

[[noreturn]] void ThrowUnwritableText(const std::string& path, const std::string& reason)
{
    throw Fault{ExitStatus::FileFault, fmt::format("'{}' can't be written: {}", path, reason)};
}

// Whether these columns need a header of their own. Throws Fault where another one is there.
bool NeedsHeader(const OutputOptions& options, const std::vector<Column>& columns)
{
    if (!options.pHeader || options.format != OutputFormat::Csv)
        return true;
    std::vector<std::string> names;
    for (const Column& column : columns)
        names.push_back(column.sName);
    std::vector<std::string>& have = options.pHeader->names;
    if (!have.empty() && have != names)
        throw Fault{ExitStatus::Refused,
                    fmt::format("its columns are {}, and those of the files before it {}: CSV has "
                                "one header; write each to a file of its own by -o FOLDER/, or all "
                                "to a database",
                                fmt::join(names, ", "), fmt::join(have, ", "))};
    const bool bFirst = have.empty();
    have = names;
    return bFirst;
}

} // namespace

TextOutput::TextOutput(const OutputOptions& options, std::vector<Column> columns)
{
    if (!m_file.Open(options.sPath))
        ThrowUnwritableText(options.sPath, m_file.FaultText());
    const bool bHeader = NeedsHeader(options, columns);
    m_writer = MakeWriter(options.format, std::move(columns));
    if (bHeader)
        m_writer->Begin(m_buffer);
    if (options.pHeader)
        WriteBuffer(); // it counts as written, whatever becomes of the run
    if (options.bHoldBack && !m_file.HidesUntilCommit())
        m_held = std::make_unique<SpillFile>();
}

bool TextOutput::Write(const VARIANT* cells, ULONGLONG nRows)
{
    m_writer->Rows(cells, nRows, m_buffer);
    return m_buffer.Size() < kFileBuffer || WriteBuffer();
}

bool TextOutput::WriteBuffer()
{
    const bool bWritten = m_file.IsOnTerminal() ? WriteText(VisibleLines(m_buffer.View()))
                                                : WriteText(m_buffer.View());
    m_buffer.Clear();
    return bWritten;
}

// The component calls, which no exception may pass.
bool TextOutput::WriteText(std::string_view text)
try {
    if (!m_held)
        return m_file.Write(text);
    m_held->Write(text);
    return true;
} catch (const Fault& fault) {
    m_sFault = fault.sMessage;
    return false;
}

bool TextOutput::ReleaseHeld()
{
    FileBytes held(m_held->Path());
    std::string piece(kFileBuffer, '\0');
    std::uint64_t nAt = 0;
    while (const std::size_t n = held.ReadAt(nAt, piece)) {
        if (!m_file.Write(std::string_view(piece).substr(0, n)))
            return false;
        nAt += n;
    }
    if (held.HasFailed())
        m_sFault = "its temporary copy can't be read";
    return !held.HasFailed();
}

bool TextOutput::Commit()
{
    WriteBuffer();
    if (m_held && m_sFault.empty() && !ReleaseHeld())
        return false;
    m_held.reset();
    return m_file.Commit() && m_sFault.empty();
}

// What has gone to a stream can't be taken back, so the rest is written as well; of what was held
// nothing has gone.
void TextOutput::Discard()
{
    if (m_file.HidesUntilCommit())
        m_file.Discard();
    else if (m_held)
        m_file.Commit();
    else
        Commit();
}

// A folder that the run would make isn't there yet.
void CheckTextOutput(const OutputOptions& options, const std::vector<Column>& columns)
{
    NeedsHeader(options, columns);
    if (options.sPath == "-")
        return;
    const OutputPlace place = FindWritablePlace(options.sPath);
    if (place.bExists && !place.sFault.empty())
        ThrowUnwritableText(options.sPath, place.sFault);
}

} // namespace tabulex
