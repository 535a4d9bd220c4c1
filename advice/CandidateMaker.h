// CandidateMaker: one reading of a table, and the rows that it should give.
#pragma once

#include <string>
#include <vector>

#include "advice/Candidates.h"
#include "advice/Steps.h"

namespace tabulex::advice {

// Takes the columns that have a meaning, under the engine's words, with moments and numbers as the
// table has them. What it is given must outlive it.
class CandidateMaker
{
public:
    CandidateMaker(const Table& table, const MomentChoice& choice, const Roles& roles, bool bTimes);

    Candidate Make();

private:
    void ReadRowsOf(ReadRows& expected) const;
    bool ReadRowOf(const TableRow& row, ReadRow& read) const;
    void TakeColumns(intake::Recipe& recipe) const;
    void SetNumbers(intake::Recipe& recipe) const;
    void SetMoment(intake::Recipe& recipe) const;
    void SetOrder(const StepFacts& steps, Reading& reading) const;
    void LeaveOutRows(Reading& reading, ReadRows& expected) const;

    const Table& m_table;
    const MomentChoice& m_choice;
    const Role* m_symbol;
    std::vector<Role> m_roles;
    std::string m_sSymbol;
    bool m_bTimes;
    bool m_bBars;
};

// A column that most rows lack: with it each of their lines would be bad.
bool IsRare(const Column& column);

} // namespace tabulex::advice
