// A run tells only the place of a row among those of its batch, and lines that it left out make
// that place too early. So the record is looked for from there to the end of the batch, by its day.
// The first one of that day may be a neighbour of the row, which serves as well for an example.

#include "tools/tabulex/review/RecordFinder.h"

#include <cmath>

#include "tools/tabulex/account/ReportedLine.h"
#include "tools/tabulex/host/Properties.h"
#include "tools/tabulex/review/LayoutFacts.h"

namespace tabulex {

namespace {

template <class Interface>
com_ptr<Interface> CopyOf(Interface& object)
{
    com_ptr<IDispatch> copy;
    return SUCCEEDED(object.Clone(copy.put())) ? copy.as<Interface>() : com_ptr<Interface>();
}

} // namespace

RecordFinder::RecordFinder(const Host& host, LineMap* lines)
    : m_host(host), m_lines(lines), m_data(CopyOf(host.Data())), m_records(CopyOf(host.Records()))
{}

std::optional<RecordFinder::Found> RecordFinder::Find(const DateOrderReview::Place& place,
                                                      ULONG nField)
{
    for (ULONGLONG n = place.nRow; m_data && m_records && n < kBatchLines; ++n) {
        const ULONGLONG nPosition = place.nBatchStart + n;
        Bstr record;
        Variant value;
        if (m_data->put_Position(nPosition) != S_OK ||
            m_data->get_CurrentRecord(record.put()) != S_OK)
            return std::nullopt;
        if (SUCCEEDED(m_records->Parse(record.get())) &&
            m_records->GetFieldValue(value.put(), nField) == S_OK && value.vt == VT_DATE &&
            static_cast<LONG>(std::floor(value.date)) == place.nDay)
            return Found{m_lines->NumberOf(LineOf(nPosition)),
                         ShownText(CellAt(nPosition, nField))};
    }
    return std::nullopt;
}

std::string RecordFinder::CellAt(ULONGLONG nPosition, ULONG nField)
{
    Bstr record;
    Bstr cell;
    if (!m_data || !m_records || m_data->put_Position(nPosition) != S_OK ||
        m_data->get_CurrentRecord(record.put()) != S_OK)
        return {};
    m_records->GetFieldText(record.get(), nField, cell.put());
    return ToUtf8(cell.view());
}

ULONGLONG RecordFinder::LineOf(ULONGLONG nPosition) const
{
    IDataParser& data = m_host.Data();
    const ULONGLONG nBefore = ULONGLONG(Get(data, &IDataParser::get_HeaderOffset)) +
                              (GetFlag(data, &IDataParser::get_HasHeader) ? 1 : 0);
    if (!GetFlag(data, &IDataParser::get_InvertedDirection))
        return nBefore + nPosition;
    ULONGLONG nRecords = 0; // known, since such a file is counted ahead
    VARIANT_BOOL bComplete = VARIANT_FALSE;
    data.GetCount(&nRecords, &bComplete);
    return nBefore + nRecords - nPosition - 1;
}

} // namespace tabulex
