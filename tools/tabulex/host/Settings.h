// Settings: what the command line asks of the component, and how it is applied
// through the component's properties.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "tools/tabulex/host/Host.h"

namespace tabulex {

// In place of a type's name, both take a column's type away; kNoneName also says that the column is
// left out on purpose. In any case of letters.
inline constexpr std::string_view kNoneName = "none", kUnknownName = "unknown";

struct ColumnSetting
{
    ULONG nField;          // from 0
    std::string sType;     // name of a field type, or kNoneName, or kUnknownName
    std::string sTemplate; // empty: the present one, or the first that fits
};

struct Portion
{
    ULONGLONG nStart; // record position, from 0
    ULONGLONG nCount;
};

// Whether a line names the columns.
enum class HeaderChoice
{
    Auto, // the component decides
    Yes,
    No
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
    HeaderChoice header = HeaderChoice::Auto;
    std::vector<ColumnSetting> columns;
    std::optional<std::string> sResolution; // name, possibly "name|size"
    std::optional<LONG> nSize;          // in units of the resolution; wins over that of the name
    bool bBarEndTime = false;           // stamp bars with their end
    std::optional<std::string> sSymbol; // exact, case matters
    std::optional<DATE> dtFrom;         // both ends belong to the range
    std::optional<DATE> dtTo;
    bool bWholeFile = false;        // the range has no ends but those
    std::optional<Portion> portion; // of a conversion; not applied here
};

// Whether the user has asked for records by their dates.
bool AsksForRange(const Settings& settings);

// What is to be known about a file that was opened with settings.
struct Opening
{
    // Where the range lies that was asked for, if it is ahead of the first record of the file or
    // behind the last one; else empty.
    std::string sRangeOutside;
    // Settings that were accepted, but have less effect than the user may expect.
    std::vector<std::string> warnings;
};

// Opens the file and applies the settings in the order in which they build on each
// other. Throws Fault for the first that is refused.
Opening OpenWithSettings(Host& host, const std::string& path, const Settings& settings);

} // namespace tabulex
