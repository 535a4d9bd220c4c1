// The candidate with the least edit distance to the word is suggested, if that is small
// enough for the length of the word. The distance counts letters that are left out, added or
// changed, and swaps of two neighbours. It is computed row by row from the distances of all
// beginnings of the two words: only the last three rows are kept. A word that begins a
// candidate counts as one edit away from it.
#include "tools/tabulex/text/Suggestion.h"

#include <algorithm>

#include <fmt/format.h>
#include <fmt/ranges.h>

#include "tools/tabulex/text/Text.h"

namespace tabulex {

namespace {

using Row = std::vector<std::size_t>;

// The number of edits that turn one word into the other; row[j] is that of the beginnings
// of i and j letters.
std::size_t Distance(std::string_view a, std::string_view b)
{
    Row beforeLast, last(b.size() + 1), row(b.size() + 1);
    for (std::size_t j = 0; j <= b.size(); ++j)
        last[j] = j;
    for (std::size_t i = 1; i <= a.size(); ++i) {
        row[0] = i;
        for (std::size_t j = 1; j <= b.size(); ++j) {
            const std::size_t nChange = a[i - 1] == b[j - 1] ? 0 : 1;
            row[j] = std::min({last[j] + 1, row[j - 1] + 1, last[j - 1] + nChange});
            if (i > 1 && j > 1 && a[i - 1] == b[j - 2] && a[i - 2] == b[j - 1])
                row[j] = std::min(row[j], beforeLast[j - 2] + 1);
        }
        beforeLast = last;
        last = row;
    }
    return last[b.size()];
}

// A beginning of at least three letters counts as one edit.
std::size_t Badness(std::string_view word, std::string_view candidate)
{
    const bool bBeginning = word.size() >= 3 && candidate.starts_with(word);
    return bBeginning ? 1 : Distance(word, candidate);
}

} // namespace

std::optional<std::string> Suggest(std::string_view word,
                                   const std::vector<std::string>& candidates)
{
    const std::string lower = LowerCase(word);
    // With more than one edit to three letters another word was meant.
    const std::size_t nMost = std::max<std::size_t>(1, lower.size() / 3);
    std::optional<std::string> best;
    std::size_t nBest = nMost + 1;
    for (const std::string& candidate : candidates) {
        const std::size_t n = Badness(lower, LowerCase(candidate));
        if (n < nBest) {
            nBest = n;
            best = candidate;
        }
    }
    return best;
}

std::string SuggestOrList(std::string_view word, const std::vector<std::string>& candidates)
{
    const auto near = Suggest(word, candidates);
    return near ? fmt::format("did you mean '{}'?", *near)
                : fmt::format("use one of {}", fmt::join(candidates, ", "));
}

} // namespace tabulex
