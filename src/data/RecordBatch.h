// CRecordBatch: the lines of one batch of a conversion, on their way from text to
// the array that a sink receives.
//
// A line goes through these checks in this order: date and time readable, symbol
// filter, order and step against the record before it, date range, fields. A line
// that fails one is rejected: silently for the filter and the range, and for the
// others through OnError2, whose answer may end the run.
//
// Rejected lines leave no gap: the array's row is filled by the next record that
// passes. Parse() is called under the data parser's lock, Deliver() without it.
#pragma once

#include <optional>

#include "src/data/DataParser.h"

namespace Hesperon::specifics {

class CRecordBatch
{
public:
    // nLast is the position of the last line of parser.m_sTempRecords. All must
    // outlive the batch.
    CRecordBatch(CDataParser& parser, ULONGLONG nLast,
                 IQRL_TabulexConverter::IRecordParser* pRecordParser,
                 IQRL_TabulexConverter::IDataParserEvents* pHost);

    // Fills the array. S_FALSE: it is the last batch of the run. E_INVALIDARG: the
    // sink knows that the run has ended. Nothing can be delivered after a failure.
    HRESULT Parse();
    // Hands the array to the sink; its result, or that of Parse where it is S_OK.
    HRESULT Deliver();

private:
    enum class Line
    {
        Passed,
        Rejected,
        Finished, // and with it all lines behind it
        Failed    // m_hr tells why
    };

    HRESULT ParseLines();
    Line ParseLine();
    Line ReadDateTime(SDateWithStatus& date);
    Line CheckOrder();
    Line CheckSymbol(bool& bNewSymbol);
    Line CheckResolution();
    Line CheckRange(const SDateWithStatus& date);
    Line FillRow();

    // Of the buffer; to be read only.
    BSTR CurrentLine() const { return m_parser.m_sTempRecords[m_nRow + m_nSkipped]; }
    std::size_t ColumnCount() const { return m_parser.m_arFieldIndices.size(); }
    bool IsFirstOfRun() const { return LowDayBits(m_parser.m_dtLast.date) == 0xFFFF; }

    Line Fail(HRESULT hr);
    Line RejectBadDateTime();
    Line RejectBadOrder(BSTR sError);
    Line RejectBadField(std::size_t nColumn);
    // What a sink's answer to a bad line means.
    Line TakeAnswer(HRESULT hrAnswer);

    // ---- the calls on the sink (RecordBatchErrors.cpp)

    // File line of the line at hand, counted from 0.
    ULONGLONG LineNumber() const;
    HRESULT ShowDateTimeIncrementError();
    HRESULT ShowResolutionCheckError(BSTR sError);
    HRESULT ShowFieldError(std::size_t nColumn);
    HRESULT TellSink(ULONG nField, BSTR sError);
    // First delivered field of a type; empty for none.
    std::optional<ULONG> FindField(unsigned uiType);

    CDataParser& m_parser;
    IQRL_TabulexConverter::IRecordParser* const m_pRecordParser;
    IQRL_TabulexConverter::IDataParserEvents* const m_pHost;
    CBatchArray& m_array;
    const std::size_t m_nCount; // lines
    const ULONGLONG m_nFirst;   // position of the first line; wraps below 0
    std::size_t m_nRow = 0;     // row to fill: records that passed
    std::size_t m_nSkipped = 0; // lines rejected so far
    HRESULT m_hr;
    std::optional<LockedArray<VARIANT>> m_cells;
    Variant m_vDateTime;
};

} // namespace Hesperon::specifics
