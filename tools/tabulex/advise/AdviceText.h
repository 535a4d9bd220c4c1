// An advice in words, and as JSON.
#pragma once

#include <string>

#include <nlohmann/json_fwd.hpp>

#include "advice/Advice.h"
#include "tools/tabulex/host/ResolutionOffers.h"

namespace tabulex {

// "tabulex convert FILE --take 2=Open ...", to be pasted into a shell. `file` as the user gave it.
std::string AdvisedCommand(const std::string& file, const advice::Reading& reading,
                           const ResolutionOffers& offers);

// The part at the end of a report: verdict, what is doubtful, and the commands; lines with ends.
std::string AdviceReport(const advice::Advice& advice, const std::string& file,
                         const ResolutionOffers& offers);

// All of it: each reading with its score, the parts of that, options and command.
nlohmann::ordered_json JsonOf(const advice::Advice& advice, const std::string& file,
                              const ResolutionOffers& offers);

// What is done, in one line: "as it stands", or the options.
std::string WhatIsDone(const advice::Advice& advice, const ResolutionOffers& offers);

// Why nothing is done: of verdicts Undecided and None, with the commands that there are.
std::string WhyNothingIsDone(const advice::Advice& advice, const std::string& file,
                             const ResolutionOffers& offers);

} // namespace tabulex
