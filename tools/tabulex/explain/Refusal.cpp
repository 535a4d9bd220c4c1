// The settings check says what lacks, not why. The cause is looked for from the outside to the
// inside: the file, its first line, the table, its quotes and empty cells, the dates, the
// resolution. Whatever is wrong further out makes everything within look wrong as well.

#include "tools/tabulex/explain/Refusal.h"

#include <cctype>

#include <fmt/format.h>

#include "tools/tabulex/explain/Causes.h"
#include "tools/tabulex/explain/Shown.h"
#include "tools/tabulex/host/SettingsCheck.h"
#include "tools/tabulex/system/Fault.h"

namespace tabulex {

namespace {

// The first that is found: a file that is no text has no table, without a table there is no date.
std::string CauseOf(const Host& host, const Settings& settings)
{
    const Sample sample = TakeSample(host);
    std::string cause = FileCause(sample.head);
    if (!cause.empty())
        return cause;
    TemplateTrials trials(host);
    const Case theCase{host, settings, sample, trials};
    for (const auto find : {EncodingCause, FirstLineCause, TableCause, QuoteCause, ShiftCause,
                            DateCause, ResolutionCause})
        if (cause = find(theCase); !cause.empty())
            return cause;
    return "See 'tabulex inspect --explain'.";
}

std::string Sentence(std::string text)
{
    if (!text.empty())
        text[0] = static_cast<char>(std::toupper(static_cast<unsigned char>(text[0])));
    return text;
}

// Dates that are too late for delivery are in order, so the last line of a file has them, or the
// first of one that runs backwards.
std::string WithLateLine(const Host& host, const std::string& fault)
{
    if (fault.empty())
        return {};
    const Sample sample = TakeSample(host);
    const bool bFirst = sample.layout.bInverted && sample.DataLines() > 0;
    const SampleLine& line = bFirst ? sample.DataLine(0) : sample.last;
    return fmt::format("{} ({}: {})", fault, line.Name(), Shown(line.sText));
}

} // namespace

std::string WhyRefused(const Host& host, const Settings& settings, bool bCheck)
{
    const std::string fault = bCheck ? CheckSettings(host) : std::string();
    if (fault.empty() && host.HasColumn(TypeDate))
        return WithLateLine(host, WhyNotRunnable(host));
    try {
        return fmt::format("{} {}", fault.empty() ? "No column holds a date." : fault,
                           Sentence(CauseOf(host, settings)));
    } catch (const Fault&) {
        return fault.empty() ? WhyNotRunnable(host) : fault; // what finds causes can't work here
    }
}

} // namespace tabulex
