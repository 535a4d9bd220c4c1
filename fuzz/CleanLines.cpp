// Lines into clean lines: each keeps its place, whatever the blocks are that they come in. The
// first byte of an input chooses the recipe, the second one the size of the blocks.

#include <algorithm>
#include <string>
#include <utility>
#include <vector>

#include "fuzz/Targets.h"
#include "intake/Intake.h"
#include "intake/RecipeOptions.h"

using namespace tabulex::intake;
using fuzz::Require;

namespace {

using Options = std::vector<std::pair<std::string, std::string>>;

const std::vector<Options>& Recipes()
{
    static const std::vector<Options> s_recipes = {
        {{"--quotes", ""}},
        {{"--separator", "blank"}, {"--decimal", "comma"}, {"--missing", "-9"}},
        {{"--quotes", ""},
         {"--decimal", "comma"},
         {"--thousands", "point"},
         {"--numbers", "suffix"},
         {"--numbers", "percent"},
         {"--moment", "1:dmy+time"},
         {"--take", "2=Open"},
         {"--take", "3=Volume"},
         {"--scale", "Volume:3"}},
        {{"--moment", "1:ymd+time"}, {"--time-zone", "America/New_York:Asia/Tokyo"}},
        {{"--moment", "1+2:mdy+time"},
         {"--take", "3+4=Symbol"},
         {"--take", "5=Close"},
         {"--leave-out", "no-date"},
         {"--comment", "#"},
         {"--thousands", "blank"}},
        {{"--moment", "1:epoch-ms+time"}, {"--take", "2=Close"}, {"--numbers", "exponent"}},
        {{"--moment", "1:serial+time"}, {"--drop", "2"}, {"--numbers", "currency"}},
        {{"--split", "1:/"},
         {"--moment", "1.2+2:dmy+hhmmss"},
         {"--take", "1.1=Symbol"},
         {"--take", "3=Close"},
         {"--leave-out", "no-values"},
         {"--skip-to", "x"}},
        {{"--moment", "1:ymd"},
         {"--take", "2=Symbol"},
         {"--take", "3=Close"},
         {"--sort", "symbol"}},
    };
    return s_recipes;
}

std::string InBlocks(const Recipe& recipe, std::string_view text, std::size_t nBlock)
{
    std::string clean;
    Intake intake(recipe, [&clean](std::string_view block) { clean += block; });
    for (; !text.empty(); text.remove_prefix(std::min(nBlock, text.size())))
        intake.Feed(text.substr(0, nBlock));
    intake.Finish();
    return clean;
}

std::uint64_t LineEnds(std::string_view text)
{
    return static_cast<std::uint64_t>(std::ranges::count(text, '\n'));
}

} // namespace

void fuzz::CleanLines(const std::uint8_t* data, std::size_t nSize)
{
    if (nSize < 2)
        return;
    const Recipe recipe = RecipeFrom(Recipes()[data[0] % Recipes().size()]);
    const std::string_view text(reinterpret_cast<const char*>(data) + 2, nSize - 2);
    IntakeAccount account;
    const std::string clean = CleanText(recipe, text, &account);
    Require(InBlocks(recipe, text, data[1] + 1u) == clean, "blocks change the text");
    Require(clean.empty() || clean.back() == '\n', "the last line has no end");
    const std::uint64_t nHeading = recipe.HasHeading() ? 1 : 0;
    const bool bSorted = recipe.order != Order::AsRead;
    Require(bSorted || LineEnds(clean) == account.nLines + nHeading,
            "lines don't keep their places");
    Require(!bSorted || LineEnds(clean) == account.nRows + nHeading, "rows are lost in sorting");
    Require(account.nRows + account.nLeftOut + account.nJoined + account.nHeading <= account.nLines,
            "lines are counted twice");
    Require(std::ranges::none_of(clean, [](char c) { return c == '\t' || c == '\r'; }),
            "what divides is left in a cell");
}
