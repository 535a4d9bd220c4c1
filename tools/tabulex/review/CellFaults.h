// CellFaults: cells of a line, and what the component makes of the text of one.
//
// It drops quotation marks, apostrophes and brackets wherever they stand, passes over cells that
// are empty then, and reads a number up to what isn't part of it, if there are only digits, signs
// and marks.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace tabulex {

// What is wrong with a number.
enum class NumberFault
{
    None,     // or the component finds the line bad
    NoNumber, // read as 0
    TwoMarks, // read up to the second one
    Other     // read in part, or without the marks that it is written with
};

// bWhole: the column takes whole numbers.
NumberFault FaultInNumber(std::string_view cell, bool bWhole);

// Whether digits of a second get lost in a date or a time: ":59.8", ":59.905035", ":59,8".
bool HasOddFraction(std::string_view cell);

// Without blanks and quotation marks around it.
std::string_view Trimmed(std::string_view cell);

// The text without the characters that the component drops.
std::string Bare(std::string_view text);

// Takes the next cell off the line, as it stands; a run of blanks divides as its first one.
// Nothing at the end.
std::optional<std::string_view> NextCell(std::string_view& line, std::string_view dividers);

// Cells ahead of the first empty one that has others behind it; none where no cell is empty.
std::optional<std::size_t> CellsAheadOfGap(std::string_view line, std::string_view dividers);

} // namespace tabulex
