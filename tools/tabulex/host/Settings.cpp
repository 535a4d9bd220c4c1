#include "tools/tabulex/host/Settings.h"

#include <fmt/format.h>
#include <fmt/ranges.h>

#include "interfaces/IValueMultiplier.h"
#include "tools/tabulex/host/ColumnSettings.h"
#include "tools/tabulex/host/Environment.h"
#include "tools/tabulex/host/Properties.h"
#include "tools/tabulex/system/Fault.h"
#include "tools/tabulex/text/Formats.h"
#include "tools/tabulex/text/Suggestion.h"

namespace tabulex {

using IQRL_TabulexConverter::IValueMultiplier;

namespace {

constexpr const char* kNoDates =
    "{} is refused: the dates of the file can't be read; name their column by --column N=Date";

[[noreturn]] void Refuse(std::string message)
{
    throw Fault{ExitStatus::Refused, std::move(message)};
}

// The component gives S_FALSE and E_FAIL where the file can't be read that way.
void RequireAccepted(HRESULT hr, std::string_view option)
{
    if (hr != S_OK)
        Refuse(fmt::format("{} is refused: {}", option,
                           hr == S_FALSE || hr == E_FAIL
                               ? "the file can't be read that way; see 'tabulex inspect'"
                               : HexOf(hr)));
}

// The multipliers are the component's own; they are set by the names that they list.
void SetMultiplier(IDispatch* object, const std::string& name, std::string_view option)
{
    com_ptr<IValueMultiplier> multiplier;
    RequireAccepted(query(object, multiplier), option);
    if (SUCCEEDED(multiplier->put_Current(Bstr(FromUtf8(name)).get())))
        return;
    Variant names;
    multiplier->get_TransformNames(names.put());
    Refuse(fmt::format("{} '{}' is unknown; use one of {}", option, name,
                       fmt::join(TextsOf(names), ", ")));
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

// After each of these the component finds the columns anew.
void ApplyLayout(Host& host, const Settings& settings)
{
    if (settings.nDividers)
        RequireAccepted(host.Records().put_FieldDividers(*settings.nDividers), "--dividers");
    if (settings.nLinesToSkip)
        RequireAccepted(host.Records().put_LinesToSkip(*settings.nLinesToSkip), "--lines-to-skip");
}

// "Minutes|5" as the offered name "Minutes" and the size 5, unless the whole is offered.
const ResolutionOffers::Row* FindResolution(const Host& host, std::string_view text,
                                            std::optional<LONG>& nSize)
{
    if (const auto* row = host.Offers().FindName(text))
        return row;
    const std::string_view name = WithoutSize(text);
    if (name.size() == text.size())
        return nullptr;
    const auto size = ParseWhole(text.substr(name.size() + 1));
    if (!size || *size == 0 || *size > 0x7FFFFFFF)
        return nullptr;
    nSize = static_cast<LONG>(*size);
    return host.Offers().FindName(name);
}

[[noreturn]] void RefuseResolution(const Host& host, const std::string& text)
{
    const std::string_view name = WithoutSize(text);
    if (host.Offers().FindName(name))
        Refuse(fmt::format("--resolution '{}' isn't offered; the size after the '|' is a whole "
                           "number from 1",
                           text));
    std::vector<std::string> names;
    for (const auto& offered : host.Offers().Rows())
        names.push_back(offered.sName);
    Refuse(fmt::format("--resolution '{}' isn't offered; {}", text, SuggestOrList(name, names)));
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
        const auto* row = FindResolution(host, *settings.sResolution, nSize);
        if (!row)
            RefuseResolution(host, *settings.sResolution);
        RequireAccepted(host.Records().put_Resolution(row->nId), "--resolution");
        ApplyColumns(host, settings.columns); // choosing a resolution assigned them anew
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

// The component moves a range outside of the file's own to the nearest end of that.
void WarnOfClamping(Host& host, const Settings& settings, DATE dtFirst, DATE dtLast,
                    Console& console)
{
    const DATE dtStart = GetDate(host.Data(), &IDataParser::get_StartDateTime);
    const DATE dtEnd = GetDate(host.Data(), &IDataParser::get_EndDateTime);
    if (settings.dtFrom && *settings.dtFrom > dtLast)
        console.Warning(
            fmt::format("--from is after the last record; {} is used", DateTimeText(dtStart)));
    if (settings.dtTo && *settings.dtTo < dtFirst)
        console.Warning(
            fmt::format("--to is before the first record; {} is used", DateTimeText(dtEnd)));
}

void ApplyRange(Host& host, const Settings& settings, Console& console)
{
    const DATE dtFirst = GetDate(host.Data(), &IDataParser::get_StartDateTime);
    const DATE dtLast = GetDate(host.Data(), &IDataParser::get_EndDateTime);
    if (settings.dtFrom && settings.dtTo && *settings.dtFrom > *settings.dtTo)
        Refuse("--from is after --to");
    if (settings.dtFrom &&
        FAILED(host.Data().put_StartDateTime(Variant::FromDate(*settings.dtFrom))))
        Refuse(fmt::format(kNoDates, "--from"));
    if (settings.dtTo && FAILED(host.Data().put_EndDateTime(Variant::FromDate(*settings.dtTo))))
        Refuse(fmt::format(kNoDates, "--to"));
    WarnOfClamping(host, settings, dtFirst, dtLast, console);
}

} // namespace

void OpenWithSettings(Host& host, const std::string& path, const Settings& settings,
                      Console& console)
{
    if (!settings.sEnvironment.empty())
        ReadEnvironment(host, settings.sEnvironment);
    ApplyMultipliers(host, settings); // opening samples values, so they come first
    host.Open(path);
    if (settings.nCodePage)
        RequireAccepted(host.Data().put_Locale(*settings.nCodePage), "--code-page");
    ApplyLayout(host, settings);
    // Before the resolution, whose size is sampled from the dates.
    ApplyColumns(host, settings.columns);
    ApplyResolution(host, settings);
    if (settings.bBarEndTime)
        RequireAccepted(host.Records().put_UseBarsEndTime(VARIANT_TRUE), "--bar-end-time");
    // Last: whatever changes the columns sets the range to that of the file.
    ApplySymbol(host, settings);
    ApplyRange(host, settings, console);
}

} // namespace tabulex
