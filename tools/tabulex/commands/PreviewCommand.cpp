#include "tools/tabulex/commands/Commands.h"
#include "tools/tabulex/commands/RecordTable.h"
#include "tools/tabulex/host/ReadCheck.h"
#include "tools/tabulex/output/Results.h"

namespace tabulex {

namespace {

constexpr ULONGLONG kRows = 20;
constexpr ULONGLONG kPieceRows = 500; // bounds the memory of a long preview

} // namespace

ExitStatus Preview(const Context& context, Host& host, const std::string& file)
{
    OpenWithSettings(host, file, context.options.settings, context.console);
    const RangeOptions& range = context.options.range;
    const ULONGLONG nCount = range.nCount.value_or(kRows);
    RecordTable table(host, context.bColour);
    Results results;
    for (ULONGLONG i = 0; i < nCount && table.Add(range.nFrom + i); ++i)
        if (i % kPieceRows == kPieceRows - 1 && !results.Add(table.Take()))
            return ExitStatus::Done;
    RequireRead(host);
    results.Add(table.Take());
    results.Finish();
    return ExitStatus::Done;
}

} // namespace tabulex
