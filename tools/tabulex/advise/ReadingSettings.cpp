// What is said of lines and columns of clean text follows from the recipe and isn't repeated here:
// a reading adds resolution, size and range. The user's own words go ahead of it.
#include "tools/tabulex/advise/ReadingSettings.h"

#include <fmt/format.h>

#include "intake/RecipeOptions.h"
#include "tools/tabulex/text/ShellWord.h"

namespace tabulex {

Settings WithReading(const Settings& given, const advice::Reading& reading,
                     const ResolutionOffers& offers)
{
    Settings settings = given;
    if (const auto* row = offers.FindId(reading.nResolution);
        row && reading.nResolution != IQRL_TabulexConverter::ResolutionNone && !given.sResolution)
        settings.sResolution = row->sName;
    if (reading.nSize > 0 && !given.nSize)
        settings.nSize = static_cast<LONG>(reading.nSize);
    settings.bWholeFile = settings.bWholeFile || reading.bWholeFile;
    return settings;
}

OptionList OptionsOf(const advice::Reading& reading, const ResolutionOffers& offers)
{
    OptionList options = intake::OptionsOf(reading.recipe);
    const auto* row = offers.FindId(reading.nResolution);
    if (row && reading.nResolution != IQRL_TabulexConverter::ResolutionNone)
        options.emplace_back("--resolution", row->sName);
    if (reading.nSize > 0)
        options.emplace_back("--size", fmt::format("{}", reading.nSize));
    if (reading.bWholeFile)
        options.emplace_back("--whole-file", "");
    return options;
}

std::string ShellText(const OptionList& options)
{
    std::string text;
    for (const auto& [name, value] : options) {
        text += text.empty() ? "" : " ";
        text += name;
        if (!value.empty())
            text += ' ' + QuoteForShell(value);
    }
    return text;
}

} // namespace tabulex
