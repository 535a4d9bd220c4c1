// RecordFinder: a record by a row that it gave, through parsers of its own.
#pragma once

#include <optional>
#include <string>

#include "tools/tabulex/review/DeliveredReview.h"

namespace tabulex {

class RecordFinder
{
public:
    // Lines are numbered by the map; null where nothing is looked for. Both must outlive this.
    RecordFinder(const Host& host, LineMap* lines);

    struct Found
    {
        ULONGLONG nLine = 0; // as an editor counts, from 1
        std::string sCell;   // the date as it stands, cut for a message
    };

    // The record in whose column nField the day of the place stands. Empty if there is none
    // among those that the place may mean.
    std::optional<Found> Find(const DateOrderReview::Place& place, ULONG nField);

    // The text of a column, empty where there is none.
    std::string CellAt(ULONGLONG nPosition, ULONG nField);

private:
    ULONGLONG LineOf(ULONGLONG nPosition) const; // among those with content

    const Host& m_host;
    LineMap* m_lines;
    com_ptr<IDataParser> m_data;
    com_ptr<IRecordParser> m_records;
};

} // namespace tabulex
