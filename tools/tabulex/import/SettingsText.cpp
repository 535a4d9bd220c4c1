// Found by trying, with what the command itself will do: a fresh object opens the file with the
// settings found so far, the first property in which it differs from the wanted one becomes a
// setting, and so on. A setting may change what others were found for, as dividers do with all
// columns, so each is looked at again after every step. Each step adds a setting, and there are
// only so many; what still differs in the end can't be expressed.

#include "tools/tabulex/import/SettingsText.h"

#include <algorithm>
#include <cmath>

#include <fmt/format.h>

#include "interfaces/IValueMultiplier.h"
#include "tools/tabulex/host/FileLayout.h"
#include "tools/tabulex/host/Properties.h"
#include "tools/tabulex/system/Fault.h"
#include "tools/tabulex/text/Formats.h"
#include "tools/tabulex/text/Text.h"

namespace tabulex {

using IQRL_TabulexConverter::IValueMultiplier;

namespace {

constexpr const char* kNoTypeName = "none"; // as --column has it

std::string MultiplierOf(const Host& host,
                         HRESULT (STDMETHODCALLTYPE IRecordParser::*get)(IDispatch**))
{
    com_ptr<IDispatch> object;
    com_ptr<IValueMultiplier> multiplier;
    if (FAILED((host.Records().*get)(object.put())) || FAILED(query(object.get(), multiplier)))
        return {};
    return ToUtf8(GetText(*multiplier.get(), &IValueMultiplier::get_Current));
}

struct ReadColumn
{
    std::string sType; // empty for none
    std::string sTemplate;
    bool bDated; // has a template at all

