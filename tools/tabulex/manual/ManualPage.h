// The manual page tabulex(1): sections written by hand, and between them the commands and
// options from the definition of the command line.
#pragma once

#include <string>

#include "tools/tabulex/completion/CommandTree.h"

namespace tabulex {

// `text` is the page in roff; each word between @ signs is replaced by a part of the
// definition. Throws std::out_of_range for an unknown word.
std::string ManualPage(const CommandTree& tree, const std::string& text);

} // namespace tabulex
