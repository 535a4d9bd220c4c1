// RecordReader: single records as a conversion would judge them, through a parser of its own.
//
// Used by one thread; the host must outlive it, and may convert meanwhile.
#pragma once

#include <optional>
#include <string>

#include "tools/tabulex/host/Host.h"

namespace tabulex {

class RecordReader
{
public:
    // Throws Fault where the component can't copy its parser.
    explicit RecordReader(const Host& host);

    // Parses the record at a position, from 0 in the order of the run. False: there is none.
    bool Read(ULONGLONG nPosition);
    // Of the record that was read: empty where it has no readable date.
    std::optional<DATE> Moment() const;
    // Its text in the column of symbols; empty where there is none.
    std::string Symbol() const;

private:
    com_ptr<IDataParser> m_data;
    com_ptr<IRecordParser> m_records;
    ULONG m_nSymbolField;
    Bstr m_sRecord;
};

} // namespace tabulex
