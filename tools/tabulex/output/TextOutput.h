// TextOutput: rows as CSV or JSON Lines, in a file or on standard output.
#pragma once

#include "tools/tabulex/output/OutputFile.h"
#include "tools/tabulex/output/RowOutput.h"
#include "tools/tabulex/output/RowWriter.h"

namespace tabulex {

class TextOutput : public RowOutput
{
public:
    // Throws Fault if the path can't be written.
    TextOutput(const OutputOptions& options, std::vector<Column> columns);

    bool Write(const VARIANT* cells, ULONGLONG nRows) override;
    bool Commit() override;
    void Discard() override;
    bool IsReaderGone() const override { return m_file.IsReaderGone(); }
    std::string FaultText() const override { return m_file.FaultText(); }

private:
    bool WriteBuffer();

    std::unique_ptr<RowWriter> m_writer;
    std::size_t m_nColumns;
    OutputFile m_file;
    std::string m_buffer; // UTF-8, not yet with the file
};

} // namespace tabulex
