// The advice for a file of the command line.
#pragma once

#include <string>

#include "advice/Advice.h"
#include "tools/tabulex/host/ResolutionOffers.h"
#include "tools/tabulex/host/Settings.h"

namespace tabulex {

// Looks at a sample of the file, which is opened by its path, and tries readings on it together
// with the user's settings. Its cost doesn't grow with the file. Throws Fault where the file can't
// be read.
advice::Advice AdviseFile(const std::string& path, const Settings& given,
                          const ResolutionOffers& offers,
                          advice::DayMonth preferred = advice::DayMonth::Certain);

} // namespace tabulex
