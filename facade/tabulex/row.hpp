// Row: one record of a file, typed. BadLine: one that couldn't be read.
//
// A row is a place in a batch that it shares with its neighbours: copying one is cheap, and it
// may be kept for as long as it is wanted, though it keeps its batch, of up to 1000 rows.
#pragma once

#include <chrono>
#include <cstdint>
#include <cstdio>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "tabulex/entries.hpp"
#include "tabulex/error.hpp"
#include "tabulex/settings.hpp"

namespace tabulex {

using Date = std::chrono::sys_days;
using TimeOfDay = std::chrono::milliseconds; // since midnight

// By Kind: text, date, time, price, number.
using Value = std::variant<std::string, Date, TimeOfDay, double, std::int64_t>;

struct BadLine
{
    std::uint64_t line = 0;            // from 1; lines without content aren't counted
    std::optional<std::size_t> column; // from 0; empty: the line as a whole
    std::string message;
};

// "2003-01-14 09:30:00", with ".250" behind it where the milliseconds aren't 0.
std::string to_text(Moment moment);

namespace detail {

// The columns that a row has, and where each field is.
struct RowShape
{
    std::string file;
    std::vector<Column> columns;
    std::array<std::int8_t, field_names.size()> place; // -1: no such column
};

struct BatchData
{
    Batch* handle = nullptr;
    BatchRow rows{};
    std::shared_ptr<const RowShape> shape;

    BatchData() = default;
    BatchData(const BatchData&) = delete;
    BatchData& operator=(const BatchData&) = delete;
    ~BatchData() { TabulexBatchClose(handle); }
};

} // namespace detail

class Row
{
public:
    Row() = default;

    // ---- what rows are made of: the columns that are read, in the order of the file

    const std::vector<Column>& columns() const { return m_batch->shape->columns; }
    std::size_t size() const { return columns().size(); }
    bool has(Field field) const { return place_of(field) >= 0; }

    // ---- any column; std::out_of_range for one that isn't there

    Value operator[](std::size_t column) const;
    Value operator[](Field field) const { return (*this)[require(field)]; }
    Value operator[](std::string_view name) const { return (*this)[field_of(name)]; }

    // ---- by field; std::out_of_range where the file has no such column

    std::string symbol() const;
    Date date() const { return Date(std::chrono::days(cell(Field::date).number)); }
    // Midnight where the file has no times.
    TimeOfDay time() const { return TimeOfDay(has(Field::time) ? cell(Field::time).number : 0); }
    Moment moment() const { return Moment(date()) + time(); }
    double open() const { return price_of(Field::open); }
    double high() const { return price_of(Field::high); }
    double low() const { return price_of(Field::low); }
    // The last price of a bar, or that of a tick.
    double close() const { return price_of(has(Field::close) ? Field::close : Field::price); }
    // Volume or Total Volume.
    std::int64_t volume() const
    {
        return number_of(has(Field::volume) ? Field::volume : Field::total_volume);
    }
    double price_of(Field field) const;
    std::int64_t number_of(Field field) const;

private:
    friend class Rows;

    int place_of(Field field) const
    {
        const auto at = static_cast<std::size_t>(static_cast<std::int32_t>(field));
        const auto& place = m_batch->shape->place;
        return at < place.size() ? place[at] : -1;
    }
    std::size_t require(Field field) const;
    const detail::Cell& at(std::size_t column) const
    {
        return m_batch->rows.cells[m_row * size() + column];
    }
    const detail::Cell& cell(Field field) const { return at(require(field)); }
    std::string text_at(std::size_t column) const
    {
        const auto& text = at(column).text;
        return {m_batch->rows.texts + text.offset, text.size};
    }

    std::shared_ptr<const detail::BatchData> m_batch;
    std::size_t m_row = 0;
};

// ---- implementation

inline std::string to_text(Moment moment)
{
    const auto day = std::chrono::floor<std::chrono::days>(moment);
    const std::chrono::year_month_day date(day);
    const std::chrono::hh_mm_ss time(moment - day);
    const auto thousandths = static_cast<int>(time.subseconds().count());
    char text[64];
    const int size = std::snprintf(
        text, sizeof text, "%04d-%02u-%02u %02d:%02d:%02d.%03d", static_cast<int>(date.year()),
        static_cast<unsigned>(date.month()), static_cast<unsigned>(date.day()),
        static_cast<int>(time.hours().count()), static_cast<int>(time.minutes().count()),
        static_cast<int>(time.seconds().count()), thousandths);
    return {text, static_cast<std::size_t>(thousandths ? size : size - 4)};
}

inline std::size_t Row::require(Field field) const
{
    const int place = place_of(field);
    if (place < 0)
        throw std::out_of_range(m_batch->shape->file + ": no column holds " +
                                std::string(field == Field::none ? "that" : name_of(field)));
    return static_cast<std::size_t>(place);
}

inline Value Row::operator[](std::size_t column) const
{
    const Kind kind = columns().at(column).kind;
    const detail::Cell& value = at(column);
    switch (kind) {
    case Kind::text:
        return text_at(column);
    case Kind::date:
        return Date(std::chrono::days(value.number));
    case Kind::time:
        return TimeOfDay(value.number);
    case Kind::price:
        return value.price;
    default:
        return value.number;
    }
}

inline std::string Row::symbol() const
{
    return text_at(require(Field::symbol));
}

inline double Row::price_of(Field field) const
{
    if (kind_of(field) != Kind::price)
        throw std::out_of_range(std::string(name_of(field)) + " is no price");
    return cell(field).price;
}

inline std::int64_t Row::number_of(Field field) const
{
    if (kind_of(field) != Kind::number)
        throw std::out_of_range(std::string(name_of(field)) + " is no whole number");
    return cell(field).number;
}

} // namespace tabulex
