// The settings of an object as options of 'tabulex convert'.
#pragma once

#include <string>

#include "intake/Recipe.h"
#include "tools/tabulex/host/Settings.h"
#include "tools/tabulex/options/Options.h"

namespace tabulex {

// The fewest settings by which the file, opened anew, is read as `host` reads it: those in which
// a fresh object differs, in the order in which they build on each other. `start` holds what
// the fresh object is given first, such as the environment. Reads the layout again several
// times, but not the whole file. Throws Fault where a file can't be read.
Settings FindSettings(const Host& host, const std::string& path, const Settings& start);

// What settings can't express of how `host` reads the file; empty if nothing. For the user.
std::string WhatSettingsLack(const Host& host, const std::string& path, const Settings& settings);

// "tabulex convert FILE --column '1=Date:*y/*m/*d' ...": a line for a shell.
std::string ConvertCommandLine(const std::string& path, const intake::Recipe& recipe,
                               const Settings& settings, const GeneralOptions& general,
                               const ResolutionOffers& offers);

} // namespace tabulex
