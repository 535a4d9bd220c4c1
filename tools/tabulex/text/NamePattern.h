// NamePattern: what a part of a file's name stands for, as "{}_daily.csv" says.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace tabulex {

class NamePattern
{
public:
    // `pattern` has "{}" exactly once; beside it '*' stands for any characters and '?' for one.
    // Throws std::invalid_argument for any other.
    explicit NamePattern(std::string_view pattern);

    // The part of the name that "{}" stands for; empty where the name doesn't match. A '*' ahead
    // of it takes as much as it can, and "{}" as little, but one character at least.
    std::optional<std::string> PartOf(std::string_view name) const;

private:
    std::string m_sAhead;
    std::string m_sBehind;
};

} // namespace tabulex
