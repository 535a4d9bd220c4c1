// Suggestions for misspelt words.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace tabulex {

// The candidate that differs least from `word` in letters left out, added, changed or
// swapped with a neighbour; empty if none is near enough to be meant.
std::optional<std::string> Suggest(std::string_view word,
                                   const std::vector<std::string>& candidates);

// The end of a message about an unknown word: the one that was meant, or all of them.
std::string SuggestOrList(std::string_view word, const std::vector<std::string>& candidates);

} // namespace tabulex
