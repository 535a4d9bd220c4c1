// RolesByHeading: what columns mean by the words above them.
#pragma once

#include <map>
#include <string>
#include <vector>

#include "advice/Roles.h"

namespace tabulex::advice {

// Of several columns of one meaning the plainest is taken. Where three of the four prices stand
// there twice, the columns fall into groups by the words that are left over, and one group is taken
// whole: unadjusted ahead of adjusted, then the first. The table must outlive it.
class RolesByHeading
{
public:
    RolesByHeading(const Table& table, const MomentColumns& moments);

    void Fill(Roles& roles);

private:
    using Group = std::map<Meaning, std::size_t>; // the column of each meaning

    bool Admits(std::size_t nColumn, Meaning meaning) const;
    bool HasGroups() const;
    void TakeGroups(Roles& roles);
    void SettleClose(Roles& roles);
    void TakePlainest(Roles& roles) const;
    OtherRoles AsOther(const std::string& rest, const Group& group) const;

    const Table& m_table;
    std::map<Meaning, std::vector<std::size_t>> m_columns; // the plainest first
};

// Whether the moment is read from the column.
bool IsMomentColumn(const MomentColumns& moments, std::size_t nColumn);

// In marks, for a sentence.
std::string QuotedHeading(std::string_view heading);

} // namespace tabulex::advice
