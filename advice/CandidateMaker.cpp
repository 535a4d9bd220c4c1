// Expected rows are read here, without the engine, so that what comes out of it can be held against
// them. Steps and order of these rows choose the resolution, and whether they have to be sorted.
#include "advice/CandidateMaker.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include <fmt/format.h>

namespace tabulex::advice {

namespace {

using namespace IQRL_TabulexConverter;
using intake::ClockForm;

constexpr double kMostWhole = 9e18; // the engine's whole numbers

struct TypeRow
{
    Meaning meaning;
    const char* pszName;
    bool bDaysOnly; // admitted for days and weeks alone
};

constexpr TypeRow kTypes[] = {{Meaning::Open, "Open", false},
                              {Meaning::High, "High", false},
                              {Meaning::Low, "Low", false},
                              {Meaning::Close, "Close", false},
                              {Meaning::Price, "Price", false},
                              {Meaning::Volume, "Volume", false},
                              {Meaning::UpVolume, "Up Volume", false},
                              {Meaning::DownVolume, "Down Volume", false},
                              {Meaning::UnchangedVolume, "Unchanged Volume", false},
                              {Meaning::UpTicks, "Up Ticks", false},
                              {Meaning::DownTicks, "Down Ticks", false},
                              {Meaning::UnchangedTicks, "Unchanged Ticks", false},
                              {Meaning::Trades, "Total Ticks", false},
                              {Meaning::TickVolume, "Total Ticks", false},
                              {Meaning::OpenInterest, "Open Interest", true}};

const TypeRow* TypeRowOf(Meaning meaning)
{
    const auto at = std::ranges::find(kTypes, meaning, &TypeRow::meaning);
    return at == std::end(kTypes) ? nullptr : at;
}

bool IsPrice(Meaning meaning)
{
    return meaning >= Meaning::Open && meaning <= Meaning::Price;
}

intake::Thousands ThousandsOf(char c)
{
    switch (c) {
    case ',':
        return intake::Thousands::Comma;
    case '.':
        return intake::Thousands::Point;
    case ' ':
        return intake::Thousands::Blank;
    case '\'':
        return intake::Thousands::Apostrophe;
    default:
        return intake::Thousands::None;
    }
}

intake::Source SourceOf(std::size_t nColumn)
{
    return {static_cast<std::uint32_t>(nColumn + 1), 0};
}

// Which of the roles the engine has a column for, each type once and prices first.
std::vector<Role> AdmittedRoles(const Table& table, const Roles& roles, bool bTimes)
{
    const bool bBars = roles.HasBars();
    std::vector<Role> admitted;
    std::vector<std::string> taken;
    for (const TypeRow& type : kTypes) {
        const auto at = std::ranges::find(roles.roles, type.meaning, &Role::meaning);
        if (at == roles.roles.end() || std::ranges::find(taken, type.pszName) != taken.end())
            continue;
        const Column& column = table.columns[at->nColumn];
        const bool bOfTick = type.meaning == Meaning::Price || type.meaning == Meaning::Volume;
        const bool bFits =
            bBars ? type.meaning != Meaning::Price && !(type.bDaysOnly && bTimes) : bOfTick;
        const bool bScales = type.meaning == Meaning::Volume || IsPrice(type.meaning);
        if (!bFits || (!bScales && column.nMostDecimals > 0) ||
            (!IsPrice(type.meaning) && IsRare(column)))
            continue;
        admitted.push_back(*at);
        taken.emplace_back(type.pszName);
    }
    return admitted;
}

// A symbol of all rows whose marks the engine would drop isn't read.
const Role* SymbolRole(const Table& table, const Roles& roles)
{
    const auto at = std::ranges::find(roles.roles, Meaning::Symbol, &Role::meaning);
    if (at == roles.roles.end())
        return nullptr;
    const Column& column = table.columns[at->nColumn];
    const bool bMarks = column.sFirst.find_first_of("'\"") != std::string_view::npos;
    return bMarks && column.bConstant ? nullptr : &*at;
}

} // namespace

bool IsRare(const Column& column)
{
    return column.nCells * 10 < (column.nCells + column.nMissing) * 3;
}

std::string TypeNameOf(Meaning meaning)
{
    const TypeRow* row = TypeRowOf(meaning);
    return row ? row->pszName : "";
}

CandidateMaker::CandidateMaker(const Table& table, const MomentChoice& choice, const Roles& roles,
                               bool bTimes)
    : m_table(table), m_choice(choice), m_symbol(SymbolRole(table, roles)),
      m_roles(AdmittedRoles(table, roles, bTimes)), m_sSymbol(roles.sSymbol), m_bTimes(bTimes),
      m_bBars(roles.HasBars())
{}

// A row that lacks any of its numbers is a bad line, as it is to the engine.
bool CandidateMaker::ReadRowOf(const TableRow& row, ReadRow& read) const
{
    const auto moment = m_choice.Of(row);
    if (!moment)
        return false;
    read.nMoment = *moment;
    if (!m_bTimes)
        read.nMoment -= (read.nMoment % 86400000 + 86400000) % 86400000;
    if (m_symbol)
        read.sSymbol = row.Cell(m_symbol->nColumn);
    for (const Role& role : m_roles) {
        const auto number = ReadNumber(row.Cell(role.nColumn), m_table.style);
        if (!number)
            return false;
        read.values.push_back(number->dValue);
    }
    return true;
}

void CandidateMaker::ReadRowsOf(ReadRows& expected) const
{
    for (const Role& role : m_roles)
        expected.columns.push_back(TypeNameOf(role.meaning));
    expected.bSymbols = m_symbol != nullptr;
    expected.bTimes = m_bTimes;
    for (const TableRow& row : m_table.rows) {
        ReadRow read;
        if (ReadRowOf(row, read))
            expected.rows.push_back(std::move(read));
        else
            ++expected.nBad;
    }
}

void CandidateMaker::TakeColumns(intake::Recipe& recipe) const
{
    recipe.cells.cDivider = m_table.dialect.cDivider;
    recipe.cells.bQuotes = m_table.dialect.bQuotes;
    if (m_symbol)
        recipe.takes.push_back({{SourceOf(m_symbol->nColumn)}, "Symbol"});
    for (const Role& role : m_roles)
        recipe.takes.push_back({{SourceOf(role.nColumn)}, TypeNameOf(role.meaning)});
    if (!m_symbol && !m_sSymbol.empty())
        recipe.sSymbol = m_sSymbol;
}

// Marks that no cell of a column that is read has aren't asked for. The engine's volumes are whole,
// so fractions are scaled by as many digits as the sample has, unless the greatest wouldn't fit.
void CandidateMaker::SetNumbers(intake::Recipe& recipe) const
{
    unsigned uMarks = 0;
    for (const Role& role : m_roles)
        uMarks |= m_table.columns[role.nColumn].uMarks;
    recipe.numbers.decimal =
        m_table.style.cDecimal == ',' ? intake::Decimal::Comma : intake::Decimal::Point;
    if (uMarks & MarkThousands)
        recipe.numbers.thousands = ThousandsOf(m_table.style.cThousands);
    recipe.numbers.bSuffix = uMarks & MarkSuffix;
    recipe.numbers.bPercent = uMarks & MarkPercent;
    recipe.numbers.bExponent = uMarks & MarkExponent;
    recipe.numbers.bCurrency = uMarks & MarkCurrency;
    for (const Role& role : m_roles) {
        const Column& column = m_table.columns[role.nColumn];
        if (IsPrice(role.meaning) || column.nMostDecimals == 0)
            continue;
        int nDigits = std::min<int>(column.nMostDecimals, intake::kMostScale);
        while (nDigits > 0 && column.dMost * std::pow(10.0, nDigits) > kMostWhole)
            --nDigits;
        recipe.scales.push_back({TypeNameOf(role.meaning), static_cast<std::uint32_t>(nDigits)});
    }
}

// Trades need a time; a day without one has its midnight.
void CandidateMaker::SetMoment(intake::Recipe& recipe) const
{
    intake::Moment moment;
    for (const std::size_t nColumn : m_choice.columns)
        moment.from.push_back(SourceOf(nColumn));
    moment.date = m_choice.form.date;
    moment.clock = m_bTimes ? m_choice.form.clock : m_bBars ? ClockForm::None : ClockForm::Any;
    recipe.moment = moment;
}

// The engine takes the range of a file from its first and last line. Behind the rows there may be
// others.
void CandidateMaker::SetOrder(const StepFacts& steps, Reading& reading) const
{
    reading.bWholeFile =
        steps.bWholeFile || !m_choice.Of(m_table.rows.front()) || !m_choice.Of(m_table.rows.back());
    if (steps.bForwards || steps.bBackwards)
        return;
    if (steps.nSymbols > 1) {
        reading.recipe.order = intake::Order::SymbolAndMoment;
        reading.bWholeFile = true;
        reading.steps.push_back("rows are sorted by symbol and moment, as the symbols alternate");
    } else {
        reading.recipe.order = intake::Order::Moment;
        reading.steps.push_back("rows are sorted by moment, as they run to and fro");
    }
}

// Lines without a date that are many belong to the file, and would hide what is bad.
void CandidateMaker::LeaveOutRows(Reading& reading, ReadRows& expected) const
{
    const auto nWithout = std::ranges::count_if(m_table.rows, [&](const TableRow& row) {
        return IsMissing(row.Cell(m_choice.columns.front()));
    });
    if (static_cast<std::size_t>(nWithout) * 20 < m_table.rows.size())
        return;
    reading.recipe.linesOut.bNoDate = true;
    expected.nBad -= static_cast<std::uint64_t>(nWithout);
    reading.steps.push_back(fmt::format("rows without a date are left out, {} of {} sampled",
                                        nWithout, m_table.rows.size()));
}

Candidate CandidateMaker::Make()
{
    Candidate candidate;
    candidate.roles = m_roles;
    ReadRowsOf(candidate.expected);
    Reading& reading = candidate.reading;
    TakeColumns(reading.recipe);
    SetNumbers(reading.recipe);
    SetMoment(reading.recipe);
    const StepFacts steps = FindSteps(candidate.expected.rows);
    ChooseResolution(steps, m_bBars, m_bTimes, reading);
    if (reading.nResolution == ResolutionTickBars && !m_bTimes)
        reading.recipe.moment->clock = ClockForm::Any;
    SetOrder(steps, reading);
    LeaveOutRows(reading, candidate.expected);
    return candidate;
}

} // namespace tabulex::advice
