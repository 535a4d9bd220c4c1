#include "tools/tabulex/options/OptionValues.h"

#include <algorithm>
#include <charconv>
#include <stdexcept>

#include <fmt/format.h>
#include <fmt/ranges.h>

#include "tools/tabulex/options/KnownNames.h"
#include "tools/tabulex/text/Formats.h"
#include "tools/tabulex/text/Suggestion.h"
#include "tools/tabulex/text/Text.h"

namespace tabulex {

namespace {

// The place of a divider here is the number of its bit.
constexpr std::string_view kDividers = ": ,;|\t";
constexpr ULONGLONG kMostColumns = 100'000; // more than a record's 511 characters can hold

[[noreturn]] void Reject(const std::string& text, std::string_view form)
{
    throw std::invalid_argument(fmt::format("'{}' is not {}", text, form));
}

ResolutionOffer ReadOffer(const std::string& text)
{
    const std::size_t nEquals = text.find('=');
    LONG nId = 0;
    const char* end = text.data() + std::min(nEquals, text.size());
    const auto result = std::from_chars(text.data(), end, nId);
    if (nEquals == text.npos || result.ec != std::errc() || result.ptr != end ||
        nEquals + 1 == text.size())
        Reject(text, "of the form id=name");
    return {nId, text.substr(nEquals + 1)};
}

void RequireType(const std::string& name, ULONGLONG nColumn)
{
    const auto isName = [&](std::string_view type) { return EqualIgnoringCase(type, name); };
    if (isName(kNoneName) || isName(kUnknownName) || std::ranges::any_of(FieldTypeNames(), isName))
        return;
    throw std::invalid_argument(fmt::format("column {}: there is no field type '{}'; {}", nColumn,
                                            name, SuggestOrList(name, FieldTypeNames())));
}

} // namespace

DATE ReadDateTime(const std::string& text)
{
    const auto date = ParseDateTime(text);
    if (!date)
        Reject(text, "a date YYYY-MM-DD or a date-time YYYY-MM-DDTHH:MM[:SS[.mmm]]");
    return *date;
}

LONG ReadDividers(const std::string& text)
{
    LONG nMask = 0;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const bool bEscape = text.compare(i, 2, "\\t") == 0;
        const std::size_t nBit = kDividers.find(bEscape ? '\t' : text[i]);
        if (nBit == kDividers.npos)
            Reject(text, "made of the dividers ':', ' ', ',', ';', '|' and '\\t'");
        nMask |= 1 << nBit;
        i += bEscape ? 1 : 0;
    }
    if (nMask == 0)
        Reject(text, "a list of dividers");
    return nMask;
}

std::string ReadMultiplier(const std::string& text)
{
    const auto& known = MultiplierNames();
    if (std::ranges::find(known, text) == known.end())
        throw std::invalid_argument(fmt::format("there is no multiplier '{}'; use one of {}", text,
                                                fmt::join(known, ", ")));
    return text;
}

ULONG ReadCodePage(const std::string& text)
{
    const auto nNumber = ParseWhole(text);
    if (nNumber && std::ranges::binary_search(CodePageNumbers(), *nNumber))
        return static_cast<ULONG>(*nNumber);
    std::vector<std::string> known;
    for (const ULONG nKnown : CodePageNumbers())
        known.push_back(std::to_string(nKnown));
    const auto near = Suggest(text, known);
    throw std::invalid_argument(
        fmt::format("there is no code page '{}'; {}", text,
                    near ? fmt::format("did you mean '{}'?", *near)
                         : "use a published number, such as 1252, 936 or 65001"));
}

ColumnSetting ReadColumn(const std::string& text)
{
    const std::size_t nEquals = text.find('=');
    const auto nColumn = ParseWhole(std::string_view(text).substr(0, nEquals));
    if (nEquals == text.npos || !nColumn || *nColumn == 0 || *nColumn > kMostColumns)
        Reject(text, "of the form N=TYPE[:TEMPLATE] with N from 1");
    const std::string rest = text.substr(nEquals + 1);
    const std::size_t nColon = std::min(rest.find(':'), rest.size());
    if (nColon == 0)
        Reject(text, "of the form N=TYPE[:TEMPLATE]");
    RequireType(rest.substr(0, nColon), *nColumn);
    return {static_cast<ULONG>(*nColumn - 1), rest.substr(0, nColon),
            rest.substr(std::min(nColon + 1, rest.size()))};
}

Portion ReadPortion(const std::string& text)
{
    const std::size_t nColon = text.find(':');
    const auto nStart = ParseWhole(std::string_view(text).substr(0, nColon));
    const auto nCount =
        nColon == text.npos ? std::nullopt : ParseWhole(std::string_view(text).substr(nColon + 1));
    if (!nStart || !nCount)
        Reject(text, "of the form START:COUNT");
    return {*nStart, *nCount};
}

std::vector<ResolutionOffer> ReadOffers(const std::string& text)
{
    std::vector<ResolutionOffer> offers;
    for (std::size_t nAt = 0; nAt < text.size();) {
        const std::size_t nComma = std::min(text.find(',', nAt), text.size());
        offers.push_back(ReadOffer(text.substr(nAt, nComma - nAt)));
        nAt = nComma + 1;
    }
    return offers;
}

} // namespace tabulex
