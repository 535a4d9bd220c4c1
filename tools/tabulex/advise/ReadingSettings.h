// A reading as settings of the host, and as options of the command line.
#pragma once

#include <string>
#include <utility>
#include <vector>

#include "advice/Reading.h"
#include "tools/tabulex/host/ResolutionOffers.h"
#include "tools/tabulex/host/Settings.h"

namespace tabulex {

// The settings with those of the reading that aren't about lines; what is given goes ahead.
Settings WithReading(const Settings& given, const advice::Reading& reading,
                     const ResolutionOffers& offers);

// Names with their hyphens, and values; that of a flag is empty. In the order of the help.
using OptionList = std::vector<std::pair<std::string, std::string>>;
OptionList OptionsOf(const advice::Reading& reading, const ResolutionOffers& offers);

// As a shell takes them: "--take 2=Open --resolution 'Tick Bars'".
std::string ShellText(const OptionList& options);

} // namespace tabulex
