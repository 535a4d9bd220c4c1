// Correction: settings that may mend a refusal. A message proposes one only after it was tried.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "tools/tabulex/explain/Sample.h"
#include "tools/tabulex/host/Settings.h"

namespace tabulex {

struct Correction
{
    Settings settings;    // all of them, those that were given included
    std::string sOptions; // what is to be added to the command, as a shell takes it
    std::vector<std::string> dropped = {}; // "column 7, 'Ask'": what it leaves out
    std::optional<std::size_t> nDate = {}; // the column of dates, which keeps its type
    std::size_t nShift = 0; // places by which columns behind it stand further on than headings
    bool bGuess = false;    // Open and Close are told apart by the values: see FirstThatWorks
};

// The first correction that works, alone or with the resolution that its dates show, as the end of
// a sentence: "try --column 2=Open", or "without column 7, 'Ask', try --column 7=unknown"; empty if
// none does. One works if the file can be converted, and the sampled rows come out whole: each from
// the first is a record, in nine of ten all columns are read and the moments follow each other, no
// High is below another price of its bar, no Low above, and no column contradicts its heading. By a
// guess the prices have to run on besides: from close to open they go less far than from open to
// close. `given` are the settings of the user.
std::string FirstThatWorks(const Host& host, const Sample& sample, const Settings& given,
                           const std::vector<Correction>& corrections);

// "--column 3=Date:'*y.*m.*d'"; the template may be empty.
std::string ColumnOption(ULONG nColumn, const std::string& sType, const std::string& sTemplate);

// Adds a setting of a column, in the place of an older one for it.
void AddColumnSetting(Correction& correction, const ColumnSetting& column);

// Takes a column's type away; it is named in the message.
void LeaveOut(Correction& correction, ULONG nColumn, const std::string& sName);

} // namespace tabulex
