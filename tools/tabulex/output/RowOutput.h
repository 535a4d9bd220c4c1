// RowOutput: what a conversion writes its rows to.
//
// Without a Commit it leaves nothing behind that can be taken back. The first fault is
// kept, and everything after it is refused. Not synchronised, but may be handed from
// thread to thread.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "platform/component.h"
#include "tools/tabulex/output/Column.h"
#include "tools/tabulex/system/ExitStatus.h"

namespace tabulex {

enum class OutputFormat
{
    Csv,
    JsonLines,
    Sqlite
};

// What becomes of a table that is there already.
enum class OldTable
{
    Refuse,
    Append,
    Replace
};

struct OutputOptions
{
    std::string sPath = "-"; // or "-" for standard output, which SQLite can't go to
    OutputFormat format = OutputFormat::Csv;
    std::string sTable = "quotes"; // this and the next for SQLite only
    OldTable oldTable = OldTable::Refuse;
};

class RowOutput
{
public:
    virtual ~RowOutput() = default;

    // Rows as they are delivered: the cells of a row side by side, a row after the
    // other, and a cell for each column. A fault may show only with a later call.
    virtual bool Write(const VARIANT* cells, ULONGLONG nRows) = 0;
    // Makes the rows final. False if that fails; nothing is left then.
    virtual bool Commit() = 0;
    // Takes the rows back, except where a reader has them already.
    virtual void Discard() = 0;

    // The reader of a pipe is gone: no fault to tell anyone about.
    virtual bool IsReaderGone() const { return false; }
    // Why something was refused; empty if nothing was.
    virtual std::string FaultText() const = 0;
    // What that fault means for the run.
    virtual ExitStatus FaultStatus() const { return ExitStatus::FileFault; }
};

// An output for rows of these columns, ready to be written. Throws Fault where it
// can't be had.
std::unique_ptr<RowOutput> OpenRowOutput(const OutputOptions& options, std::vector<Column> columns);
// Throws what OpenRowOutput would throw, as far as that can be known without writing.
void CheckRowOutput(const OutputOptions& options, const std::vector<Column>& columns);

} // namespace tabulex
