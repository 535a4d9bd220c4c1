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

// Of the types that weren't tried, the one whose name shares most letters with the
// cell's word; none if the cell has no letters or all types were tried. Date takes the
// lead whatever its score, so it is the answer for words that fit nothing.
WordGuess GetTypeFromField(string_view_t sCell, const TypeSet& tried);

struct TemplateGuess
{
    unsigned uiType = kNoType;
    string_t sTemplate; // "float" and "int" for numbers; empty: nothing fits
    int nIndex = -1;    // place in the type's list
    bool IsEmpty() const { return sTemplate.empty(); }
};

// The first type from uiFrom upward (kNoType: from the lowest) that is in the table, isn't
// used, and has a template that takes the text; with the first such template that isn't
// excluded.
TemplateGuess GuessTypeAndTemplate(unsigned uiFrom, string_view_t sField, const TypeTable& types,
                                   const std::set<int>& excluded, const TypeSet& used);

// The first template of this one type that takes the text. Here numbers must not have a
// comma.
TemplateGuess GuessTemplate(unsigned uiType, string_view_t sField, const TypeTable& types,
                            const std::set<int>& excluded);

} // namespace Hesperon::specifics
