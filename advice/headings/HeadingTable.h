// The words that headings are made of, and what each says.
#pragma once

#include <span>
#include <string_view>

#include "advice/headings/HeadingWords.h"

namespace tabulex {

struct HeadingRow
{
    Meaning meaning;
    std::string_view sWords; // between blanks; small letters without accents
};

// Whole headings, their parts written together: "openint".
std::span<const HeadingRow> HeadingRows();

// Parts that say nothing of the field: a currency, "price", "daily".
std::string_view FillerWords();

// Parts that make something else of the field that stands beside them: "previous", "change".
std::string_view OtherWords();

} // namespace tabulex
