// Settings are applied in the order in which the component works: what it samples values with, the
// file, the code page, where the table begins, its columns, the resolution, and only then what
// rests on dates and columns, the symbol and the range. An earlier step undoes later ones, so none
// may change places. What the component accepts without effect is read back, and refused here.

#include "tools/tabulex/host/Settings.h"

#include <algorithm>

#include <fmt/format.h>

#include "interfaces/IValueMultiplier.h"
#include "tools/tabulex/host/ColumnSettings.h"
#include "tools/tabulex/host/Environment.h"
#include "tools/tabulex/host/LayoutSettings.h"
#include "tools/tabulex/host/Properties.h"
#include "tools/tabulex/host/RecordReader.h"
#include "tools/tabulex/host/ResolutionSetting.h"
#include "tools/tabulex/system/Fault.h"
#include "tools/tabulex/text/Formats.h"

namespace tabulex {

using IQRL_TabulexConverter::IValueMultiplier;

namespace {

constexpr const char* kNoDates =
    "{} is refused: the dates of the file can't be read; name their column by --column N=Date";

// Dates differ by less where they are written the same.
constexpr DATE kHalfMillisecond = 0.5 / (24 * 60 * 60 * 1000);

[[noreturn]] void Refuse(std::string message)
{
    throw Fault{ExitStatus::Refused, std::move(message)};
}

// The multipliers are the component's own; they are set by the names that they list.
void SetMultiplier(IDispatch* object, const std::string& name, std::string_view option)
{
    com_ptr<IValueMultiplier> multiplier;
    RequireAccepted(query(object, multiplier), option);
    RequireAccepted(multiplier->put_Current(Bstr(FromUtf8(name)).get()), option);
}

void ApplyMultipliers(Host& host, const Settings& settings)
{
    struct Row
    {
        const std::optional<std::string>& sName;
        HRESULT (STDMETHODCALLTYPE IRecordParser::*get)(IDispatch**);
        const char* pszOption;
    };
    const Row rows[] = {
        {settings.sPriceMultiplier, &IRecordParser::get_PriceMultiplier, "--price-multiplier"},
        {settings.sVolumeMultiplier, &IRecordParser::get_VolumeMultiplier, "--volume-multiplier"},
    };
    for (const Row& row : rows) {
        if (!row.sName)
            continue;
        com_ptr<IDispatch> multiplier;
        RequireAccepted((host.Records().*row.get)(multiplier.put()), row.pszOption);
        SetMultiplier(multiplier.get(), *row.sName, row.pszOption);
    }
}

// Some resolutions have a fixed size and keep it without a failure.
void ApplySize(Host& host, LONG nSize)
{
    RequireAccepted(host.Records().put_ResolutionSize(nSize), "--size");
    const LONG nStands = Get(host.Records(), &IRecordParser::get_ResolutionSize);
    if (nStands != nSize)
        Refuse(
            fmt::format("--size {} is refused: the size of this resolution is {}; leave --size out",
                        nSize, nStands));
}

void ApplyResolution(Host& host, const Settings& settings)
{
    std::optional<LONG> nSize;
    if (settings.sResolution) {
        const auto asked = RequireResolution(host.Offers(), *settings.sResolution);
        ChooseResolution(host, asked.nId);
        ApplyColumns(host, settings.columns); // choosing a resolution assigned them anew
        nSize = asked.nSize;
    }
    if (settings.nSize)
        nSize = settings.nSize;
    if (nSize)
        ApplySize(host, *nSize);
}

// Without the column the component would let every record through.
void ApplySymbol(Host& host, const Settings& settings)
{
    if (!settings.sSymbol)
        return;
    if (!host.HasColumn(TypeSymbol))
        Refuse("--symbol is refused: the file has no Symbol column; name one by --column N=Symbol");
    RequireAccepted(host.Data().put_SymbolName(Bstr(FromUtf8(*settings.sSymbol)).get()),
                    "--symbol");
}

// Where the range lies that was asked for, if no record is in it.
std::string PlaceOutside(const Settings& settings, DATE dtFirst, DATE dtLast)
{
    if (settings.dtFrom && *settings.dtFrom > dtLast + kHalfMillisecond)
        return fmt::format("the last record is of {}, ahead of --from {}",
                           DateTimeText(dtLast, ' '), DateTimeText(*settings.dtFrom, ' '));
    if (settings.dtTo && *settings.dtTo < dtFirst - kHalfMillisecond)
        return fmt::format("the first record is of {}, behind --to {}", DateTimeText(dtFirst, ' '),
                           DateTimeText(*settings.dtTo, ' '));
    return {};
}

// The component moves an end of the range into the file's own range, which it takes from the
// records at both ends of the file. While one of those can't be read there is no such limit: the
// first record behind as many lines as no file has, and in a file that runs backwards the last one.
// The other limit is the date of the file's last line in both cases, from above and from below.
void PutFreely(IDataParser& data, HRESULT (STDMETHODCALLTYPE IDataParser::*put)(VARIANT), DATE date)
{
    data.put_InvertedDirection(VARIANT_FALSE);
    if ((data.*put)(Variant::FromDate(date)) == S_OK)
        return;
    data.put_InvertedDirection(VARIANT_TRUE);
    (data.*put)(Variant::FromDate(date));
}

// The first and the last line of a file in blocks don't tell its direction; its first lines do.
bool BeginsBackwards(Host& host)
{
    IDataParser& data = host.Data();
    const bool bInverted = GetFlag(data, &IDataParser::get_InvertedDirection);
    data.put_InvertedDirection(VARIANT_FALSE);
    RecordReader reader(host);
    const auto first = reader.Read(0) ? reader.Moment() : std::nullopt;
    const auto second = reader.Read(1) ? reader.Moment() : std::nullopt;
    return first && second && *first != *second ? *second < *first : bInverted;
}

// Sets the range as it was asked for, and an end that wasn't to that of the calendar. A whole file
// has no end here, since the component would stop at the first line behind it.
void PutRange(Host& host, const Settings& settings)
{
    constexpr ULONG kBehindEveryLine = 0xFFFFFFF0;
    constexpr DATE kFirstDay = 2;                 // 1900-01-01
    constexpr DATE kLastMoment = 0xFFFF + 0.9999; // days are delivered in 16 bits
    IDataParser& data = host.Data();
    const ULONG nOffset = Get(data, &IDataParser::get_HeaderOffset);
    const bool bInverted = settings.bWholeFile ? BeginsBackwards(host)
                                               : GetFlag(data, &IDataParser::get_InvertedDirection);
    data.put_HeaderOffset(kBehindEveryLine);
    PutFreely(data, &IDataParser::put_StartDateTime,
              std::clamp(settings.dtFrom.value_or(kFirstDay), kFirstDay, kLastMoment));
    PutFreely(data, &IDataParser::put_EndDateTime,
              settings.bWholeFile
                  ? kLastMoment
                  : std::clamp(settings.dtTo.value_or(kLastMoment), kFirstDay, kLastMoment));
    data.put_HeaderOffset(nOffset);
    data.put_InvertedDirection(VARIANT_FALSE);
    if (bInverted)
        data.put_InvertedDirection(VARIANT_TRUE);
    data.put_Position(0);
}

// A range that the component would move is put past it.
std::string ApplyRange(Host& host, const Settings& settings)
{
    const DATE dtFirst = GetDate(host.Data(), &IDataParser::get_StartDateTime);
    const DATE dtLast = GetDate(host.Data(), &IDataParser::get_EndDateTime);
    if (settings.dtFrom && settings.dtTo && *settings.dtFrom > *settings.dtTo)
        Refuse("--from is after --to");
    const bool bKnown = dtLast != 0 && !settings.bWholeFile;
    const std::string place = bKnown ? PlaceOutside(settings, dtFirst, dtLast) : std::string();
    if (settings.bWholeFile || !place.empty()) {
        PutRange(host, settings);
        return place;
    }
    if (settings.dtFrom &&
        FAILED(host.Data().put_StartDateTime(Variant::FromDate(*settings.dtFrom))))
        Refuse(fmt::format(kNoDates, "--from"));
    if (settings.dtTo && FAILED(host.Data().put_EndDateTime(Variant::FromDate(*settings.dtTo))))
        Refuse(fmt::format(kNoDates, "--to"));
    return {};
}

} // namespace

bool AsksForRange(const Settings& settings)
{
    return settings.dtFrom || settings.dtTo;
}

Opening OpenWithSettings(Host& host, const std::string& path, const Settings& settings)
{
    Opening opening;
    if (!settings.sEnvironment.empty())
        ReadEnvironment(host, settings.sEnvironment);
    ApplyMultipliers(host, settings); // opening samples values, so they come first
    host.Open(path);
    if (settings.nCodePage)
        RequireAccepted(host.Data().put_Locale(*settings.nCodePage), "--code-page");
    ApplyStart(host, settings, opening.warnings);
    // Before the resolution, whose size is sampled from the dates.
    ApplyColumns(host, settings.columns);
    ApplyResolution(host, settings);
    if (settings.bBarEndTime)
        RequireAccepted(host.Records().put_UseBarsEndTime(VARIANT_TRUE), "--bar-end-time");
    // Not each of these reads the dates of the file as it is understood by now, nor which of its
    // columns is the symbol.
    host.Data().RefreshDateInfo(VARIANT_FALSE);
    // Last: whatever changes the columns sets the range to that of the file.
    ApplySymbol(host, settings);
    opening.sRangeOutside = ApplyRange(host, settings);
    return opening;
}

} // namespace tabulex
