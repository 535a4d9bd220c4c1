// Headings come first; of several that mean the same the plainest. Where three of the four prices
// stand there twice, the columns fall into groups by the words that are left over, and one group is
// taken whole: unadjusted ahead of adjusted, then the first. Values then check what headings say,
// and stand in for them where there are none.
#include "advice/Roles.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include <fmt/format.h>

#include "advice/PriceColumns.h"
#include "advice/RolesByHeading.h"
#include "advice/forms/MonthNames.h"

namespace tabulex::advice {

namespace {

constexpr Meaning kBarPrices[] = {Meaning::Open, Meaning::High, Meaning::Low, Meaning::Close};
constexpr double kEnoughBars = 0.8;
constexpr double kAllBars = 0.99;

// ---- by values

Role* RoleOf(Roles& roles, Meaning meaning)
{
    const auto at = std::ranges::find(roles.roles, meaning, &Role::meaning);
    return at == roles.roles.end() ? nullptr : &*at;
}

bool IsTaken(const Roles& roles, std::size_t nColumn)
{
    return std::ranges::find(roles.roles, nColumn, &Role::nColumn) != roles.roles.end();
}

// A column whose heading says what it is isn't guessed at.
bool IsFree(const Table& table, const MomentColumns& moments, const Roles& roles,
            std::size_t nColumn)
{
    const Column& column = table.columns[nColumn];
    return column.IsNumeric() && column.dLeast >= 0 && column.dMost > 0 &&
           !IsMomentColumn(moments, nColumn) && !IsTaken(roles, nColumn) &&
           (column.sHeading.empty() || MeaningOf(column.sHeading) == Meaning::Unknown);
}

bool FindBar(const Table& table, const MomentColumns& moments, Roles& roles)
{
    for (std::size_t i = 0; i + 4 <= table.columns.size(); ++i) {
        std::vector<Numbers> four;
        for (std::size_t n = i; n < i + 4 && IsFree(table, moments, roles, n); ++n)
            four.push_back(NumbersOf(table, n));
        if (four.size() < 4)
            continue;
        if (const auto order = BarOf(four)) {
            for (std::size_t n = 0; n < 4; ++n)
                roles.roles.push_back(
                    {kBarPrices[n], i + (*order)[n], "by its values: no heading names it"});
            return true;
        }
    }
    return false;
}

// Where headings name three prices of a bar, a column without one may be the fourth: it lies
// between high and low in all rows.
void FindLackingPrice(const Table& table, const MomentColumns& moments, Roles& roles)
{
    const auto nHigh = roles.ColumnOf(Meaning::High), nLow = roles.ColumnOf(Meaning::Low);
    const bool bOpen = roles.ColumnOf(Meaning::Open).has_value();
    if (!nHigh || !nLow || bOpen == roles.ColumnOf(Meaning::Close).has_value())
        return;
    const auto high = NumbersOf(table, *nHigh), low = NumbersOf(table, *nLow);
    for (std::size_t i = 0; i < table.columns.size(); ++i) {
        if (!IsFree(table, moments, roles, i))
            continue;
        const auto numbers = NumbersOf(table, i);
        if (ShareOfBars(numbers, high, low, numbers) < kAllBars)
            continue;
        roles.roles.push_back({bOpen ? Meaning::Close : Meaning::Open, i,
                               "it lies between high and low, and no heading names it"});
        roles.doubts.push_back(
            fmt::format("no heading says {}; column {} is taken for it, as it lies between high "
                        "and low",
                        bOpen ? "close" : "open", i + 1));
        return;
    }
}

// Of few columns the one that moves least from row to row is the price.
void FindSinglePrice(const Table& table, const MomentColumns& moments, Roles& roles)
{
    std::size_t nBest = 0;
    double dBest = std::numeric_limits<double>::max();
    for (std::size_t i = 0; i < table.columns.size(); ++i) {
        if (!IsFree(table, moments, roles, i))
            continue;
        const auto numbers = NumbersOf(table, i);
        if (i + 1 < table.columns.size() && IsFree(table, moments, roles, i + 1) &&
            IsBidAndAsk(numbers, NumbersOf(table, i + 1))) {
            roles.roles.push_back(
                {Meaning::Price, i, "by its values: a bid, and an ask beside it"});
            roles.doubts.push_back(fmt::format(
                "column {} looks like a bid and column {} like an ask; the bid is read as the "
                "price, and the ask is left out",
                i + 1, i + 2));
            return;
        }
        const double dStep = StepShare(numbers);
        if (dStep < dBest * 0.5) {
            dBest = dStep;
            nBest = i;
        }
    }
    if (dBest < 0.5)
        roles.roles.push_back({Meaning::Price, nBest, "by its values: they move least"});
}

// Without headings the first number behind the prices that is no price itself.
void FindVolumeBehind(const Table& table, const MomentColumns& moments, Roles& roles)
{
    if (roles.ColumnOf(Meaning::Volume) || table.bHeading)
        return;
    std::size_t nLast = 0;
    for (const Role& role : roles.roles)
        if (role.meaning >= Meaning::Open && role.meaning <= Meaning::Price)
            nLast = std::max(nLast, role.nColumn);
    // Right behind a bar nothing but zeros is a volume too, of who counts none.
    const auto isZeros = [&](std::size_t i) {
        const Column& column = table.columns[i];
        return roles.HasBars() && i == nLast + 1 && column.IsWhole() && column.dLeast == 0 &&
               column.dMost == 0;
    };
    for (std::size_t i = nLast + 1; i < table.columns.size(); ++i)
        if (isZeros(i) || (IsFree(table, moments, roles, i) &&
                           !IsBidAndAsk(NumbersOf(table, nLast), NumbersOf(table, i)))) {
            roles.roles.push_back({Meaning::Volume, i, "it follows the prices"});
            return;
        }
}

// Words under a heading that isn't known, or under none. What is the same in all rows of a file
// with headings is as likely a currency or a period.
void FindSymbol(const Table& table, const MomentColumns& moments, Roles& roles)
{
    if (roles.ColumnOf(Meaning::Symbol))
        return;
    for (std::size_t i = 0; i < table.columns.size(); ++i) {
        const Column& column = table.columns[i];
        const bool bWords = column.nCells > 0 && column.nTexts * 10 >= column.nCells * 9;
        const bool bNamed = !column.sHeading.empty() && column.bConstant;
        if (bWords && !bNamed && !IsWeekday(column.sFirst) && !IsMomentColumn(moments, i) &&
            (column.sHeading.empty() || MeaningOf(column.sHeading) == Meaning::Unknown)) {
            roles.roles.push_back({Meaning::Symbol, i, "the only column of words"});
            return;
        }
    }
}

// ---- checks

void DropRole(Roles& roles, Meaning meaning)
{
    std::erase_if(roles.roles, [&](const Role& role) { return role.meaning == meaning; });
}

double BarShare(const Table& table, const Roles& roles)
{
    return ShareOfBars(NumbersOf(table, *roles.ColumnOf(Meaning::Open)),
                       NumbersOf(table, *roles.ColumnOf(Meaning::High)),
                       NumbersOf(table, *roles.ColumnOf(Meaning::Low)),
                       NumbersOf(table, *roles.ColumnOf(Meaning::Close)));
}

// A close of days may be called a price, and the price of a trade a close.
void SettlePrice(const Table& table, Roles& roles)
{
    if (const auto nClose = roles.ColumnOf(Meaning::Close);
        nClose && roles.ColumnOf(Meaning::Price) && IsAdjusted(table.columns[*nClose].sHeading))
        DropRole(roles, Meaning::Close);
    Role* close = RoleOf(roles, Meaning::Close);
    Role* price = RoleOf(roles, Meaning::Price);
    const bool bBar = roles.ColumnOf(Meaning::Open) && roles.ColumnOf(Meaning::High) &&
                      roles.ColumnOf(Meaning::Low);
    if (bBar && !close && price)
        price->meaning = Meaning::Close;
    else if (close && price)
        DropRole(roles, Meaning::Price);
    if (bBar || !roles.ColumnOf(Meaning::Close))
        return;
    RoleOf(roles, Meaning::Close)->meaning = Meaning::Price;
    for (const Meaning meaning : {Meaning::Open, Meaning::High, Meaning::Low})
        if (const auto nColumn = roles.ColumnOf(meaning)) {
            roles.doubts.push_back(
                fmt::format("column {} looks like one price of a bar, but the bar lacks others, so "
                            "the close alone is read",
                            *nColumn + 1));
            DropRole(roles, meaning);
        }
}

// A bid stands for a price where there is none; an ask is left out.
void TakeBid(const Table& table, Roles& roles)
{
    constexpr std::string_view kBids = " bid bidprice geld 买价 買気配 kupno покупка alis ";
    if (roles.ColumnOf(Meaning::Price) || roles.ColumnOf(Meaning::Close))
        return;
    for (std::size_t i = 0; i < table.columns.size(); ++i) {
        std::string word;
        for (const std::string& token : HeadingTokens(table.columns[i].sHeading))
            word += token;
        if (word.empty() || kBids.find(' ' + word + ' ') == std::string_view::npos ||
            !table.columns[i].IsNumeric())
            continue;
        roles.roles.push_back({Meaning::Price, i, "a bid, as there is no price"});
        roles.doubts.push_back(fmt::format(
            "there is no price of a trade: {} is read as the price, and the ask is left out",
            QuotedHeading(table.columns[i].sHeading)));
        return;
    }
}

// Of several volumes one may be the turnover of another.
void SettleVolume(const Table& table, const MomentColumns& moments, Roles& roles)
{
    const auto nVolume = roles.ColumnOf(Meaning::Volume);
    const auto nHigh = roles.ColumnOf(Meaning::High), nLow = roles.ColumnOf(Meaning::Low);
    const auto nPrice = roles.ColumnOf(Meaning::Price);
    if (!nVolume || !(nPrice || (nHigh && nLow)))
        return;
    const auto high = NumbersOf(table, nPrice ? *nPrice : *nHigh);
    const auto low = NumbersOf(table, nPrice ? *nPrice : *nLow);
    const auto taken = NumbersOf(table, *nVolume);
    std::vector<std::size_t> rivals;
    for (std::size_t i = 0; i < table.columns.size(); ++i) {
        if (i == *nVolume || IsMomentColumn(moments, i) || !table.columns[i].IsNumeric() ||
            MeaningOf(table.columns[i].sHeading) != Meaning::Volume ||
            IsAdjusted(table.columns[i].sHeading))
            continue;
        const auto other = NumbersOf(table, i);
        if (IsTurnover(other, taken, low, high)) {
            Role* role = RoleOf(roles, Meaning::Volume);
            role->nColumn = i;
            role->sReason = fmt::format("{} is this times the price",
                                        QuotedHeading(table.columns[*nVolume].sHeading));
            return;
        }
        if (!IsTurnover(taken, other, low, high) && other != taken && roles.sSymbol.empty())
            rivals.push_back(i);
    }
    for (const std::size_t i : rivals) {
        const auto& heading = table.columns[i].sHeading;
        roles.others.push_back(
            {{{Meaning::Volume, i}}, {}, fmt::format("the volume of {}", QuotedHeading(heading))});
        // The same distance from the plain word: nothing speaks for the one that is taken.
        roles.bUndecided =
            roles.bUndecided || DistanceOf(heading) == DistanceOf(table.columns[*nVolume].sHeading);
    }
}

// Where no heading says volume, a count or an amount is one.
void TakeWeakVolume(const Table& table, const MomentColumns& moments, Roles& roles)
{
    constexpr std::string_view kWords[] = {"count", "amount", "amt", "cnt"};
    constexpr double kManyTrades = 100000;
    if (roles.ColumnOf(Meaning::Volume))
        return;
    for (const std::string_view word : kWords)
        for (std::size_t i = 0; i < table.columns.size(); ++i) {
            const auto tokens = HeadingTokens(table.columns[i].sHeading);
            const bool bTrades = word == "count" || word == "cnt";
            if (tokens.size() != 1 || tokens.front() != word || IsMomentColumn(moments, i) ||
                !table.columns[i].IsNumeric() ||
                (bTrades && table.columns[i].dMost < kManyTrades) || (!bTrades && roles.HasBars()))
                continue;
            std::erase_if(roles.roles, [&](const Role& role) { return role.nColumn == i; });
            roles.roles.push_back({Meaning::Volume, i, "there is no other volume"});
            roles.doubts.push_back(fmt::format("no heading says volume; {} is taken for it",
                                               QuotedHeading(table.columns[i].sHeading)));
            return;
        }
}

} // namespace

std::optional<std::size_t> Roles::ColumnOf(Meaning meaning) const
{
    const auto at = std::ranges::find(roles, meaning, &Role::meaning);
    return at == roles.end() ? std::nullopt : std::optional(at->nColumn);
}

bool Roles::HasBars() const
{
    return std::ranges::all_of(kBarPrices,
                               [&](Meaning meaning) { return ColumnOf(meaning).has_value(); });
}

std::vector<double> NumbersOf(const Table& table, std::size_t nColumn)
{
    std::vector<double> numbers;
    numbers.reserve(table.rows.size());
    for (const TableRow& row : table.rows) {
        const auto number = ReadNumber(row.Cell(nColumn), table.style);
        numbers.push_back(number ? number->dValue : std::numeric_limits<double>::quiet_NaN());
    }
    return numbers;
}

Roles FindRoles(const Table& table, const MomentColumns& moments)
{
    Roles roles;
    if (table.bHeading)
        RolesByHeading(table, moments).Fill(roles);
    FindLackingPrice(table, moments, roles);
    roles.bByHeadings = roles.ColumnOf(Meaning::Close) || roles.ColumnOf(Meaning::Price);
    SettlePrice(table, roles);
    TakeBid(table, roles);
    if (roles.HasBars() && BarShare(table, roles) < kEnoughBars)
        roles.doubts.push_back("in many rows a price is above the high or below the low");
    const bool bPrice = roles.HasBars() || roles.ColumnOf(Meaning::Price);
    if (!bPrice && !FindBar(table, moments, roles))
        FindSinglePrice(table, moments, roles);
    FindVolumeBehind(table, moments, roles);
    FindSymbol(table, moments, roles);
    SettleVolume(table, moments, roles);
    TakeWeakVolume(table, moments, roles);
    return roles;
}

} // namespace tabulex::advice
