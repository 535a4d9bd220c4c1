#include "tools/tabulex/host/RecordReader.h"

#include "tools/tabulex/host/Properties.h"
#include "tools/tabulex/system/Fault.h"

namespace tabulex {

namespace {

constexpr ULONG kNoField = 0xFFFFFFFF;

ULONG SymbolFieldOf(IRecordParser& records)
{
    ULONG nField = 0;
    return records.GetFieldIndex(TypeSymbol, &nField) == S_OK ? nField : kNoField;
}

} // namespace

RecordReader::RecordReader(const Host& host)
{
    com_ptr<IDispatch> copy, records;
    if (SUCCEEDED(host.Data().Clone(copy.put())))
        m_data = copy.as<IDataParser>();
    if (m_data && SUCCEEDED(m_data->get_RecordParser(records.put())))
        m_records = records.as<IRecordParser>();
    if (!m_records)
        throw Fault{ExitStatus::Refused, "the data parser can't be copied"};
    m_nSymbolField = SymbolFieldOf(*m_records.get());
}

bool RecordReader::Read(ULONGLONG nPosition)
{
    m_sRecord = Bstr();
    if (m_data->put_Position(nPosition) != S_OK ||
        m_data->get_CurrentRecord(m_sRecord.put()) != S_OK)
        return false;
    m_records->Parse(m_sRecord.get());
    return true;
}

std::optional<DATE> RecordReader::Moment() const
{
    Variant value;
    if (m_records->get_CurrentDateTime(value.put()) != S_OK || value.vt != VT_DATE)
        return std::nullopt;
    return value.date;
}

std::string RecordReader::Symbol() const
{
    Bstr text;
    if (m_nSymbolField == kNoField ||
        FAILED(m_records->GetFieldText(m_sRecord.get(), m_nSymbolField, text.put())))
        return {};
    return ToUtf8(text.view());
}

} // namespace tabulex
