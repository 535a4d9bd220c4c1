// A recipe as options, there and back, and what is refused.

#include <set>

#include <gtest/gtest.h>

#include "tests/intake/Clean.h"

using namespace intake_test;
using namespace tabulex::intake;

namespace {

constexpr const char* kRecipes[] = {
    "",
    "--skip-lines 3 --skip-to Date --stop-at Total --comment # --comment //",
    "--leave-out no-date --leave-out no-values --moment 1:ymd",
    "--separator tab --quotes --split 3:/ --split 4:,~",
    "--separator # --decimal comma --thousands blank",
    "--numbers suffix --numbers percent --numbers exponent --numbers currency --missing -9999",
    "--moment 1+2.3:dmy+time --time-zone Europe/Berlin:America/New_York --month-names pl",
    "--moment 1:ms-of-day --date 2013-10-07",
    "--moment 1:epoch-ms+time --take 2=Open --take 3+4=Symbol --scale Volume:8 --sort symbol",
    "--drop 1 --drop 7 --symbol-name BRK~B --sort moment",
};

TEST(Recipe, ComesBackFromItsOptions)
{
    for (const char* pszRecipe : kRecipes) {
        const Recipe recipe = RecipeOf(pszRecipe);
        EXPECT_EQ(RecipeFrom(OptionsOf(recipe)), recipe) << pszRecipe;
        EXPECT_EQ(recipe.IsEmpty(), *pszRecipe == '\0');
    }
}

TEST(Recipe, EachOptionIsInSomeRecipe)
{
    std::set<std::string> used;
    for (const char* pszRecipe : kRecipes)
        for (const auto& [name, value] : OptionsOf(RecipeOf(pszRecipe)))
            used.insert(name);
    for (const RecipeOption& option : RecipeOptions())
        EXPECT_TRUE(used.contains(option.pszName)) << option.pszName;
}

TEST(Recipe, EachFormComesBack)
{
    for (const char* pszDate : {"ymd", "ydm", "dmy", "mdy", "ym", "my", "epoch-s", "epoch-ms",
                                "epoch-us", "epoch-ns", "serial"})
        for (const char* pszClock :
             {"", "+time", "+hhmm", "+hhmmss", "+hhmmssfff", "+second-of-day", "+ms-of-day"}) {
            const std::string value = std::string("1:") + pszDate + pszClock;
            const auto options = OptionsOf(RecipeOf("--moment " + value));
            ASSERT_EQ(options.size(), 1u);
            EXPECT_EQ(options[0].second, value);
        }
}

constexpr const char* kRefused[] = {
    "--skip-lines x",    "--skip-to",          "--separator ab",   "--decimal x",
    "--thousands none",  "--numbers x",        "--moment 1",       "--moment 0:ymd",
    "--moment 1:xyz",    "--moment 1:ymd+xyz", "--moment 1+:ymd",  "--moment 1.0:ymd",
    "--date 2013-02-30", "--date 7.10.2013",   "--time-zone :UTC", "--take 1",
    "--take x=Open",     "--drop 0",           "--scale Volume",   "--scale Volume:x",
    "--sort x",          "--split 3",          "--leave-out x",    "--nothing 1",
    "--separator \"",
};

TEST(Recipe, RefusesWhatIsNoValue)
{
    for (const char* pszOptions : kRefused)
        EXPECT_THROW(RecipeOf(pszOptions), std::invalid_argument) << pszOptions;
}

struct FaultCase
{
    const char* pszOptions;
    const char* pszPart; // of the sentence
};

constexpr FaultCase kFaults[] = {
    {"--time-zone UTC", "--moment"},
    {"--date 2013-10-07", "--moment"},
    {"--sort moment", "--moment"},
    {"--leave-out no-date", "--moment"},
    {"--moment 1:time", "--date"},
    {"--moment 1:ymd --date 2013-10-07", "--date"},
    {"--moment 1:epoch-s+hhmm", "+time"},
    {"--moment 1:ymd --time-zone Nowhere/City", "'Nowhere/City'"},
    {"--moment 1:ymd --time-zone UTC:offset", "'offset'"},
    {"--month-names xx", "'xx'"},
    {"--take 1=Open --take 2=Open", "Open is given twice"},
    {"--take 1=Date --moment 1:ymd", "Date is given twice"},
    {"--take 1=Symbol --symbol-name A", "Symbol is given twice"},
    {"--take 1=Open --drop 2", "--drop"},
    {"--moment 1:ymd --take 2=Open --sort symbol", "needs a symbol"},
    {"--take 1=Volume --scale Volume:13", "12"},
    {"--scale Volume:2", "--take"},
    {"--decimal comma --thousands comma", "one mark"},
    {"--thousands point", "one mark"},
    {"--take 1.2=Open", "--split"},
};

TEST(Recipe, TellsWhatContradicts)
{
    for (const FaultCase& row : kFaults) {
        const Recipe recipe = RecipeOf(row.pszOptions);
        const std::string fault = FaultIn(recipe);
        EXPECT_NE(fault.find(row.pszPart), std::string::npos) << row.pszOptions << ": " << fault;
        EXPECT_THROW(CleanText(recipe, ""), RecipeFault);
    }
}

TEST(Recipe, HeadingIsInItsOrder)
{
    EXPECT_EQ(HeadingOf(RecipeOf("--take 3=Close --take 1=Symbol --moment 2:ymd+time "
                                 "--take 4=Volume")),
              (std::vector<std::string>{"Symbol", "Date", "Time", "Close", "Volume"}));
    EXPECT_TRUE(HeadingOf(RecipeOf("--moment 2:ymd+time")).empty());
}

} // namespace
