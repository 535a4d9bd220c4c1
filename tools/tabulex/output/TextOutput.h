// TextOutput: rows as CSV or JSON Lines, in a file or on standard output.
#pragma once

#include "tools/tabulex/output/OutputFile.h"
#include "tools/tabulex/output/RowOutput.h"
#include "tools/tabulex/output/RowWriter.h"
#include "tools/tabulex/system/SpillFile.h"

namespace tabulex {

class TextOutput : public RowOutput
{
public:
    // Throws Fault if the path can't be written, or if the columns are others than those of the
    // header that is there already.
    TextOutput(const OutputOptions& options, std::vector<Column> columns);

    bool Write(const VARIANT* cells, ULONGLONG nRows) override;
    bool Commit() override;
    void Discard() override;
    bool ShowsAtOnce() const override { return !m_file.HidesUntilCommit() && !m_held; }
    bool IsReaderGone() const override { return m_file.IsReaderGone(); }
    std::string FaultText() const override
    {
        return m_sFault.empty() ? m_file.FaultText() : m_sFault;
    }

private:
    bool WriteBuffer();
    bool WriteText(std::string_view text);
    bool ReleaseHeld();

    std::unique_ptr<RowWriter> m_writer;
    OutputFile m_file;
    TextBuffer m_buffer;               // UTF-8, not yet with the file
    std::unique_ptr<SpillFile> m_held; // what waits for the commit; null where nothing has to
    std::string m_sFault;              // of what is held
};

// Throws what the constructor would, as far as that can be known without writing.
void CheckTextOutput(const OutputOptions& options, const std::vector<Column>& columns);

} // namespace tabulex
