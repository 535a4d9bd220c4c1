// RowMaker: the clean line of a row, from the cells of its line.
//
// A recipe is turned into a list of columns once, each with what is done to its cells; rows then
// walk through the list. Without takes the list is as long as the row is.
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "intake/Intake.h"
#include "intake/NumberReader.h"
#include "intake/Recipe.h"
#include "intake/TextBuffer.h"
#include "intake/moments/MomentReader.h"

namespace tabulex::intake {

using CellList = std::span<const std::string_view>;

// What was found in a line.
struct RowFacts
{
    bool bRow = false;                   // by the rule of Recipe; only MakeFirst tells
    bool bMoment = false;                // the moment was read
    bool bValue = false;                 // any number was read
    std::optional<std::int64_t> nMoment; // milliseconds since 1970-01-01
};

class RowMaker
{
public:
    // REQUIRES: a recipe without a fault. The account must outlive this object.
    RowMaker(const Recipe& recipe, IntakeAccount& account);

    // How many cells of a line are looked at.
    std::size_t CellsWanted() const { return m_nWanted; }

    // Adds the clean line, without its end. nLine is its number in the file, from 1.
    RowFacts Make(CellList cells, std::uint64_t nLine, TextBuffer& out);
    // The same, and tells whether it is a row.
    RowFacts MakeFirst(CellList cells, std::uint64_t nLine, TextBuffer& out);
    // Adds the heading of a recipe with takes; otherwise that of the cells.
    void MakeHeading(CellList cells, TextBuffer& out) const;

private:
    enum class Kind : std::uint8_t
    {
        Constant, // the symbol of all rows
        Symbol,
        Text,
        Number,
        Any, // a number if it is one
        Moment,
        Dropped
    };
    struct Column
    {
        Kind kind = Kind::Any;
        Sources from;
        int nScale = -1; // tens to multiply by; -1 for none
    };
    struct Row;

    void PlanTakes(const Recipe& recipe);
    void PlanCells(const Recipe& recipe);
    Column ColumnOf(const Take& take, const Recipe& recipe) const;
    void SetWanted();
    void MakeCellHeading(CellList cells, TextBuffer& out) const;

    // Each gives false where the line ends, ahead of the cell if nothing was added.
    void Step(Kind kind, int nScale, std::string_view cell, Row& row);
    bool MakeCell(Kind kind, int nScale, std::string_view cell, Row& row);
    bool MakeMoment(std::string_view text, Row& row);
    bool MakeNumber(std::string_view cell, int nScale, Row& row);
    bool MakeAny(std::string_view cell, Row& row);
    bool MakeSymbol(std::string_view cell, Row& row);
    bool MakeText(std::string_view cell, Row& row);
    void MakeCells(Row& row);
    bool IsRow(const Row& row) const;

    std::string_view TextOf(const Sources& sources, CellList cells);
    std::string_view CellOf(const Source& source, CellList cells) const;

    IntakeAccount& m_account;
    const bool m_bTakes;
    const bool m_bAllValues; // numbers behind one that has no value count too
    const std::vector<Split> m_splits;
    const std::string m_sSymbol;
    std::vector<std::string> m_heading;
    std::vector<Column> m_columns;
    bool m_bClock = false;
    std::size_t m_nWanted = 0;
    NumberReader m_numbers;
    std::optional<MomentReader> m_moments;
    std::string m_joined; // cells that are joined
};

} // namespace tabulex::intake
