// The work of an Intake: the lines of a text go through its steps one after the other.
//
// A line is left out, or joined to the next one by a quotation mark, or cut into cells that become
// a clean line. Lines ahead of the first row are held back until it is known which of them names
// the columns.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "intake/CellCutter.h"
#include "intake/CleanOutput.h"
#include "intake/DividerFinder.h"
#include "intake/Intake.h"
#include "intake/LineCutter.h"
#include "intake/LineRules.h"
#include "intake/RowMaker.h"
#include "intake/TextBuffer.h"

namespace tabulex::intake {

class Intake::Work : public LineTaker
{
public:
    Work(const Recipe& recipe, Output output, MakeStore makeStore);

    void Feed(std::string_view text) { m_lines.Feed(text); }
    void Finish();

    char Divider() const { return m_cells.Divider(); }
    const IntakeAccount& Account() const { return m_account; }
    std::shared_ptr<const Origins> LineOrigins() const { return m_output.LineOrigins(); }

private:
    void Take(std::string_view line, bool bCut) override;
    void TakeLine(std::string_view line, std::uint64_t nLine);
    bool TakeJoined(std::string_view line);
    void GiveUpJoining();
    void TakeCells(std::uint64_t nLine);
    void TakeHead(std::uint64_t nLine);
    void TakeRow(std::uint64_t nLine);
    void GiveHead(bool bLast);
    void FilterRow(const RowFacts& facts, std::size_t nStart, std::uint64_t nLine,
                   const IntakeAccount& before);
    void GiveRow(const RowFacts& facts, std::size_t nStart, std::uint64_t nLine);
    void LeaveOut();
    void TakeBlank();

    const Recipe m_recipe;
    const bool m_bFilters; // rows are left out by what they lack
    IntakeAccount m_account;
    CleanOutput m_output;
    LineRules m_rules;
    RowMaker m_rows;
    CellCutter m_cells;
    DividerFinder m_dividers; // takes the lines, and hands them to this object
    LineCutter m_lines;
    TextBuffer m_try; // a line that may be the first row

    // Ahead of the first row: the cells of the last line that has any, which may name the columns.
    bool m_bInRows = false;
    bool m_bHead = false;
    std::vector<std::string> m_head;
    std::uint64_t m_nBlankAfterHead = 0;

    // Lines that a quotation mark joins, as long as it is open.
    std::vector<std::string> m_open;
    std::uint64_t m_nOpen = 0; // number of the first of them
    std::string m_joined;
};

} // namespace tabulex::intake
