// The component looks for the columns in the record that comes first, and keeps from the last look
// its dividers, its dates and times, the direction and whether there is a header. When the user
// names another first line, all of that was found in the wrong one, and is taken back before:
//
// - The direction and the header, so that the record that comes first is the line that was named.
//   If it looks like a header, it becomes one.
// - Dates and times, by unassigning their columns, since a column that is known to be one is kept.
// - Dividers that the user hasn't given, by a reset, and by the line itself with a character at its
//   end that no text has: the component finds the dividers in it, and goes no further.

#include "tools/tabulex/host/LayoutSettings.h"

#include <fmt/format.h>

#include "tools/tabulex/host/Properties.h"
#include "tools/tabulex/system/Fault.h"

namespace tabulex {

namespace {

constexpr OLECHAR kNoTextCharacter = 1;
constexpr const char* kUselessHeader =
    "a field of the header looks like data, so its words don't say what the columns are; look at "
    "them with 'tabulex preview', and name them by --column";

// The line, from 0; throws Fault if the file ends before.
Bstr RequireLine(const Host& host, ULONG nLine)
{
    const com_ptr<IDataParser> reader = host.LineReader();
    Bstr text;
    if (reader->put_Position(nLine) != S_OK || reader->get_CurrentRecord(text.put()) != S_OK)
        throw Fault{ExitStatus::Refused,
                    fmt::format("--lines-to-skip {}: the file has no lines behind these", nLine)};
    return text;
}

void ForgetDividers(const Host& host, const Bstr& line)
{
    string_t marked = line.str();
    marked += kNoTextCharacter;
    host.Records().Reset();
    host.Records().Parse(Bstr(marked).get());
}

void ForgetDates(const Host& host)
{
    const ULONG nCount = Get(host.Records(), &IRecordParser::get_FieldCount);
    for (ULONG n = 0; n < nCount; ++n)
        if (const unsigned uiType = host.ColumnType(n); uiType == TypeDate || uiType == TypeTime)
            host.Records().SetFieldType(n, static_cast<LONG>(kNoType));
}

// Whether the line is to be left out when the columns are looked for.
bool IsPassedOver(HeaderChoice choice, bool bLooksLikeHeader)
{
    return choice == HeaderChoice::Auto  ? false
           : choice == HeaderChoice::Yes ? !bLooksLikeHeader
                                         : bLooksLikeHeader;
}

void StartAt(Host& host, ULONG nLine, const Settings& settings, std::vector<std::string>& warnings)
{
    IDataParser& data = host.Data();
    const Bstr line = RequireLine(host, nLine);
    if (settings.nDividers)
        ForgetDates(host);
    else
        ForgetDividers(host, line);
    const bool bLooksLikeHeader = host.Records().IsHeader(line.get()) == S_OK;
    const bool bPassedOver = IsPassedOver(settings.header, bLooksLikeHeader);
    data.put_InvertedDirection(VARIANT_FALSE);
    data.put_HasHeader(bPassedOver ? VARIANT_TRUE : VARIANT_FALSE);
    RequireAccepted(host.Records().put_LinesToSkip(nLine),
                    settings.nLinesToSkip ? "--lines-to-skip" : "--header");
    if (settings.header == HeaderChoice::No)
        data.put_HasHeader(VARIANT_FALSE);
    if (settings.header == HeaderChoice::Yes && bPassedOver)
        warnings.push_back(kUselessHeader);
}

// Without a number of lines, a header that is asked for and found may lie where it was found.
bool IsAsFound(const Host& host, const Settings& settings)
{
    if (settings.nLinesToSkip)
        return false;
    const bool bFound = GetFlag(host.Data(), &IDataParser::get_HasHeader);
    return settings.header == HeaderChoice::Auto ||
           bFound == (settings.header == HeaderChoice::Yes);
}

} // namespace

// The component gives S_FALSE and E_FAIL where the file can't be read that way.
void RequireAccepted(HRESULT hr, std::string_view option)
{
    if (hr == S_OK)
        return;
    throw Fault{ExitStatus::Refused,
                fmt::format("{} is refused: {}", option,
                            hr == S_FALSE || hr == E_FAIL
                                ? "the file can't be read that way; see 'tabulex inspect'"
                                : HexOf(hr))};
}

void ApplyStart(Host& host, const Settings& settings, std::vector<std::string>& warnings)
{
    if (settings.nDividers)
        RequireAccepted(host.Records().put_FieldDividers(*settings.nDividers), "--dividers");
    if (!IsAsFound(host, settings))
        StartAt(host, settings.nLinesToSkip.value_or(0), settings, warnings);
}

} // namespace tabulex
