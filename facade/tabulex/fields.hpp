// Fields, resolutions and multipliers by name and number.
//
// The numbers are the component's own (interfaces/FieldsAndResolutions.h and the codes of
// IqrlTabulexConvertor::PriceMultiplier). Programs may store them: they never change.
#pragma once

#include <algorithm>
#include <array>
#include <cstdint>
#include <string_view>

namespace tabulex {

// What a column of a file holds.
enum class Field : std::int32_t
{
    none = -1, // the column isn't read
    symbol = 0,
    date = 1,
    time = 2,
    open = 3, // first of the prices
    high = 4,
    low = 5,
    close = 6,  // last price of a bar
    price = 7,  // price of a tick, and last of the prices
    volume = 8, // this and all that follow are whole numbers
    up_volume = 9,
    down_volume = 10,
    unchanged_volume = 11,
    total_volume = 12,
    up_ticks = 13,
    down_ticks = 14,
    unchanged_ticks = 15,
    total_ticks = 16,
    open_interest = 17,
};

// What one row stands for.
enum class Resolution : std::int32_t
{
    none = 0, // not known; such a file can't be read
    ticks = 1,
    tick_bars = 2,
    count_bars = 3,
    seconds = 4, // never found by itself
    minutes = 5,
    days = 6,
    weeks = 7,
};

// Factors for prices and volumes.
enum class Multiplier : std::uint8_t
{
    times_1000000 = 0x01,
    times_100000 = 0x40,
    times_10000 = 0x41,
    times_1000 = 0x42,
    times_100 = 0x43,
    times_10 = 0x44,
    one = 0x45,
    tenth = 0x49,
    hundredth = 0x4D,
    thousandth = 0x4E,
    part_of_10000 = 0x4F,
    part_of_100000 = 0x50,
    part_of_1000000 = 0x02,
};

// The kind of a column's values, by which a row gives them out.
enum class Kind
{
    none,
    text,   // Symbol
    date,   // days
    time,   // milliseconds since midnight
    price,  // double
    number, // 64 bits: volumes, ticks, open interest
};

namespace detail {

inline constexpr std::array<std::string_view, 18> field_names = {
    "Symbol",       "Date",          "Time",        "Open",
    "High",         "Low",           "Close",       "Price",
    "Volume",       "Up Volume",     "Down Volume", "Unchanged Volume",
    "Total Volume", "Up Ticks",      "Down Ticks",  "Unchanged Ticks",
    "Total Ticks",  "Open Interest",
};

inline constexpr std::array<std::string_view, 8> resolution_names = {
    "None", "Ticks", "Tick Bars", "Count Bars", "Seconds", "Minutes", "Days", "Weeks",
};

constexpr char lower(char c)
{
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c + ('a' - 'A')) : c;
}

} // namespace detail

// "Open Interest"; empty for none.
constexpr std::string_view name_of(Field field)
{
    const auto at = static_cast<std::size_t>(static_cast<std::int32_t>(field));
    return at < detail::field_names.size() ? detail::field_names[at] : std::string_view();
}

// "Minutes".
constexpr std::string_view name_of(Resolution resolution)
{
    const auto at = static_cast<std::size_t>(resolution);
    return at < detail::resolution_names.size() ? detail::resolution_names[at] : std::string_view();
}

// The field of this name, whatever its case; none if there is no such name.
constexpr Field field_of(std::string_view name)
{
    const auto at = std::ranges::find_if(detail::field_names, [name](std::string_view field) {
        return std::ranges::equal(field, name, {}, detail::lower, detail::lower);
    });
    return at == detail::field_names.end() ? Field::none
                                           : static_cast<Field>(at - detail::field_names.begin());
}

constexpr Kind kind_of(Field field)
{
    if (field == Field::symbol)
        return Kind::text;
    if (field == Field::date)
        return Kind::date;
    if (field == Field::time)
        return Kind::time;
    if (field >= Field::open && field <= Field::price)
        return Kind::price;
    return field >= Field::volume && field <= Field::open_interest ? Kind::number : Kind::none;
}

} // namespace tabulex
