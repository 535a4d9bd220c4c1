// RowBatch: rows in the form in which a program gets them, and the bad lines among them.
//
// It is filled on the file's worker thread and read on the program's, never at the same time.
#pragma once

#include <deque>
#include <string>
#include <vector>

#include "component/reader/OpenedFile.h"

namespace Hesperon::reader {

class RowBatch
{
public:
    explicit RowBatch(const RowRules& rules) : m_rules(rules) {}

    // A line that was rejected; lines and columns as in IDataParserEvents::OnError2.
    void AddBad(LONG_PTR nLine, LONG nField, std::string sMessage);
    // The numbers of the bad lines are one too high.
    void ShiftBad();
    // Takes the rows that the rules let through. Array as in IDataParserEvents::PutRecords;
    // `types` are those of its columns. False for an array of another shape.
    bool AddRows(SAFEARRAY& array, const std::vector<LONG>& types, ULONGLONG nLines);

    tabulex::detail::BatchRow View() const;
    const tabulex::detail::CountsRow& Counts() const { return m_counts; }

private:
    using Cell = tabulex::detail::Cell;

    bool IsWanted(const VARIANT* row, const std::vector<LONG>& types);
    void AddRow(const VARIANT* row, const std::vector<LONG>& types);
    Cell CellOf(const VARIANT& value, LONG nType);
    Cell TextCell(string_view_t text);
    double Price(double price) const;
    LONGLONG Volume(LONGLONG nVolume);

    const RowRules& m_rules; // used while rows are added
    std::vector<Cell> m_cells;
    std::string m_sTexts;
    std::deque<std::string> m_messages; // what m_bad points to
    std::vector<tabulex::detail::BadRow> m_bad;
    std::size_t m_nRows = 0;
    string_t m_sLastText; // texts come in runs of the same
    Cell m_lastText{};
    tabulex::detail::CountsRow m_counts{};
};

} // namespace Hesperon::reader
