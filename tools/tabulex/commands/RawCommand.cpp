#include <fmt/format.h>

#include "tools/tabulex/commands/Commands.h"
#include "tools/tabulex/host/Properties.h"
#include "tools/tabulex/output/Results.h"
#include "tools/tabulex/system/Fault.h"

namespace tabulex {

namespace {

void AddLast(const Host& host, Results& results)
{
    Bstr text;
    if (host.Data().get_LastRecord(text.put()) != S_OK)
        throw Fault{ExitStatus::Refused, "the file holds no record"};
    results.Add(ToUtf8(text.view()) + '\n');
}

void AddRange(IDataParser& lines, const RangeOptions& range, Results& results)
{
    const ULONGLONG nCount = range.nCount.value_or(~0ULL);
    for (ULONGLONG i = 0; i < nCount && lines.put_Position(range.nFrom + i) == S_OK; ++i) {
        std::string text = ToUtf8(GetText(lines, &IDataParser::get_CurrentRecord));
        text += '\n';
        if (!results.Add(text))
            return;
    }
}

} // namespace

// A line is a record here, whatever the layout says of header and direction.
ExitStatus Raw(const Context& context, const std::string& file)
{
    Host host(context.offers);
    host.Open(file);
    host.Data().put_HasHeader(VARIANT_FALSE);
    host.Data().put_HeaderOffset(0);
    host.Data().put_InvertedDirection(VARIANT_FALSE);
    Results results;
    if (context.options.raw.bCountOnly)
        results.Add(fmt::format("{}\n", host.CountRecords()));
    else if (context.options.raw.bLast)
        AddLast(host, results);
    else
        AddRange(host.Data(), context.options.range, results);
    results.Finish();
    return ExitStatus::Done;
}

} // namespace tabulex
