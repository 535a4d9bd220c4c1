// Recipes written as on a command line, for tests.
#pragma once

#include <sstream>
#include <string>
#include <utility>
#include <vector>

#include "intake/Intake.h"
#include "intake/RecipeOptions.h"

namespace intake_test {

// Words parted by blanks; '~' in a value stands for a blank. A flag is a word of its own.
inline tabulex::intake::Recipe RecipeOf(const std::string& words)
{
    std::vector<std::pair<std::string, std::string>> options;
    std::istringstream in(words);
    for (std::string word; in >> word;)
        if (word.starts_with("--"))
            options.emplace_back(word, "");
        else
            for (const char c : word)
                options.back().second += c == '~' ? ' ' : c;
    return tabulex::intake::RecipeFrom(options);
}

inline std::string Clean(const std::string& words, std::string_view text,
                         tabulex::intake::IntakeAccount* pAccount = nullptr)
{
    return tabulex::intake::CleanText(RecipeOf(words), text, pAccount);
}

// The clean cells of one line, without the heading.
inline std::string CleanLine(const std::string& words, std::string_view line)
{
    const std::string text = Clean(words, std::string(line) + "\n");
    const std::size_t nBegin = RecipeOf(words).HasHeading() ? text.find('\n') + 1 : 0;
    return text.substr(nBegin, text.size() - nBegin - 1);
}

} // namespace intake_test
