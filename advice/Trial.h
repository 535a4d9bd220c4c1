// Trial: a reading tried on a sample of lines. The host does it, through the engine's interfaces.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "advice/Reading.h"

namespace tabulex::advice {

struct TrialResult
{
    bool bRan = false;    // the settings were accepted and the run ended well
    std::string sRefusal; // why it didn't run, in the engine's words
    ReadRows rows;        // what was delivered; nBad are lines that were reported
    // The engine's name of the type of each column of what it was given; empty for none.
    std::vector<std::string> types;
};

class ITrial
{
public:
    virtual ~ITrial() = default;
    // `text` are whole lines of the file. Values come back as the file has them, scales undone.
    // Doesn't throw for what the engine or the intake refuses.
    virtual TrialResult Run(const Reading& reading, std::string_view text) = 0;
};

} // namespace tabulex::advice
