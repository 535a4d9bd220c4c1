// A cell of a moment, and what it becomes.
#pragma once

#include <span>
#include <string>

#include <gtest/gtest.h>

#include "tests/intake/Clean.h"

namespace intake_test {

struct MomentCase
{
    const char* pszForm; // of column 1, with other options behind it
    const char* pszCell;
    const char* pszClean; // empty: not read
};

inline std::string CleanMoment(const MomentCase& row)
{
    const std::string line =
        CleanLine(std::string("--separator bar --take 2=Close --moment 1:") + row.pszForm,
                  std::string(row.pszCell) + "|7");
    return line.ends_with(";7") ? line.substr(0, line.size() - 2) : "";
}

inline void Check(std::span<const MomentCase> rows)
{
    for (const MomentCase& row : rows)
        EXPECT_EQ(CleanMoment(row), row.pszClean) << row.pszForm << " '" << row.pszCell << "'";
}

} // namespace intake_test
