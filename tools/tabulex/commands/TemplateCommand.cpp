#include <algorithm>

#include <fmt/format.h>
#include <nlohmann/json.hpp>

#include "tools/tabulex/commands/Commands.h"
#include "tools/tabulex/host/Properties.h"
#include "tools/tabulex/host/ReadCheck.h"
#include "tools/tabulex/output/CellText.h"
#include "tools/tabulex/output/Results.h"
#include "tools/tabulex/output/TemporaryFile.h"
#include "tools/tabulex/system/Fault.h"

namespace tabulex {

namespace {

using nlohmann::ordered_json;

// A template is tried on a column, and columns come from a file. Without dividers this file
// has a single column.
constexpr std::string_view kOneColumn = "10\n";
constexpr LONG kNoDividers = 0;

struct Trial
{
    bool bValid = false;
    Variant value;
    std::string sReason;
};

void RequireSuccess(HRESULT hr, std::string_view what)
{
    if (FAILED(hr))
        throw Fault{ExitStatus::Refused, fmt::format("{} is refused: {}", what, HexOf(hr))};
}

// Only Date and Time columns can be given a template; the other types have a fixed one.
void SetTemplate(const Host& host, unsigned uiType, const std::string& sTemplate)
{
    if (uiType == TypeDate || uiType == TypeTime) {
        if (sTemplate.empty())
            throw Fault{ExitStatus::Usage, "the template is empty; give one such as '*y-*m-*d'"};
        RequireSuccess(host.Records().SetFieldTemplate(Bstr(FromUtf8(sTemplate)).get(), 0),
                       "the template");
        return;
    }
    Bstr fixed;
    host.Records().GetFieldTemplate(fixed.put(), 0);
    const char* pszPattern = uiType == TypeSymbol            ? "*"
                             : ToUtf8(fixed.view()) == "int" ? "*i"
                                                             : "*i.*f";
    if (sTemplate != pszPattern && sTemplate != ToUtf8(fixed.view()))
        throw Fault{ExitStatus::Usage,
                    fmt::format("the only template of this type is '{}'", pszPattern)};
}

// The component finds no fault in the hour 24: it is the first hour of the next day. But it
// gives no value where there is no date that could go on to that day.
std::string ReasonOf(const Host& host, const std::string& text)
{
    Bstr reason;
    if (host.Records().GetFieldError(reason.put(), 0) == S_FALSE)
        return fmt::format("\"{}\" has an hour above 23, which has no value without a date.", text);
    return ToUtf8(reason.view());
}

// The whole text is the column: it is normalised as a field of a file would be.
Trial Try(const Host& host, const std::string& text)
{
    Trial trial;
    RequireSuccess(host.Records().Parse(Bstr(FromUtf8(text)).get()), "the text");
    trial.bValid = host.Records().GetFieldValue(trial.value.put(), 0) == S_OK;
    if (!trial.bValid)
        trial.sReason = ReasonOf(host, text);
    return trial;
}

std::string ValueText(const Trial& trial, unsigned uiType)
{
    DateText dates;
    std::string text;
    AppendCell(text, uiType == TypeDate ? ColumnKind::Date : ColumnKind::Time, trial.value, dates);
    return text;
}

ordered_json JsonOf(const Trial& trial, unsigned uiType)
{
    ordered_json json = {{"valid", trial.bValid}};
    if (!trial.bValid) {
        json["value"] = nullptr;
        json["reason"] = trial.sReason;
    } else if (trial.value.vt == VT_R8) {
        json["value"] = trial.value.dblVal;
    } else if (trial.value.vt == VT_I8) {
        json["value"] = trial.value.llVal;
    } else {
        json["value"] = ValueText(trial, uiType);
    }
    return json;
}

} // namespace

ExitStatus TryTemplate(const Context& context)
{
    const TemplateOptions& options = context.options.trial;
    const TemporaryFile file(kOneColumn); // outlives who holds it open
    Host host(context.offers);
    const unsigned uiType = host.RequireType(options.sType, "TYPE");
    const Trial trial = OnReadFile(host, [&] {
        host.Open(file.Path());
        RequireSuccess(host.Records().put_FieldDividers(kNoDividers), "an undivided line");
        RequireSuccess(host.Records().SetFieldType(0, static_cast<LONG>(uiType)), "the type");
        SetTemplate(host, uiType, options.sTemplate);
        return Try(host, options.sText);
    });
    Results results;
    if (context.options.bJson)
        results.Add(JsonOf(trial, uiType).dump() + '\n');
    else if (trial.bValid)
        results.Add(ValueText(trial, uiType) + '\n');
    else // the component's text begins with a blank
        context.console.Error(
            std::string_view(trial.sReason)
                .substr(std::min(trial.sReason.find_first_not_of(' '), trial.sReason.size())));
    results.Finish();
    return trial.bValid ? ExitStatus::Done : ExitStatus::Refused;
}

} // namespace tabulex
