// Settings: what the command line asks of the component, and how it is applied
// through the component's properties.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "tools/tabulex/host/Host.h"
#include "tools/tabulex/system/Console.h"

namespace tabulex {

struct ColumnSetting
{
    ULONG nField;          // from 0
    std::string sType;     // name of a field type, or "none"
    std::string sTemplate; // empty: the present one, or the first that fits
};

struct Portion
{
    ULONGLONG nStart; // record position, from 0
    ULONGLONG nCount;
};

// What is empty stays as the component finds it.
struct Settings
{
    std::string sEnvironment;                    // file to read first; empty for none
    std::optional<ULONG> nCodePage;              // number, such as 936
    std::optional<std::string> sPriceMultiplier; // "1000000" to "1/1000000"
    std::optional<std::string> sVolumeMultiplier;
    std::optional<LONG> nDividers;     // mask as in IRecordParser::FieldDividers
    std::optional<ULONG> nLinesToSkip; // before the header or the data
    std::vector<ColumnSetting> columns;
    std::optional<std::string> sResolution; // name, possibly "name|size"
    std::optional<LONG> nSize;          // in units of the resolution; wins over that of the name
    bool bBarEndTime = false;           // stamp bars with their end
    std::optional<std::string> sSymbol; // exact, case matters
    std::optional<DATE> dtFrom;         // both ends belong to the range
    std::optional<DATE> dtTo;
    std::optional<Portion> portion; // of a conversion; not applied here
};

// Opens the file and applies the settings in the order in which they build on each
// other. Throws Fault for the first that is refused. A setting that is accepted but has
// less effect than the user may expect gives a warning.
void OpenWithSettings(Host& host, const std::string& path, const Settings& settings,
                      Console& console);

} // namespace tabulex
