// RowShaping: how the rows of a run leave the tool: under which columns, with what in front of
// them, and by which scale. Only the run's own thread uses it.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "intake/Recipe.h"
#include "tools/tabulex/host/Multipliers.h"
#include "tools/tabulex/output/Column.h"
#include "tools/tabulex/output/ReshapedRows.h"

namespace tabulex {

// A column in front of the file's own that has one text in all rows.
struct NameColumn
{
    std::string sColumn; // "File" or "Symbol"
    std::string sText;   // UTF-8
};

class RowShaping
{
public:
    // The host must outlive this; its multipliers are out of use meanwhile. The columns of the
    // scales were multiplied before they were read, and leave as decimals.
    RowShaping(const Host& host, const std::optional<NameColumn>& name,
               const std::vector<intake::Scale>& scales);

    // Of the rows as they leave.
    const std::vector<Column>& Columns() const { return m_columns; }
    ReshapedRows& Rows() { return m_rows; }

    // What the multiplier of volumes took from the rows so far; empty for nothing.
    std::string VolumeLoss() const;

private:
    Multipliers m_multipliers;
    std::vector<Column> m_columns;
    ReshapedRows m_rows;
};

} // namespace tabulex
