#include "tools/tabulex/output/TextOutput.h"

#include <fmt/format.h>

#include "tools/tabulex/output/CsvWriter.h"
#include "tools/tabulex/output/JsonLinesWriter.h"
#include "tools/tabulex/system/Fault.h"

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

} // namespace

TextOutput::TextOutput(const OutputOptions& options, std::vector<Column> columns)
    : m_nColumns(columns.size())
{
    if (!m_file.Open(options.sPath))
        throw Fault{ExitStatus::FileFault,
                    fmt::format("'{}' can't be written: {}", options.sPath, m_file.FaultText())};
    m_writer = MakeWriter(options.format, std::move(columns));
    m_writer->Begin(m_buffer);
}

bool TextOutput::Write(const VARIANT* cells, ULONGLONG nRows)
{
    for (ULONGLONG i = 0; i < nRows; ++i)
        m_writer->Row(cells + i * m_nColumns, m_buffer);
    return m_buffer.size() < kFileBuffer || WriteBuffer();
}

bool TextOutput::WriteBuffer()
{
    const bool bWritten = m_file.Write(m_buffer);
    m_buffer.clear();
    return bWritten;
}

bool TextOutput::Commit()
{
    WriteBuffer();
    return m_file.Commit();
}

// What has gone to a stream can't be taken back, so the rest is written as well.
void TextOutput::Discard()
{
    if (m_file.HidesUntilCommit())
        m_file.Discard();
    else
        Commit();
}

} // namespace tabulex
