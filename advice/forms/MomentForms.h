// How moments are written: a date, a time of day, or both in one cell. Facts about a text: by which
// forms it can be read, and as what.
#pragma once

#include <cstdint>
#include <optional>
#include <string_view>
#include <vector>

#include "intake/Recipe.h"

namespace tabulex::advice {

struct MomentForm
{
    intake::DateForm date = intake::DateForm::None;    // None: a time alone
    intake::ClockForm clock = intake::ClockForm::None; // None: a date alone

    bool operator==(const MomentForm&) const = default;
};

struct MomentRead
{
    std::int64_t nDay = 0;         // since 1970-01-01; 0 without a date
    std::int64_t nNanoseconds = 0; // of the day; 0 without a time
    bool bOffset = false;          // a zone or an offset stands behind
    bool bShortYear = false;       // two digits

    // Since 1970, in milliseconds, as the clock stands.
    std::int64_t Milliseconds() const { return nDay * 86400000 + nNanoseconds / 1000000; }
};

struct MomentReading
{
    MomentForm form;
    MomentRead read;
};

// All forms that read the text, the likelier ones first. Nothing for a text that is no moment.
std::vector<MomentReading> ReadingsOfMoment(std::string_view cell);

// Empty where the form doesn't read the text. An offset isn't applied.
std::optional<MomentRead> ReadMoment(std::string_view cell, const MomentForm& form);

bool IsEpoch(intake::DateForm date);

} // namespace tabulex::advice
