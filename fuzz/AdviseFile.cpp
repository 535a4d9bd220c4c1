// A file of any bytes is advised on within its limits, and what is advised can be typed: the recipe
// has no fault, and comes back from its options.

#include <string>

#include "advice/Advice.h"
#include "fuzz/Targets.h"
#include "intake/Intake.h"
#include "intake/RecipeOptions.h"

using namespace tabulex;
using fuzz::Require;

namespace {

// Cleans the lines, and gives rows as if an engine had read each of them.
class CleaningTrial : public advice::ITrial
{
public:
    advice::TrialResult Run(const advice::Reading& reading, std::string_view text) override
    {
        advice::TrialResult result;
        if (reading.IsOwn())
            return result;
        Require(intake::FaultIn(reading.recipe).empty(), "a recipe that can be done");
        Require(intake::RecipeFrom(intake::OptionsOf(reading.recipe)) == reading.recipe,
                "a recipe that comes back from its options");
        intake::IntakeAccount account;
        intake::CleanText(reading.recipe, text, &account);
        result.bRan = true;
        result.rows.rows.resize(account.nRows);
        return result;
    }
};

} // namespace

void fuzz::AdviseFile(const std::uint8_t* data, std::size_t nSize)
{
    const advice::FileSample sample{std::string(reinterpret_cast<const char*>(data), nSize)};
    CleaningTrial trial;
    const advice::Advice advice = advice::Advise(sample, {}, trial);
    Require(advice.nTries <= advice::kMostTries, "a bounded number of tries");
    Require((advice.verdict == advice::Verdict::None) == advice.readings.empty(),
            "readings unless there is none");
    Require(advice.verdict != advice::Verdict::Undecided || advice.readings.size() >= 2,
            "two readings where nothing decides");
}
