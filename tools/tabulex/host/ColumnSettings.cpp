// A template that the user doesn't give is found as the component would: the type's own ones in
// their order, the first that reads both ends of the file. One that the column had already is kept
// if the type stays, as detection has looked at more lines than these two. Which record is the last
// is asked anew for each template, as it hangs on the dates that are read.

#include "tools/tabulex/host/ColumnSettings.h"

#include <fmt/format.h>

#include "tools/tabulex/host/LastRecord.h"
#include "tools/tabulex/host/Properties.h"
#include "tools/tabulex/system/Fault.h"

namespace tabulex {

namespace {

std::string TemplateOf(const Host& host, ULONG nField)
{
    Bstr text;
    host.Records().GetFieldTemplate(text.put(), nField);
    return ToUtf8(text.view());
}

void SetTemplate(const Host& host, const ColumnSetting& column, const std::string& sTemplate)
{
    const HRESULT hr =
        host.Records().SetFieldTemplate(Bstr(FromUtf8(sTemplate)).get(), column.nField);
    if (FAILED(hr))
        throw Fault{ExitStatus::Refused, fmt::format("--column {}: template '{}' is refused: {}",
                                                     column.nField + 1, sTemplate, HexOf(hr))};
}

// Whether the column's template reads one record of the file.
bool ReadsRecord(const Host& host, ULONG nField, const Bstr& record)
{
    Variant value;
    return SUCCEEDED(host.Records().Parse(record.get())) &&
           host.Records().GetFieldValue(value.put(), nField) == S_OK;
}

bool ReadsFirst(const Host& host, ULONG nField)
{
    Bstr record;
    return host.Data().put_Position(0) == S_OK &&
           SUCCEEDED(host.Data().get_CurrentRecord(record.put())) &&
           ReadsRecord(host, nField, record);
}

// Asked for each template anew, since with another one the file may run backwards.
bool ReadsLast(const Host& host, ULONG nField)
{
    const auto record = LastRecordText(host.Data());
    return record && ReadsRecord(host, nField, Bstr(FromUtf8(*record)));
}

// Two records far apart show which is the day and which the month more often than two
// neighbours do.
bool ReadsFirstAndLast(const Host& host, ULONG nField)
{
    return ReadsFirst(host, nField) && ReadsLast(host, nField);
}

// Tries the type's templates in their own order.
void FindTemplate(const Host& host, const ColumnSetting& column)
{
    Variant templates;
    host.Records().GetTemplates(templates.put(), Bstr(FromUtf8(column.sType)).get());
    auto candidates = TextsOf(templates);
    if (!candidates.empty())
        candidates.pop_back(); // an empty entry, under which users type one of their own
    for (const std::string& candidate : candidates) {
        SetTemplate(host, column, candidate);
        if (ReadsFirstAndLast(host, column.nField))
            return;
    }
    throw Fault{ExitStatus::Refused,
                fmt::format("--column {0}: no {1} template reads it; give one as {0}={1}:TEMPLATE",
                            column.nField + 1, column.sType)};
}

void RequireColumn(const Host& host, const ColumnSetting& column)
{
    const ULONG nCount = Get(host.Records(), &IRecordParser::get_FieldCount);
    if (column.nField >= nCount)
        throw Fault{ExitStatus::Refused,
                    fmt::format("--column {}: the file has {} columns", column.nField + 1, nCount)};
}

void SetType(const Host& host, const ColumnSetting& column, unsigned uiType)
{
    Bstr name; // null for none
    if (uiType != kNoType)
        name = Bstr(FromUtf8(host.TypeNames()[uiType]));
    const HRESULT hr = host.Records().SetFieldName(column.nField, name.get());
    if (FAILED(hr))
        throw Fault{ExitStatus::Refused, fmt::format("--column {}: type {} is refused: {}",
                                                     column.nField + 1, column.sType, HexOf(hr))};
}

// Setting a type empties the template, so the one from before is set again.
void ApplyDated(const Host& host, ColumnSetting column, unsigned uiType)
{
    column.sType = host.TypeNames()[uiType];
    if (column.sTemplate.empty() && host.ColumnType(column.nField) == uiType)
        column.sTemplate = TemplateOf(host, column.nField);
    SetType(host, column, uiType);
    if (column.sTemplate.empty())
        FindTemplate(host, column);
    else
        SetTemplate(host, column, column.sTemplate);
}

void ApplyColumn(const Host& host, const ColumnSetting& column)
{
    RequireColumn(host, column);
    const bool bNone =
        EqualIgnoringCase(column.sType, kNoneName) || EqualIgnoringCase(column.sType, kUnknownName);
    const unsigned uiType =
        bNone ? kNoType
              : host.RequireType(column.sType, fmt::format("--column {}", column.nField + 1));
    if (uiType == TypeDate || uiType == TypeTime) {
        ApplyDated(host, column, uiType);
        return;
    }
    if (!column.sTemplate.empty())
        throw Fault{ExitStatus::Refused,
                    fmt::format("--column {}: only Date and Time columns take a template",
                                column.nField + 1)};
    SetType(host, column, uiType);
}

} // namespace

void ApplyColumns(Host& host, const std::vector<ColumnSetting>& columns)
{
    for (const ColumnSetting& column : columns)
        ApplyColumn(host, column);
}

} // namespace tabulex
