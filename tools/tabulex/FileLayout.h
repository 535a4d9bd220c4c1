// FileLayout: what the component works out about a file by itself, read once.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "tools/tabulex/Host.h"

namespace tabulex {

struct LayoutColumn
{
    std::string sType; // internal name; empty for an unassigned column
    std::string sTemplate;
};

struct FileLayout
{
    std::optional<LONG> nDividers; // mask; empty where there are none to tell
    bool bHasHeader = false;
    ULONG nHeaderOffset = 0;
    std::optional<std::string> sHeader; // line that names the columns
    bool bInverted = false;
    LONG nResolution = 0; // the component's id
    LONG nResolutionSize = 0;
    bool bValidResolution = false;
    std::vector<std::string> lackedFields;
    std::string sDuplicatedField;
    DATE dtStart = 0; // 0 where no date is known
    DATE dtEnd = 0;
    std::vector<LayoutColumn> columns;
    std::optional<std::string> sFirstRecord;
    std::optional<std::string> sLastRecord;
};

// To be called right after the file was opened: the dates are those of the file until
// something changes them. Leaves the position at record 0.
FileLayout ReadLayout(const Host& host);

} // namespace tabulex
