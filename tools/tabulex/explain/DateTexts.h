// What a text is that looks like a date or a time and isn't read as one.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace tabulex {

enum class DateShapeKind
{
    DateAndTime, // both in one cell, with a blank between
    Moment,      // a whole moment in one text without a blank
    DateOnly,
    TimeOnly,
    NoDate // such as "n/a"
};

struct DateShape
{
    DateShapeKind kind;
    std::string_view what; // "it looks like seconds since 1970, which aren't read"
    std::string_view next; // "convert that column first"
};

// Empty for a text that doesn't look like a date or a time at all.
const DateShape* DateShapeOf(const std::string& text);

} // namespace tabulex
