// HeadingColumns: what the headings of a table say of its columns, as far as a correction may
// follow them, and whether one has kept to them.
//
// A heading that is known is never talked over: whoever proposes types drops what contradicts one.
// The words and their meanings are those of the review of layouts.
#pragma once

#include <string>
#include <vector>

#include "advice/headings/HeadingWords.h"
#include "tools/tabulex/explain/Correction.h"

namespace tabulex {

// The type that a heading names or means; empty for any other.
std::string TypeOfHeading(const Host& host, const std::string& heading);

// Whether a column under that heading may be taken for the type by its values.
bool MayBe(const std::string& heading, unsigned uiType);

// The correction and what the headings ask for beside it: each column gets the type that its
// heading means, where it has another one, and one whose heading means no type loses what it was
// taken for. A column without a type is left as it is, so that a run tells of it. Columns that are
// set and the column of dates stay. The second, if any, asks for types only that every resolution
// of bars or ticks admits. Opens the file once; empty where the correction itself is refused.
std::vector<Correction> WithHeadings(const Host& host, const Sample& sample,
                                     const Correction& correction);

// Whether the columns of a file that was opened with a correction agree with the headings over
// them, also with those that it skips; nFirst is the index of the first row among the sampled
// lines. Columns that the user has `given` aren't asked. A number by its values alone is trusted
// only in a file without headings, or where the correction says so.
bool FollowsHeadings(const Host& trial, const Sample& sample, const Settings& given,
                     const Settings& corrected, std::size_t nFirst);

} // namespace tabulex
