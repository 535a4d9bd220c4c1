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

// The header of a stream that takes the rows of several files.
struct SharedHeader
{
    std::vector<std::string> names; // of the columns; empty before the first file
};

struct OutputOptions
{
    std::string sPath = "-"; // or "-" for standard output, which SQLite can't go to
    OutputFormat format = OutputFormat::Csv;
    std::string sTable = "quotes"; // this and the next for SQLite only
    OldTable oldTable = OldTable::Refuse;
    // Nothing goes to a stream or a device before the commit; files are written so anyway.
    bool bHoldBack = false;
    SharedHeader* pHeader = nullptr; // for CSV only; null where each file has its own. Outlives it
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

    // How the columns of the rows differ from those that are there already, and what was done
    // about it; empty for nothing.
    virtual std::string Remark() const { return {}; }

    // Somebody may see rows before the commit.
    virtual bool ShowsAtOnce() const { return false; }
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
// Throws what OpenRowOutput would throw, as far as that can be known without writing, and gives
// the remark that its result would have.
std::string CheckRowOutput(const OutputOptions& options, const std::vector<Column>& columns);

} // namespace tabulex
