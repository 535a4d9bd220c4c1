// RecordBatch: makes an array for the sink of the lines of one batch.
//
// Each line passes these checks in this order: date and time readable, symbol filter, order
// and step from the record before, date range, fields. A line that fails is rejected. The
// filter and the range reject silently; the other checks call OnError2 of the sink, whose
// answer may end the run.
//
// Rejected lines leave no gap: the next record that passes goes to the same row of the array.
// Call Parse() with the data parser's lock held, Deliver() without it.
#pragma once

#include <optional>

#include "src/data/run/ConversionRun.h"
#include "src/values/LockedArray.h"

namespace Hesperon::specifics {

class RecordBatch
{
public:
    // nLast is the position of the last line in the run's memory. All must outlive the batch.
    RecordBatch(ConversionRun& run, ULONGLONG nLast,
                IQRL_TabulexConverter::IRecordParser* pRecordParser,
                IQRL_TabulexConverter::IDataParserEvents* pHost);

    // Fills the array. S_FALSE: this is the last batch of the run. E_INVALIDARG: the run ends
    // without EndTransaction. Nothing can be delivered after a failure.
    HRESULT Parse();
    // Gives the array to the sink. If that returns S_OK, the result is that of Parse.
    HRESULT Deliver();

private:
    enum class Line
    {
        Passed,
        Rejected,
        Finished, // rejected, and all later lines with it
        Failed    // m_hr says why
    };

    HRESULT ParseLines();
    Line ParseLine();
    Line ReadDateTime(DateWithStatus& date);
    Line CheckOrder();
    Line CheckSymbol(bool& bNewSymbol);
    Line CheckResolution();
    Line CheckRange(const DateWithStatus& date);
    Line FillRow();

    // Belongs to the buffer and is only to be read.
    BSTR CurrentLine() const { return m_memory.lines[m_nRow + m_nSkipped]; }
    std::size_t ColumnCount() const { return m_settings.arFieldIndices.size(); }
    bool IsFirstOfRun() const { return LowDayBits(m_order.dtLast.date) == 0xFFFF; }

    Line Fail(HRESULT hr);
    // Lets `ask` report the current line to the sink, unless reports are off or the run is
    // cancelled. The line is rejected, or the batch fails.
    template <class Ask>
    Line Reject(Ask ask);

    // ---- the calls on the sink (RecordBatchErrors.cpp)

    // Number of the current line in the file, from 0.
    ULONGLONG LineNumber() const;
    HRESULT ShowDateTimeIncrementError();
    HRESULT ShowResolutionCheckError(BSTR sError);
    HRESULT ShowFieldError(std::size_t nColumn);
    HRESULT Report(ULONG nField, BSTR sError);
    // The first delivered field of a type; empty if there is none.
    std::optional<ULONG> FindField(unsigned uiType);

    ConversionRun& m_run;
    const RunSettings& m_settings;
    RunOrder& m_order;
    BatchMemory& m_memory;
    IQRL_TabulexConverter::IRecordParser* const m_pRecordParser;
    IQRL_TabulexConverter::IDataParserEvents* const m_pHost;
    const std::size_t m_nCount; // lines
    const ULONGLONG m_nFirst;   // position of the first line; wraps below 0
    std::size_t m_nRow = 0;     // row to fill: records that passed
    std::size_t m_nSkipped = 0; // lines rejected so far
    HRESULT m_hr;
    std::optional<LockedArray<VARIANT>> m_cells;
    Variant m_vDateTime;
};

} // namespace Hesperon::specifics
