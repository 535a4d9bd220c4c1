// Corrections: the settings by which columns get the types that their headings ask for.
#pragma once

#include <string>
#include <vector>

#include "tools/tabulex/review/LayoutFacts.h"

namespace tabulex {

// Columns whose heading says something else than their type, or nothing at all. A date is known
// by its form, and a first column is a symbol whatever its heading; a number has nothing but its
// heading. Those that the user named are none, nor is any in a file without headings.
std::vector<std::size_t> DoubtfulColumns(const LayoutFacts& facts);

// Columns without a type that hold text and that the user didn't leave out.
std::vector<std::size_t> LeftOutColumns(const LayoutFacts& facts);

class Corrections
{
public:
    Corrections(const Host& host, const LayoutFacts& facts);

    // " --column 2=none --column 7=Volume": of both kinds, those first that free a type, since a
    // type stands once only. Empty for none.
    std::string All() const { return m_sFreed + m_sSet + m_sAdded; }
    // The part for columns that were left out.
    const std::string& Added() const { return m_sAdded; }

private:
    std::string m_sFreed;
    std::string m_sSet;
    std::string m_sAdded;
};

} // namespace tabulex
