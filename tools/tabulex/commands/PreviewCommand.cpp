#include "tools/tabulex/commands/Commands.h"
#include "tools/tabulex/commands/RecordTable.h"
#include "tools/tabulex/explain/Refusal.h"
#include "tools/tabulex/host/ReadCheck.h"
#include "tools/tabulex/output/Results.h"
#include "tools/tabulex/system/Fault.h"

namespace tabulex {

namespace {

constexpr ULONGLONG kRows = 20;
constexpr ULONGLONG kPieceRows = 500; // bounds the memory of a long preview

// A file without a single record has a cause that its owner should know.
void RequireRecords(const Context& context, const Host& host, ULONGLONG nFrom)
{
    if (nFrom > 0 && RecordTable(host, false).Add(0))
        return; // the first one to be shown lies behind the last
    const std::string cause = WhyRefused(host, context.options.settings);
    throw Fault{ExitStatus::Refused, cause.empty() ? "the file has no records" : cause};
}

} // namespace

ExitStatus Preview(const Context& context, Host& host, const CleanFile& input)
{
    OpenAsSet(context, host, input);
    const RangeOptions& range = context.options.range;
    const ULONGLONG nCount = range.nCount.value_or(kRows);
    RecordTable table(host, context.bColour);
    Results results;
    ULONGLONG i = 0;
    for (; i < nCount && table.Add(range.nFrom + i); ++i)
        if (i % kPieceRows == kPieceRows - 1 && !results.Add(table.Take()))
            return ExitStatus::Done;
    RequireRead(host);
    if (i == 0 && nCount > 0)
        RequireRecords(context, host, range.nFrom);
    results.Add(table.Take());
    results.Finish();
    return ExitStatus::Done;
}

} // namespace tabulex
