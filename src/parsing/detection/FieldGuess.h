// Guessing what a column is: a type from the word of a header cell, and a type and
// template from the text of a field.
#pragma once

#include <bitset>
#include <set>

#include "src/parsing/DataTypes.h"

namespace Hesperon::specifics {

using TypeSet = std::bitset<TYPES_COUNT>;

struct WordGuess
{
    unsigned uiType = kNoType;
    double fScore = 0; // share of the letters that agree, 1 for all
};

// Type whose name shares most letters with the cell's word, of those that weren't
// tried; none where the cell has no letters or all types were tried. Date takes
// over whatever its score, so it is the answer for words that fit nothing.
WordGuess GetTypeFromField(string_view_t sCell, const TypeSet& tried);

struct TemplateGuess
{
    unsigned uiType = kNoType;
    string_t sTemplate; // "float" and "int" for numbers; empty: nothing fits
    int nIndex = -1;    // place in the type's list
    bool IsEmpty() const { return sTemplate.empty(); }
};

// First type from uiFrom upward (kNoType: from the first), of those in the table
// and not in use, with a template that takes the text; of that, the first template
// that isn't excluded.
TemplateGuess GuessTypeAndTemplate(unsigned uiFrom, string_view_t sField, const TypeTable& types,
                                   const std::set<int>& excluded, const TypeSet& used);

// First template of this one type that takes the text. Numbers must do without a
// comma here.
TemplateGuess GuessTemplate(unsigned uiType, string_view_t sField, const TypeTable& types,
                            const std::set<int>& excluded);

} // namespace Hesperon::specifics
