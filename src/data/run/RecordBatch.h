// RecordBatch: makes an array for the sink of the lines of one batch.
//
// Each line passes these checks in this order: date and time readable, symbol filter, order
// and step from the record before, date range, fields. A line that fails is rejected. The
// filter and the range reject silently; the other checks call OnError2 of the sink, whose
// answer may end the run.
//
// A plain line is read by the record parser's plan (RowPlan), all others and those of which the
// plan isn't sure by its calls, which are the judge: only they find faults.
//
// Rejected lines leave no gap: the next record that passes goes to the same row of the array.
// Call Parse() with the data parser's lock held, Deliver() without it.
#pragma once

#include <optional>
#include <string>

#include "src/data/run/ConversionRun.h"
#include "src/parsing/IBatchLock.h"
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

    HRESULT ParseLines(const BatchLockGuard& lock);
    Line ParseLine();
    // Leaves the plan for the rest of the line.
    void GoToJudge();
    // The record parser knows the last line afterwards, whoever has read it.
    void CatchUp();
    Line ReadDateTime(DateWithStatus& date);
    Line CheckOrder(const DateWithStatus& date);
    Line CheckSymbol(bool& bNewSymbol);
    // The text lies in sOwned, or in the plan until the next symbol is read.
    HRESULT ReadSymbol(string_view_t& sSymbol, Bstr& sOwned);
    bool IsAskedSymbol(string_view_t sSymbol) const;
    Line CheckResolution(const DateWithStatus& date);
    Line CheckRange(const DateWithStatus& date);
    Line FillRow();
    Line FillRowByCalls(VARIANT* row);

    std::size_t LineInBatch() const { return m_nRow + m_nSkipped; }
    // Belongs to the buffer and is only to be read, until a line is asked for again.
    BSTR CurrentLine() const { return m_memory.lines[LineInBatch()]; }
    std::size_t ColumnCount() const { return m_settings.arFieldIndices.size(); }
    bool IsFirstOfRun() const { return LowDayBits(m_order.dtLast.date) == 0xFFFF; }

    Line Fail(HRESULT hr);
    // Lets `ask` report the current line to the sink, unless reports are off or the run is
    // cancelled. The line is rejected, or the batch fails.
    template <class Ask>
    Line Reject(Ask ask);

    // ---- the proof that the plan reads what the judge reads (RecordBatchProof.cpp)

#ifdef TABULEX_BOTH_ROADS
    static constexpr bool kBothRoads = true;
#else
    static constexpr bool kBothRoads = false;
#endif
    // Each has the judge read the same and ends the process where it reads anything else.
    void ProveMoment(DATE date);
    void ProveSymbol(string_view_t sSymbol);
    void ProveStep();
    void ProveRow(const VARIANT* row);
    void Prove(bool bSame, const char* pszWhat);

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
    RowPlan* m_pPlan = nullptr; // null: none of this layout
    bool m_bPlanned = false;    // the plan has read the current line
    Variant m_vDateTime;

    // Of the line whose symbol was last read; empty where the plan hasn't read it.
    struct LastSymbol
    {
        std::string sText;
        bool bAsked = false;
    };
    LastSymbol m_lastSymbol;
};

} // namespace Hesperon::specifics
