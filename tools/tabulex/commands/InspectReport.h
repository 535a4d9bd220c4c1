// What `inspect` shows of one file, as a report for people and as JSON.
#pragma once

#include <optional>
#include <string>

#include <nlohmann/json_fwd.hpp>

#include "advice/Advice.h"
#include "tools/tabulex/commands/Commands.h"
#include "tools/tabulex/explain/Explanation.h"
#include "tools/tabulex/output/Results.h"

namespace tabulex {

struct Inspection
{
    Sample sample;                          // with the layout
    std::string sReason;                    // why it can't be converted; empty if it can
    std::optional<Explanation> explanation; // where it was asked for
    std::optional<advice::Advice> advice;   // unless the user has given a recipe
};

// Counting the records of a large file takes longer than everything else, so their number comes
// after the rest has been written; only the advice stands behind it.
void WriteReport(const Host& host, const std::string& file, const Inspection& inspection,
                 const Context& context, Results& results);

// The part of the report that --explain adds, and the same as JSON.
void WriteExplanation(const Explanation& explanation, Results& results);
nlohmann::ordered_json JsonOf(const Explanation& explanation);

} // namespace tabulex
