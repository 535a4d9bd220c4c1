// NumberReader: a cell with a number, in any notation, as a plain decimal.
//
// Digits stay digits and never become a floating-point number, so nothing is lost: 1.098,050 is
// 1098.050, and 10,90M is 10900000. Groups of thousands must be whole, with three digits in the
// last one and two or three in those before.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "intake/DecimalDigits.h"
#include "intake/Recipe.h"

namespace tabulex::intake {

enum class NumberState : std::uint8_t
{
    Plain, // it was plain already
    Rewritten,
    Missing, // no value
    Bad      // no number
};

struct NumberText
{
    NumberState state;
    bool bRounded = false; // digits beyond the scale were lost
};

class NumberReader
{
public:
    // Bytes that a plain decimal takes at most.
    static constexpr std::size_t kMostBytes = 160;

    NumberReader(const Numbers& numbers, std::vector<std::string> missing);

    // Writes the number to pOut, which has room for kMostBytes, and moves it behind. nScale is a
    // power of ten to multiply by; -1 for none, which leaves a fraction as it is. Nothing is
    // written where there is no number. The cell has no blanks at its ends.
    NumberText Read(std::string_view cell, int nScale, char*& pOut) const;

    // Whether the cell is a text for no value, by the recipe.
    bool IsMissing(std::string_view cell) const;
    // Whether the cell begins as a number does.
    bool LooksLikeNumber(std::string_view cell) const;

private:
    bool Take(std::string_view cell, DecimalDigits& digits) const;
    bool TakeSigns(std::string_view& cell, DecimalDigits& digits) const;
    bool TakeMain(std::string_view cell, DecimalDigits& digits) const;
    void TakeCurrency(std::string_view& cell) const;
    bool TakeEnding(std::string_view& cell, DecimalDigits& digits) const;
    bool TakeExponent(std::string_view& cell, DecimalDigits& digits) const;
    std::size_t GroupMarkAt(std::string_view text) const;
    bool IsDecimalMark(char c) const;

    const Numbers m_numbers;
    const std::vector<std::string> m_missing;
};

} // namespace tabulex::intake
