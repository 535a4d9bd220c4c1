// Account: the fate of every line of a file in one run. The numbers add up to the file's lines.
#pragma once

#include <string>
#include <vector>

#include "tools/tabulex/account/LineMap.h"
#include "tools/tabulex/account/Warnings.h"
#include "tools/tabulex/host/Host.h"
#include "tools/tabulex/host/Settings.h"

namespace tabulex {

struct Account
{
    ULONGLONG nLines = 0;
    ULONGLONG nBlank = 0;   // nothing but dividers or blanks
    ULONGLONG nHeader = 0;  // 0 or 1
    ULONGLONG nSkipped = 0; // before the header or the data
    ULONGLONG nDelivered = 0;
    ULONGLONG nBad = 0;         // reported, with the lines that were read as one with them
    ULONGLONG nOutside = 0;     // of a range or portion that was asked for
    ULONGLONG nOtherSymbol = 0; // than the one that was asked for
    ULONGLONG nUnread = 0;      // not reached, or not seen by the component

    // "lines=N blank=N ...": what is 0 is left out but for the lines and what was delivered;
    // with bAll nothing is.
    std::string Text(bool bAll) const;
    // Whether each line has one fate.
    bool AddsUp() const;
};

// What a run tells of itself.
struct RunFacts
{
    bool bRun = true; // it began
    bool bCommitted = false;
    ULONGLONG nRead = 0; // lines of the batches that came
    ULONGLONG nDelivered = 0;
    ULONGLONG nBehindRange = 0;            // rows that came, and were left out for their moment
    ULONGLONG nBad = 0;                    // reported
    ULONGLONG nLastBatch = 0;              // position of the first line of the last batch
    std::vector<ULONGLONG> badInLastBatch; // places among the lines with content
};

// After the run. Reads records again only where lines are missing or a symbol was asked for.
// What a person should know of lines that went missing becomes a warning.
Account MakeAccount(const Host& host, const Settings& settings, const RunFacts& facts,
                    LineMap& lines, Warnings& warnings);

} // namespace tabulex
