// CleanOutput: where clean lines go: in blocks to whoever takes the text, or row by row to be
// sorted first.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>

#include "intake/Intake.h"
#include "intake/RowSorter.h"
#include "intake/TextBuffer.h"

namespace tabulex::intake {

class CleanOutput
{
public:
    // The account must outlive this.
    CleanOutput(const Recipe& recipe, Intake::Output output, MakeStore makeStore,
                IntakeAccount& account);

    // Where a line is written; one of the three calls ends it.
    TextBuffer& Text() { return m_text; }
    void EndHeading();
    void BlankLine();
    // nStart is the size of the text ahead of the row, nLine the number of its line, from 1. A row
    // without a moment is sorted behind the one that it came with.
    void EndRow(std::optional<std::int64_t> nMoment, std::size_t nStart, std::uint64_t nLine);

    void Finish();
    std::shared_ptr<const Origins> LineOrigins() const { return m_origins; }

private:
    void FlushIfFull();
    void Flush();
    void GiveSorted();

    const Intake::Output m_output;
    const MakeStore m_makeStore;
    IntakeAccount& m_account;
    const bool m_bSymbols; // rows are sorted by symbol first
    const bool m_bHeading; // the recipe has one
    TextBuffer m_text;
    std::unique_ptr<RowSorter> m_sorter; // null where rows stay in their places
    std::uint64_t m_nHeadings = 0;
    std::int64_t m_nLastMoment = 0;
    std::shared_ptr<const Origins> m_origins;
};

} // namespace tabulex::intake
