// Explanation: what the component decided about a file's layout, and why, from its sampled lines.
//
// Collected through public calls on the host's file as it stands, settings included; its cost
// doesn't depend on the size of the file. How it is shown isn't known here.
#pragma once

#include <string>
#include <utility>
#include <vector>

#include "tools/tabulex/explain/Sample.h"

namespace tabulex {

// A divider, and the number of cells that it makes of each of the first lines.
struct ExplainedDivider
{
    std::string sName;
    bool bUsed;
    std::vector<std::size_t> cells;
};

// A line ahead of the data, or the first one of it.
struct ExplainedLine
{
    std::string sLine; // "line 1"
    std::string sText;
    bool bHeading;
    std::string sReason;
};

struct ExplainedColumn
{
    std::string sHeading; // empty without one
    std::string sType;    // empty for one that is left out
    std::string sTemplate;
    std::size_t nRead = 0;            // sampled cells that are read
    std::size_t nSampled = 0;         // that aren't empty
    std::vector<std::string> samples; // the first ones
    std::string sFirstFailure;        // "line 12 has '-'"; empty if all are read
    std::vector<std::string> others;  // what else reads all of them: "Date by '*m/*d/*y'"
    std::vector<std::string>
        failed; // for one that is left out: what was tried, and where it failed
};

struct Explanation
{
    std::vector<ExplainedDivider> dividers;
    std::vector<ExplainedLine> lines;
    std::vector<ExplainedColumn> columns;
    std::vector<std::pair<std::string, std::size_t>>
        steps;               // "1 day" and how often, the commonest first
    std::string sResolution; // why this one, or why none
    std::string sDirection;
    std::string sDates;
    std::string sEncoding;
};

Explanation Explain(const Host& host, const Sample& sample);

} // namespace tabulex
