// EngineTrial: readings tried as a run would read the file, on a temporary copy of the sampled
// lines, in a host of its own each.
#pragma once

#include <string>
#include <string_view>

#include "advice/Trial.h"
#include "tools/tabulex/host/ResolutionOffers.h"
#include "tools/tabulex/host/Settings.h"

namespace tabulex {

class EngineTrial : public advice::ITrial
{
public:
    // `given` are the user's settings, which a reading is tried with; range and symbol say nothing
    // about the layout and are left out. Both must outlive this.
    EngineTrial(const ResolutionOffers& offers, const Settings& given);

    advice::TrialResult Run(const advice::Reading& reading, std::string_view text) override;

private:
    const ResolutionOffers& m_offers;
    Settings m_given;
};

} // namespace tabulex
