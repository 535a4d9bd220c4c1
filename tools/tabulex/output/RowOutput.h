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

// What to do with a table that exists already.
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

    // Takes rows as they are delivered: row after row, each with its cells side by side, one
    // for each column. A fault may show only in a later call.
    virtual bool Write(const VARIANT* cells, ULONGLONG nRows) = 0;
    // Makes the rows final. False if that fails; nothing is left behind then.
    virtual bool Commit() = 0;
    // Takes the rows back, unless they have gone to a reader already.
    virtual void Discard() = 0;

    // The reader of a pipe is gone, which is no fault to be reported.
    virtual bool IsReaderGone() const { return false; }
    // Why something was refused; empty if nothing was.
    virtual std::string FaultText() const = 0;
    // What that fault means for the run.
    virtual ExitStatus FaultStatus() const { return ExitStatus::FileFault; }
};

// An output for rows of these columns, ready to be written. Throws Fault if it can't be
// opened.
std::unique_ptr<RowOutput> OpenRowOutput(const OutputOptions& options, std::vector<Column> columns);
// Throws what OpenRowOutput would throw, as far as that can be known without writing.
void CheckRowOutput(const OutputOptions& options, const std::vector<Column>& columns);

} // namespace tabulex
