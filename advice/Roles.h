// Roles: what the columns of a table mean, by their headings first and by their values where these
// say nothing.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "advice/MomentColumns.h"
#include "advice/Table.h"
#include "advice/headings/HeadingWords.h"

namespace tabulex::advice {

struct Role
{
    Meaning meaning;
    std::size_t nColumn;
    std::string sReason = {}; // why this column; a clause, empty where its heading says it
};

// Another choice that a person may want, and what it is.
struct OtherRoles
{
    std::vector<Role> roles;
    std::string sSymbol; // of a row that holds several
    std::string sWhat;   // "prices of 'ETH'", "adjusted prices"
};

struct Roles
{
    std::vector<Role> roles;  // each meaning once
    std::string sSymbol;      // the symbol that a heading names, in a row of several
    bool bByHeadings = false; // the prices have headings that name them
    bool bUndecided = false;  // `others` are as good
    std::vector<OtherRoles> others;
    std::vector<std::string> doubts; // sentences

    std::optional<std::size_t> ColumnOf(Meaning meaning) const;
    bool HasBars() const; // open, high, low and close
};

Roles FindRoles(const Table& table, const MomentColumns& moments);

// The numbers of a column, one a row; not a number where there is none.
std::vector<double> NumbersOf(const Table& table, std::size_t nColumn);

} // namespace tabulex::advice
