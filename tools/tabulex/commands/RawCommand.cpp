#include <fmt/format.h>

#include "tools/tabulex/commands/Commands.h"
#include "tools/tabulex/host/ReadCheck.h"
#include "tools/tabulex/output/Results.h"
#include "tools/tabulex/system/Fault.h"
#include "tools/tabulex/text/Text.h"

namespace tabulex {

namespace {

void AddLast(const Host& host, Results& results)
{
    Bstr text;
    if (host.Data().get_LastRecord(text.put()) != S_OK)
        throw Fault{ExitStatus::Refused, "the file has no line with content"};
    results.AddLine(ToUtf8(text.view()));
}

// True if the range goes up to the end of the file, or to a line that can't be read.
bool AddRange(IDataParser& lines, const RangeOptions& range, Results& results)
{
    const ULONGLONG nCount = range.nCount.value_or(~0ULL);
    for (ULONGLONG i = 0; i < nCount; ++i) {
        Bstr text;
        if (lines.put_Position(range.nFrom + i) != S_OK ||
            lines.get_CurrentRecord(text.put()) != S_OK)
            return true;
        if (!results.AddLine(ToUtf8(text.view())))
            return false;
    }
    return false;
}

} // namespace

// A line is a record here, whatever the layout says of header and direction.
ExitStatus Raw(const Context& context, Host& host, const CleanFile& input)
{
    host.Open(input.Path());
    host.Data().put_HasHeader(VARIANT_FALSE);
    host.Data().put_HeaderOffset(0);
    host.Data().put_InvertedDirection(VARIANT_FALSE);
    Results results;
    bool bToEnd = context.options.raw.bCountOnly;
    if (bToEnd)
        results.Add(fmt::format("{}\n", host.CountRecords()));
    else if (context.options.raw.bLast)
        AddLast(host, results);
    else
        bToEnd = AddRange(host.Data(), context.options.range, results);
    RequireRead(host); // before the last piece of output, which may be all of it
    results.Finish();
    if (bToEnd)
        RequireNoGrowth(host);
    return ExitStatus::Done;
}

} // namespace tabulex
