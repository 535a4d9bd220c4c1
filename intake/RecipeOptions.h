// RecipeOptions: a recipe as options of a command line, in a profile, and in advice.
//
// One table has the name, the form and the meaning of each option, reads it and prints it, so that
// what is advised is what can be typed. Printing and reading gives the same recipe again.
#pragma once

#include <span>
#include <string>
#include <utility>
#include <vector>

#include "intake/Recipe.h"

namespace tabulex::intake {

struct RecipeOption
{
    const char* pszName;  // with its hyphens: "--decimal"
    const char* pszValue; // in the help: "N:TEXT", or the words to choose from; empty for a flag
    const char* pszHelp;  // lines of at most 50 characters
    bool bSeveral;        // may be given several times

    // Sets the recipe's part from a value, which is empty for a flag. Throws
    // std::invalid_argument with a sentence for the user, without the option's name.
    void (*read)(Recipe& recipe, const std::string& value);
    // The values of the recipe's part, one each time the option is to be given: none where it
    // is as in an empty recipe. That of a flag is empty.
    std::vector<std::string> (*print)(const Recipe& recipe);
};

// In the order of the help, which is that of the steps:
//
//   --skip-lines N            lines from the file's beginning
//   --skip-to TEXT            up to the first line that holds TEXT
//   --stop-at TEXT            from the first line on that holds TEXT
//   --comment TEXT            lines that begin with TEXT
//   --leave-out WHAT          no-date, no-values
//   --separator CHAR          or comma, semicolon, tab, bar, blank, colon
//   --quotes                  cells between quotation marks
//   --split N:TEXT            pieces of column N are N.1, N.2, ...
//   --decimal WORD            comma, point
//   --thousands WORD          comma, point, blank, apostrophe
//   --numbers WORD            suffix, percent, exponent, currency
//   --missing TEXT            a text that stands for no value
//   --moment COLUMNS:FORM     COLUMNS as 1, 1+2 or 3.1+4; FORM as ymd, dmy+time, epoch-ms+time
//   --date YYYY-MM-DD         of a file of times alone
//   --time-zone FROM[:TO]     zones as in America/New_York; TO is UTC if it isn't given
//   --month-names LANGUAGE    where names of months differ
//   --take COLUMNS=HEADING    as 2=Open, 1+4=Symbol
//   --drop N                  a column
//   --symbol-name TEXT        a Symbol column with this
//   --scale HEADING:DIGITS    Volume:8
//   --sort WORD               moment, symbol
//
// A FORM is a date, a clock, or both with a plus sign. Dates: ymd, ydm, dmy, mdy, ym, my,
// epoch-s, epoch-ms, epoch-us, epoch-ns, serial. Clocks: time, hhmm, hhmmss, hhmmssfff,
// second-of-day, ms-of-day.
std::span<const RecipeOption> RecipeOptions();

// Name and value of each option that makes the recipe from an empty one, in the table's order. The
// value of a flag is empty.
std::vector<std::pair<std::string, std::string>> OptionsOf(const Recipe& recipe);

// The reverse. Throws std::invalid_argument, with the option's name in the sentence.
Recipe RecipeFrom(std::span<const std::pair<std::string, std::string>> options);

} // namespace tabulex::intake
