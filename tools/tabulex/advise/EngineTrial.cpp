// The rows of the trial come as a portion of all records: such a run shows no box and asks nothing,
// and passes over bad lines. How many there were shows by the number of records.

#include "tools/tabulex/advise/EngineTrial.h"

#include <cmath>
#include <new>

#include "intake/Intake.h"
#include "tools/tabulex/advise/ReadingSettings.h"
#include "tools/tabulex/clean/CleanFile.h"
#include "tools/tabulex/host/BatchCells.h"
#include "tools/tabulex/host/Columns.h"
#include "tools/tabulex/host/DataSink.h"
#include "tools/tabulex/host/Host.h"
#include "tools/tabulex/host/SettingsCheck.h"
#include "tools/tabulex/output/TemporaryFile.h"
#include "tools/tabulex/system/Fault.h"
#include "tools/tabulex/system/Interrupt.h"
#include "tools/tabulex/text/Text.h"

namespace tabulex {

namespace {

using advice::ReadRow;
using advice::ReadRows;

constexpr LONGLONG kMillisecondsOfDay = 86'400'000;
constexpr LONGLONG kDayOf1970 = 25569; // as a DATE

double NumberOf(const VARIANT& cell)
{
    switch (cell.vt) {
    case VT_R8:
        return cell.dblVal;
    case VT_I8:
        return static_cast<double>(cell.llVal);
    case VT_I4:
        return cell.lVal;
    default:
        return std::nan("");
    }
}

// Keeps the rows of a trial.
class TrialSink : public DataSink
{
public:
    explicit TrialSink(const Host& host) : m_columns(DeliveredColumns(host))
    {
        for (const Column& column : m_columns) {
            m_rows.bSymbols = m_rows.bSymbols || column.kind == ColumnKind::Symbol;
            m_rows.bTimes = m_rows.bTimes || column.kind == ColumnKind::Time;
            if (IsNumber(column.kind))
                m_rows.columns.push_back(column.sName);
        }
    }

    ReadRows& Rows() { return m_rows; }

    HRESULT STDMETHODCALLTYPE DataChanged(VARIANT Data) override
    try {
        if (Data.vt != (VT_ARRAY | VT_VARIANT) || SafeArrayGetDim(Data.parray) != 2)
            return E_UNEXPECTED;
        const BatchCells cells(Data.parray);
        if (cells.Columns() != m_columns.size() || (cells.Rows() > 0 && !cells.Data()))
            return E_UNEXPECTED;
        for (ULONGLONG i = 0; i < cells.Rows(); ++i)
            TakeRow(cells.Data() + i * m_columns.size());
        return Interrupted() ? E_ABORT : S_OK;
    } catch (const std::bad_alloc&) {
        return E_OUTOFMEMORY;
    }

private:
    void TakeRow(const VARIANT* cells)
    {
        ReadRow row;
        for (std::size_t i = 0; i < m_columns.size(); ++i)
            TakeCell(m_columns[i].kind, cells[i], row);
        m_rows.rows.push_back(std::move(row));
    }

    static void TakeCell(ColumnKind kind, const VARIANT& cell, ReadRow& row)
    {
        if (kind == ColumnKind::Date)
            row.nMoment += (static_cast<USHORT>(cell.iVal) - kDayOf1970) * kMillisecondsOfDay;
        else if (kind == ColumnKind::Time)
            row.nMoment += cell.lVal;
        else if (kind == ColumnKind::Symbol)
            row.sSymbol = cell.vt == VT_BSTR ? ToUtf8(TextOf(cell.bstrVal)) : std::string();
        else
            row.values.push_back(NumberOf(cell));
    }

    std::vector<Column> m_columns;
    ReadRows m_rows;
};

void UndoScales(const intake::Recipe& recipe, ReadRows& rows)
{
    for (const intake::Scale& scale : recipe.scales)
        for (std::size_t i = 0; i < rows.columns.size(); ++i)
            if (rows.columns[i] == scale.sHeading)
                for (ReadRow& row : rows.rows)
                    row.values[i] /= std::pow(10.0, scale.nDigits);
}

ReadRows RowsOf(Host& host)
{
    const Deferral deferral;
    const ULONGLONG nRecords = host.CountRecords();
    const com_ptr<TrialSink> sink(new TrialSink(host));
    if (SUCCEEDED(host.Front().DoConvertPortion(0, sink.get(), 0, nRecords)))
        PumpToTheEnd(host, *sink.get());
    ReadRows rows = std::move(sink->Rows());
    rows.nBad = nRecords - std::min<ULONGLONG>(nRecords, rows.rows.size());
    return rows;
}

Settings OfLayout(Settings settings)
{
    settings.dtFrom.reset();
    settings.dtTo.reset();
    settings.sSymbol.reset();
    settings.portion.reset();
    settings.bWholeFile = false;
    return settings;
}

} // namespace

EngineTrial::EngineTrial(const ResolutionOffers& offers, const Settings& given)
    : m_offers(offers), m_given(OfLayout(given))
{}

advice::TrialResult EngineTrial::Run(const advice::Reading& reading, std::string_view text)
try {
    advice::TrialResult result;
    const TemporaryFile file(reading.recipe.IsEmpty() ? std::string(text)
                                                      : intake::CleanText(reading.recipe, text));
    Host host(m_offers);
    OpenWithSettings(
        host, file.Path(),
        CleanFile::SettingsOf(reading.recipe, WithReading(m_given, reading, m_offers)));
    for (const Column& column : AllColumns(host))
        result.types.push_back(column.sName);
    result.sRefusal = WhyNotConvertible(host);
    if (!result.sRefusal.empty())
        return result;
    result.rows = RowsOf(host);
    UndoScales(reading.recipe, result.rows);
    result.bRan = true;
    return result;
} catch (const Fault& fault) {
    advice::TrialResult result;
    result.sRefusal = fault.sMessage;
    return result;
} catch (const intake::RecipeFault& fault) {
    advice::TrialResult result;
    result.sRefusal = fault.sMessage;
    return result;
}

} // namespace tabulex