    bool operator==(const ReadColumn& other) const
    {
        return sType == other.sType && (!bDated || sTemplate == other.sTemplate);
    }
};

// How an object reads a file: what settings can change.
struct Reading
{
    std::string sPrice, sVolume; // multipliers
    ULONG nCodePage = 0;
    LONG nDividers = 0;
    ULONG nLinesToSkip = 0;
    bool bHeader = false;
    std::vector<ReadColumn> columns;
    LONG nResolution = 0;
    LONG nSize = 0;
    bool bBarEndTime = false;
    DATE dtFrom = 0, dtTo = 0;
};

std::vector<ReadColumn> ColumnsOf(const Host& host)
{
    std::vector<ReadColumn> columns;
    const ULONG nCount = Get(host.Records(), &IRecordParser::get_FieldCount);
    for (ULONG n = 0; n < nCount; ++n) {
        const unsigned uiType = host.ColumnType(n);
        Bstr text;
        host.Records().GetFieldTemplate(text.put(), n);
        columns.push_back(
            {host.ColumnName(n), ToUtf8(text.view()), uiType == TypeDate || uiType == TypeTime});
    }
    return columns;
}

Reading ReadingOf(const Host& host)
{
    IRecordParser& records = host.Records();
    IDataParser& data = host.Data();
    Reading reading;
    reading.sPrice = MultiplierOf(host, &IRecordParser::get_PriceMultiplier);
    reading.sVolume = MultiplierOf(host, &IRecordParser::get_VolumeMultiplier);
    reading.nCodePage = Get(data, &IDataParser::get_Locale);
    reading.nDividers = Get(records, &IRecordParser::get_FieldDividers);
    reading.nLinesToSkip = Get(records, &IRecordParser::get_LinesToSkip);
    reading.bHeader = GetFlag(data, &IDataParser::get_HasHeader);
    reading.columns = ColumnsOf(host);
    reading.nResolution = Get(records, &IRecordParser::get_Resolution);
    reading.nSize = Get(records, &IRecordParser::get_ResolutionSize);
    reading.bBarEndTime = GetFlag(records, &IRecordParser::get_UseBarsEndTime);
    reading.dtFrom = GetDate(data, &IDataParser::get_StartDateTime);
    reading.dtTo = GetDate(data, &IDataParser::get_EndDateTime);
    return reading;
}

// Dates that are written the same.
bool AreSameDates(DATE a, DATE b)
{
    constexpr double kMillisecond = 1.0 / (24 * 60 * 60 * 1000);
    return std::fabs(a - b) < kMillisecond / 2;
}

// The settings put into a setting where the two readings differ and there is none yet.
template <class Value, class Setting>
bool Add(const Value& wanted, const Value& found, std::optional<Setting>& setting)
{
    if (wanted == found || setting)
        return false;
    setting = wanted;
    return true;
}

bool AddDate(DATE wanted, DATE found, std::optional<DATE>& setting)
{
    if (AreSameDates(wanted, found) || wanted == 0 || setting)
        return false;
    setting = wanted;
    return true;
}

bool AddHeader(const Reading& wanted, const Reading& found, Settings& settings)
{
    if (wanted.bHeader == found.bHeader || settings.header != HeaderChoice::Auto)
        return false;
    settings.header = wanted.bHeader ? HeaderChoice::Yes : HeaderChoice::No;
    return true;
}

bool AddColumn(const Reading& wanted, const Reading& found, Settings& settings)
{
    for (ULONG n = 0; n < wanted.columns.size() && n < found.columns.size(); ++n) {
        const ReadColumn& column = wanted.columns[n];
        const bool bGiven = std::ranges::find(settings.columns, n, &ColumnSetting::nField) !=
                            settings.columns.end();
        if (column == found.columns[n] || bGiven)
            continue;
        settings.columns.push_back({n, column.sType.empty() ? kNoTypeName : column.sType,
                                    column.bDated ? column.sTemplate : std::string()});
        std::ranges::sort(settings.columns, {}, &ColumnSetting::nField);
        return true;
    }
    return false;
}

bool AddResolution(const Host& host, const Reading& wanted, const Reading& found,
                   Settings& settings)
{
    const auto* pRow = host.Offers().FindId(wanted.nResolution);
    const bool bOther = wanted.nResolution != found.nResolution;
    if (pRow && bOther && !settings.sResolution) {
        settings.sResolution = pRow->sName;
        return true;
    }
    return !bOther && Add(wanted.nSize, found.nSize, settings.nSize);
}

// Adds one setting, the first that is missing; false if none is, or none helps.
bool AddSetting(const Host& host, const Reading& wanted, const Reading& found, Settings& settings)
{
    if (Add(wanted.sPrice, found.sPrice, settings.sPriceMultiplier) ||
        Add(wanted.sVolume, found.sVolume, settings.sVolumeMultiplier) ||
        Add(wanted.nCodePage, found.nCodePage, settings.nCodePage) ||
        Add(wanted.nDividers, found.nDividers, settings.nDividers) ||
        Add(wanted.nLinesToSkip, found.nLinesToSkip, settings.nLinesToSkip) ||
        AddHeader(wanted, found, settings) || AddColumn(wanted, found, settings) ||
        AddResolution(host, wanted, found, settings))
        return true;
    if (wanted.bBarEndTime && !found.bBarEndTime && !settings.bBarEndTime) {
        settings.bBarEndTime = true;
        return true;
    }
    return AddDate(wanted.dtFrom, found.dtFrom, settings.dtFrom) ||
           AddDate(wanted.dtTo, found.dtTo, settings.dtTo);
}

Reading ReadAnew(const Host& host, const std::string& path, const Settings& settings)
{
    Host fresh(host.Offers());
    OpenWithSettings(fresh, path, settings);
    return ReadingOf(fresh);
}

} // namespace

Settings FindSettings(const Host& host, const std::string& path, const Settings& start)
{
    const Reading wanted = ReadingOf(host);
    Settings settings = start;
    while (AddSetting(host, wanted, ReadAnew(host, path, settings), settings)) {
    }
    return settings;
}

std::string WhatSettingsLack(const Host& host, const std::string& path, const Settings& settings)
{
    const Reading wanted = ReadingOf(host);
    const Reading found = ReadAnew(host, path, settings);
    std::string lack;
    const auto add = [&](bool bDiffers, const char* pszWhat) {
        if (bDiffers)
            lack += lack.empty() ? pszWhat : fmt::format(", {}", pszWhat);
    };
    add(wanted.nDividers != found.nDividers, "the dividers");
    add(wanted.nLinesToSkip != found.nLinesToSkip || wanted.bHeader != found.bHeader,
        "the start row");
    add(wanted.columns != found.columns, "the columns");
    add(wanted.nResolution != found.nResolution || wanted.nSize != found.nSize, "the resolution");
    add(wanted.bBarEndTime != found.bBarEndTime, "the bars' end time");
    add(!AreSameDates(wanted.dtFrom, found.dtFrom) || !AreSameDates(wanted.dtTo, found.dtTo),
        "the dates");
    add(wanted.sPrice != found.sPrice || wanted.sVolume != found.sVolume, "the multipliers");
    return lack;
}

} // namespace tabulex
