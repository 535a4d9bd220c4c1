// Settings: what a program knows better than the detection does. What is left as it is will be
// worked out from the file.
#pragma once

#include <chrono>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "tabulex/fields.hpp"

namespace tabulex {

using Moment = std::chrono::sys_time<std::chrono::milliseconds>; // without a time zone

// Characters that part columns, to be joined by |.
enum Divider : std::uint32_t
{
    colon = 1,
    blank = 2,
    comma = 4,
    semicolon = 8,
    bar = 16,
    tab = 32,
};

struct ColumnSetting
{
    std::size_t column; // from 0
    Field field = Field::none;
    // How a date or time is written, as in docs/templates.md: "*d/*m/*y". Empty: the first one
    // that reads the file's first and last row.
    std::string pattern = {};
};

struct Settings
{
    std::vector<ColumnSetting> columns = {};
    std::optional<std::uint32_t> dividers = {};      // Divider
    std::optional<bool> header = {};                 // whether a line names the columns
    std::optional<std::uint32_t> lines_to_skip = {}; // ahead of the header, or of the data
    std::optional<Resolution> resolution = {};
    std::optional<std::int32_t> size = {};       // in units of the resolution
    std::optional<std::uint32_t> code_page = {}; // number, such as 936
    // Only rows of this range, both ends included, and of this symbol, whose case matters. The
    // file is read to its end all the same: its symbols may come one after the other.
    std::optional<Moment> from = {};
    std::optional<Moment> to = {};
    std::string symbol = {};
    Multiplier price_multiplier = Multiplier::one;
    Multiplier volume_multiplier = Multiplier::one; // fractions are cut, and counted
};

// What was found in a file, the settings applied.
struct Layout
{
    std::uint32_t dividers = 0; // Divider
    bool has_header = false;
    std::uint32_t lines_to_skip = 0; // ahead of the header, or of the data
    std::string header;              // the line itself
    bool runs_backwards = false;     // the last line is the earliest; rows come earliest first
    Resolution resolution = Resolution::none;
    std::int32_t size = 0;       // in units of the resolution: 5 for bars of five minutes
    std::optional<Moment> first; // of the first and last line of data
    std::optional<Moment> last;
    std::string fault; // why no rows can be read; empty if they can
};

struct Column
{
    std::string name; // of the field; empty for a column that isn't read
    Field field = Field::none;
    Kind kind = Kind::none;
    std::string pattern; // "*y-*m-*d"; "float" and "int" for numbers
    std::string heading; // its word in the header; empty without one
};

} // namespace tabulex
