// The advice is asked for a file at a time, since files of one call may come from many vendors. A
// recipe on the command line is the user's own decision, and nothing is advised beside it.
#include "tools/tabulex/commands/FileReading.h"

#include <fmt/format.h>

#include "tools/tabulex/advise/AdviceText.h"
#include "tools/tabulex/advise/FileAdvice.h"
#include "tools/tabulex/advise/ReadingSettings.h"
#include "tools/tabulex/system/Fault.h"

namespace tabulex {

using advice::Verdict;

namespace {

void TellReading(const Context& context, const InputFile& input, const advice::Advice& advice,
                 Warnings& warnings)
{
    if (!context.console.IsQuiet())
        context.console.Print(
            context.console.Visible(
                fmt::format("auto: {}: {}", input.Name(), WhatIsDone(advice, context.offers))) +
            '\n');
    for (const std::string& doubt : advice.doubts)
        warnings.Add("advice", doubt);
}

} // namespace

FileReading ReadingOf(const Context& context, const InputFile& input, Warnings& warnings)
{
    const Options& options = context.options;
    FileReading reading{options.recipe, options.settings};
    if (!options.convert.bAuto || !options.recipe.IsEmpty())
        return reading;
    const advice::Advice advice =
        AdviseFile(input.Path(), options.settings, context.offers, options.convert.prefer);
    if (advice.verdict == Verdict::Undecided || advice.verdict == Verdict::None)
        throw Fault{ExitStatus::Refused, WhyNothingIsDone(advice, input.Name(), context.offers)};
    TellReading(context, input, advice, warnings);
    const advice::Reading& best = advice.readings.front().reading;
    reading.recipe = best.recipe;
    reading.settings = WithReading(options.settings, best, context.offers);
    return reading;
}

std::string AdvisedInstead(const Context& context, const InputFile& input)
try {
    const Options& options = context.options;
    if (options.convert.bAuto || !options.recipe.IsEmpty())
        return {};
    const advice::Advice advice = AdviseFile(input.Path(), options.settings, context.offers);
    if (advice.verdict != Verdict::Advised)
        return {};
    return fmt::format(
        "\n  advised: {}",
        AdvisedCommand(input.Name(), advice.readings.front().reading, context.offers));
} catch (const Fault&) {
    return {};
}

} // namespace tabulex
