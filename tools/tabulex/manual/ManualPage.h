// The manual page tabulex(1): sections by hand, and between them what the definition
// of the command line says.
#pragma once

#include <string>

#include "tools/tabulex/completion/CommandTree.h"

namespace tabulex {

// `text` is the page in roff; each word between @ signs stands for a part of the
// definition. Throws std::out_of_range for a word that doesn't.
std::string ManualPage(const CommandTree& tree, const std::string& text);

} // namespace tabulex
