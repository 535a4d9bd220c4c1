// Causes of a refusal, each looked for by a function of its own.
//
// A cause is a sentence or two that a person can check in the file, with the one step to take next;
// it ends with a full stop. Empty where the cause isn't this one. Settings proposed in a step have
// been tried on the file.
#pragma once

#include <string>

#include "tools/tabulex/explain/Correction.h"
#include "tools/tabulex/explain/TemplateTrials.h"

namespace tabulex {

struct Case
{
    const Host& host; // with the file open and the settings applied
    const Settings& settings;
    const Sample& sample;
    TemplateTrials& trials;
};

// The bytes are no lines of text with quotes: nothing there, another kind of file, no data.
std::string FileCause(const FileHead& head);
// Plain text is read in an encoding that makes other letters of all its own.
std::string EncodingCause(const Case& theCase);
// The line from which the layout is worked out can't serve for that.
std::string FirstLineCause(const Case& theCase);
// Other lines stand in front of the table, or the dividers are wrong.
std::string TableCause(const Case& theCase);
// Lines in front of the table, however few of the sampled lines are its rows.
std::string PreambleCause(const Case& theCase);
// Cells in quotes hold dividers, at which they are cut all the same.
std::string QuoteCause(const Case& theCase);
// Empty cells move others under headings that aren't theirs.
std::string ShiftCause(const Case& theCase);
// No column is taken for the date, or the one that is can't be read at the file's ends.
std::string DateCause(const Case& theCase);
// The dates are read, but no resolution fits, or the one that was asked for lacks something.
std::string ResolutionCause(const Case& theCase);

// "; try --column 1=Date" if there is a step that works, or else the other one, and a full stop.
std::string NextStep(const std::string& sStep, std::string_view other);

// FirstThatWorks on the file of the case.
std::string StepOf(const Case& theCase, const std::vector<Correction>& corrections);

// The correction alone, then with what the headings ask for beside it; the dates stay in nDate.
void AddWithHeadings(const Case& theCase, std::size_t nDate, Correction correction,
                     std::vector<Correction>& corrections);

} // namespace tabulex
