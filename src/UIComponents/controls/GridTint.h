// GridTint: which rows of a grid an import would take, and how their background looks.
#pragma once

#include "interfaces/IDataParser.h"
#include "interfaces/IRecordParser.h"
#include "src/data/DateWithStatus.h"

namespace Hesperon::specifics {

// The range of dates of an import, as it was when it was last read. Used on one thread.
class GridTint
{
public:
    // Reads the range; a date that can't be read becomes 0.
    void ReadRange(IQRL_TabulexConverter::IDataParser& parser);

    // False for every date if an end of the range is one whose whole days, cut to 16 bits, are
    // 0xFFFF: such an end stands for no date.
    bool HasRange() const;
    bool Contains(DATE date) const;

private:
    DateWithStatus m_dtRangeStart, m_dtRangeEnd; // both inclusive
};

// Whether the record at a position has a date within the range. False if it can't be read, or
// has no date. Moves the data parser, and the record parser's current record.
bool IsRecordIn(const GridTint& range, IQRL_TabulexConverter::IDataParser& data,
                IQRL_TabulexConverter::IRecordParser& records, LONG nRecord);

// The text of the record at a position; a failure leaves it empty. Moves the data parser.
HRESULT ReadRecord(IQRL_TabulexConverter::IDataParser& parser, LONG nRecord, BSTR* pRecord);

// A colour three tenths of the way from one to the other, each channel truncated: 0x00BBGGRR.
ULONG BlendColours(ULONG nFrom, ULONG nTo);

} // namespace Hesperon::specifics
