// FileLayout: what the component works out about a file by itself, read once.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "tools/tabulex/host/Host.h"

namespace tabulex {

struct LayoutColumn
{
    std::string sType; // internal name; empty for an unassigned column
    std::string sTemplate;
};

struct FileLayout
{
    std::optional<LONG> nDividers; // mask; empty where no line has been parsed
    bool bHasHeader = false;
    ULONG nHeaderOffset = 0;               // lines before the header, or before the data
    std::optional<std::string> sHeader;    // line that names the columns
    bool bInverted = false;                // the last line is the earliest record
    LONG nResolution = 0;                  // the component's id
    LONG nResolutionSize = 0;              // in units of the resolution
    bool bValidResolution = false;         // it has all columns that it needs, each once
    std::vector<std::string> lackedFields; // types that the resolution needs
    std::string sDuplicatedField;          // type of two columns; empty for none
    DATE dtStart = 0;                      // 0 where no date is known
    DATE dtEnd = 0;
    std::vector<LayoutColumn> columns;
    std::optional<std::string> sFirstRecord; // text as it stands; empty if there is none
    std::optional<std::string> sLastRecord;
};

// To be called right after the file was opened: the dates are those of the file until
// something changes them. Leaves the position at record 0.
FileLayout ReadLayout(const Host& host);

} // namespace tabulex
