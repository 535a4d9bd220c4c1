// The component builds the columns of a new resolution from the record at position 0. Where that is
// data, the words of the header are lost, and a file that gives the close ahead of the open gets
// them exchanged. So for this one call the header is made the first record: it is found to be a
// header again, and its words count.

#include "tools/tabulex/host/ResolutionSetting.h"

#include <fmt/format.h>

#include "tools/tabulex/host/LayoutSettings.h"
#include "tools/tabulex/host/Properties.h"
#include "tools/tabulex/system/Fault.h"
#include "tools/tabulex/text/Formats.h"
#include "tools/tabulex/text/Suggestion.h"

namespace tabulex {

namespace {

constexpr const char* kResolutionOption = "--resolution";

[[noreturn]] void RefuseResolution(const ResolutionOffers& offers, const std::string& text)
{
    const std::string_view name = WithoutSize(text);
    std::vector<std::string> names;
    for (const auto& offered : offers.Rows())
        names.push_back(offered.sName);
    throw Fault{
        ExitStatus::Usage,
        offers.FindName(name)
            ? fmt::format("--resolution '{}' isn't offered; the size after the '|' is a "
                          "whole number from 1",
                          text)
            : fmt::format("--resolution '{}' isn't offered; {}", text, SuggestOrList(name, names))};
}

// A header that the user has named may not look like one.
bool HasHeaderOfWords(const Host& host)
{
    if (!GetFlag(host.Data(), &IDataParser::get_HasHeader))
        return false;
    const com_ptr<IDataParser> reader = host.LineReader();
    Bstr line;
    return reader->put_Position(Get(host.Data(), &IDataParser::get_HeaderOffset)) == S_OK &&
           reader->get_CurrentRecord(line.put()) == S_OK &&
           host.Records().IsHeader(line.get()) == S_OK;
}

void PutResolution(Host& host, LONG nId)
{
    RequireAccepted(host.Records().put_Resolution(nId), kResolutionOption);
}

} // namespace

AskedResolution RequireResolution(const ResolutionOffers& offers, const std::string& text)
{
    if (const auto* row = offers.FindName(text))
        return {row->nId, {}};
    const std::string_view name = WithoutSize(text);
    const auto* row = offers.FindName(name);
    const auto nSize = name.size() == text.size()
                           ? std::nullopt
                           : ParseWhole(std::string_view(text).substr(name.size() + 1));
    if (!row || !nSize || *nSize == 0 || *nSize > 0x7FFFFFFF)
        RefuseResolution(offers, text);
    return {row->nId, static_cast<LONG>(*nSize)};
}

void ChooseResolution(Host& host, LONG nId)
{
    IDataParser& data = host.Data();
    if (!HasHeaderOfWords(host) || Get(host.Records(), &IRecordParser::get_Resolution) == nId) {
        PutResolution(host, nId);
        return;
    }
    data.put_InvertedDirection(VARIANT_FALSE);
    data.put_HasHeader(VARIANT_FALSE);
    const HRESULT hr = host.Records().put_Resolution(nId);
    data.put_HasHeader(VARIANT_TRUE); // whatever came of it
    data.RefreshDateInfo(VARIANT_FALSE);
    RequireAccepted(hr, kResolutionOption);
}

} // namespace tabulex
