#include "tools/tabulex/host/FileLayout.h"

#include "tools/tabulex/host/LastRecord.h"
#include "tools/tabulex/host/Properties.h"

namespace tabulex {

namespace {

std::optional<std::string> RecordAt(IDataParser& data, ULONGLONG nPosition)
{
    Bstr text;
    if (data.put_Position(nPosition) != S_OK || data.get_CurrentRecord(text.put()) != S_OK)
        return std::nullopt;
    return ToUtf8(text.view());
}

std::vector<LayoutColumn> ReadColumns(const Host& host)
{
    std::vector<LayoutColumn> columns;
    const ULONG nCount = Get(host.Records(), &IRecordParser::get_FieldCount);
    for (ULONG i = 0; i < nCount; ++i) {
        Bstr text;
        host.Records().GetFieldTemplate(text.put(), i);
        columns.push_back({host.ColumnName(i), ToUtf8(text.view())});
    }
    return columns;
}

std::vector<std::string> LackedFields(IRecordParser& records)
{
    Variant names;
    records.get_LackedFields(names.put());
    return TextsOf(names);
}

std::optional<LONG> Dividers(IRecordParser& records)
{
    LONG nMask = 0;
    if (FAILED(records.get_FieldDividers(&nMask)))
        return std::nullopt;
    return nMask;
}

} // namespace

// The header is no record and has no position, so it is read as a line.
FileLayout ReadLayout(const Host& host)
{
    IDataParser& data = host.Data();
    IRecordParser& records = host.Records();
    FileLayout layout;
    layout.dtStart = GetDate(data, &IDataParser::get_StartDateTime);
    layout.dtEnd = GetDate(data, &IDataParser::get_EndDateTime);
    layout.nDividers = Dividers(records);
    layout.bHasHeader = GetFlag(data, &IDataParser::get_HasHeader);
    layout.nHeaderOffset = Get(data, &IDataParser::get_HeaderOffset);
    if (layout.bHasHeader)
        layout.sHeader = RecordAt(*host.LineReader().get(), layout.nHeaderOffset);
    layout.bInverted = GetFlag(data, &IDataParser::get_InvertedDirection);
    layout.nResolution = Get(records, &IRecordParser::get_Resolution);
    layout.nResolutionSize = Get(records, &IRecordParser::get_ResolutionSize);
    layout.bValidResolution = records.IsValidResolution() == S_OK;
    layout.lackedFields = LackedFields(records);
    layout.sDuplicatedField = ToUtf8(GetText(records, &IRecordParser::get_DuplicatedField));
    layout.columns = ReadColumns(host);
    layout.sFirstRecord = RecordAt(data, 0);
    layout.sLastRecord = LastRecordText(data);
    return layout;
}

} // namespace tabulex
