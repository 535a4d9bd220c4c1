// Headings are looked at one by one, and then together: which meanings occur twice, and what the
// headings of a group have in common besides them.
#include "advice/RolesByHeading.h"

#include <algorithm>
#include <utility>

#include <fmt/format.h>

namespace tabulex::advice {

namespace {

constexpr Meaning kGroupPrices[] = {Meaning::Open, Meaning::High, Meaning::Low, Meaning::Close};

// The words of a heading that don't say what the field is: "btc" of "BTC:open".
std::string RestOf(std::string_view heading, Meaning meaning)
{
    std::string rest;
    for (const std::string& token : HeadingTokens(heading))
        if (MeaningOf(token) != meaning)
            rest += (rest.empty() ? "" : " ") + token;
    return rest;
}

} // namespace

bool IsMomentColumn(const MomentColumns& moments, std::size_t nColumn)
{
    return std::ranges::any_of(moments.choices, [&](const MomentChoice& choice) {
        return std::ranges::find(choice.columns, nColumn) != choice.columns.end();
    });
}

std::string QuotedHeading(std::string_view heading)
{
    return fmt::format("'{}'", heading);
}

RolesByHeading::RolesByHeading(const Table& table, const MomentColumns& moments) : m_table(table)
{
    for (std::size_t i = 0; i < table.columns.size(); ++i) {
        const Meaning meaning = MeaningOf(table.columns[i].sHeading);
        if (!IsMomentColumn(moments, i) && Admits(i, meaning))
            m_columns[meaning].push_back(i);
    }
    for (auto& [meaning, columns] : m_columns)
        std::ranges::stable_sort(
            columns, {}, [&](std::size_t i) { return DistanceOf(table.columns[i].sHeading); });
}

// A number that half of the cells aren't is none, whatever its heading says.
bool RolesByHeading::Admits(std::size_t nColumn, Meaning meaning) const
{
    const Column& column = m_table.columns[nColumn];
    if (meaning == Meaning::Symbol)
        return column.nCells > 0;
    return meaning >= Meaning::Open && meaning <= Meaning::OpenInterest && column.nNumbers > 0 &&
           column.nNumbers * 2 >= column.nCells;
}

// One price twice is an adjusted close or a bid; three are whole bars.
bool RolesByHeading::HasGroups() const
{
    return std::ranges::count_if(kGroupPrices, [&](Meaning meaning) {
               const auto at = m_columns.find(meaning);
               return at != m_columns.end() && at->second.size() > 1;
           }) >= 3;
}

OtherRoles RolesByHeading::AsOther(const std::string& rest, const Group& group) const
{
    OtherRoles other;
    for (const auto& [meaning, nColumn] : group)
        other.roles.push_back({meaning, nColumn});
    other.sWhat = fmt::format("the columns of {}", QuotedHeading(rest));
    return other;
}

void RolesByHeading::TakeGroups(Roles& roles)
{
    std::vector<std::pair<std::string, Group>> groups; // in the order of the file
    std::map<std::size_t, Meaning> byColumn;
    for (const auto& [meaning, columns] : m_columns)
        if (meaning >= Meaning::Open && meaning <= Meaning::OpenInterest)
            for (const std::size_t nColumn : columns)
                byColumn.emplace(nColumn, meaning);
    for (const auto& [nColumn, meaning] : byColumn) {
        const std::string rest = RestOf(m_table.columns[nColumn].sHeading, meaning);
        auto at = std::ranges::find(groups, rest, &std::pair<std::string, Group>::first);
        if (at == groups.end())
            at = groups.insert(groups.end(), {rest, {}});
        at->second.emplace(meaning, nColumn);
    }
    std::erase_if(groups, [](const auto& group) { return group.second.size() < 3; });
    std::ranges::stable_sort(groups, {}, [](const auto& group) {
        return group.first.find("adj") != std::string::npos ? 2 : group.first.empty() ? 0 : 1;
    });
    if (groups.empty())
        return;
    for (const auto& [meaning, nColumn] : groups.front().second)
        m_columns[meaning] = {nColumn};
    const bool bWide = !groups.front().first.empty();
    if (bWide)
        roles.sSymbol = groups.front().first;
    for (std::size_t i = 1; i < groups.size(); ++i) {
        roles.others.push_back(AsOther(groups[i].first, groups[i].second));
        roles.others.back().sSymbol = bWide ? groups[i].first : std::string();
    }
    roles.doubts.push_back(
        fmt::format("a row holds {} groups of prices; those of {} are read", groups.size(),
                    bWide ? QuotedHeading(groups.front().first) : "the plain headings"));
}

// Of futures the settlement is the close, where only the last trade stands beside it.
void RolesByHeading::SettleClose(Roles& roles)
{
    const auto at = m_columns.find(Meaning::Close);
    if (at == m_columns.end())
        return;
    const auto heading = [&](std::size_t i) { return HeadingTokens(m_table.columns[i].sHeading); };
    const auto has = [&](std::size_t i, std::string_view beginning) {
        return std::ranges::any_of(
            heading(i), [&](const std::string& token) { return token.starts_with(beginning); });
    };
    auto& columns = at->second;
    const auto settlement =
        std::ranges::find_if(columns, [&](std::size_t i) { return has(i, "settle"); });
    if (settlement == columns.end() || !has(columns.front(), "last"))
        return;
    roles.doubts.push_back(fmt::format("both {} and {} may be the close; the settlement is read",
                                       QuotedHeading(m_table.columns[columns.front()].sHeading),
                                       QuotedHeading(m_table.columns[*settlement].sHeading)));
    std::rotate(columns.begin(), settlement, settlement + 1);
}

void RolesByHeading::TakePlainest(Roles& roles) const
{
    for (const auto& [meaning, columns] : m_columns) {
        roles.roles.push_back({meaning, columns.front()});
        if (meaning != Meaning::Close || columns.size() < 2)
            continue;
        for (std::size_t i = 1; i < columns.size(); ++i)
            if (IsAdjusted(m_table.columns[columns[i]].sHeading)) {
                OtherRoles other{{{meaning, columns[i]}}, {}, {}};
                other.sWhat = fmt::format("the adjusted close {}",
                                          QuotedHeading(m_table.columns[columns[i]].sHeading));
                roles.others.push_back(other);
            }
    }
}

void RolesByHeading::Fill(Roles& roles)
{
    if (HasGroups())
        TakeGroups(roles);
    SettleClose(roles);
    TakePlainest(roles);
}

} // namespace tabulex::advice
