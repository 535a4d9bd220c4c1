// Scripts that let a shell complete the tool's commands, options and values.
#pragma once

#include <string>

#include "tools/tabulex/completion/CommandTree.h"

namespace tabulex {

// The values that an option offers, as one list of words: a blank within one has a backslash.
std::string ChoiceList(const OptionNode& option);

std::string BashCompletion(const CommandTree& tree);
std::string ZshCompletion(const CommandTree& tree);
std::string FishCompletion(const CommandTree& tree);

} // namespace tabulex
