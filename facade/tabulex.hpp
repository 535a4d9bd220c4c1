// tabulex.hpp: reads files of market data in C++20.
//
//     const auto file = tabulex::open("quotes.csv");
//     auto rows = file.rows();
//     for (const auto& row : rows)
//         std::cout << row.symbol() << ' ' << row.close() << '\n';
//     for (const auto& bad : rows.bad_lines())
//         std::cerr << bad.line << ": " << bad.message << '\n';
//
// The layout of the file is worked out by the library. All texts are UTF-8, paths are bytes as
// the system has them. What can't be opened or read throws tabulex::error.
//
// A File, and its Rows, are for one thread at a time; any number of them may be used on as many
// threads, also on one and the same file. Messages are English and the text of files is UTF-8
// unless the program chooses otherwise by set_encoding, or by the calls of
// interfaces/NativeHost.h.
#pragma once

#include <concepts>

#include "tabulex/rows.hpp"

namespace tabulex {

// What a reading by callback came to.
struct Summary
{
    Counts counts;
    std::vector<BadLine> bad_lines; // empty where they were given to Reading::on_bad_line
    bool is_complete = false;       // not stopped by the callback, and not cancelled
};

class File
{
public:
    // As open(), below.
    File(std::string path, const Settings& settings);

    const std::string& path() const { return m_shape->file; }
    const Layout& layout() const { return m_layout; }
    // All columns of the file, those too that aren't read.
    const std::vector<Column>& columns() const { return m_columns; }

    // The rows for a loop. Throws error where the file can't be read that way, which the layout
    // tells beforehand, and while other rows of this object are being read.
    Rows rows(Reading reading = {}) const { return {m_reader, m_shape, std::move(reading)}; }

    // Calls take(row) for each row, until the end or until it gives false.
    template <std::invocable<const Row&> Take>
    Summary read(Take take, Reading reading = {}) const;

private:
    void take_layout();
    void take_columns(std::size_t count);
    static Layout layout_of(const detail::LayoutRow& row);

    detail::ReaderHandle m_reader;
    std::shared_ptr<const detail::RowShape> m_shape;
    Layout m_layout;
    std::vector<Column> m_columns;
};

// Opens a file and works out its layout. Throws error where it can't be opened, and where a
// setting doesn't fit it.
inline File open(std::string path, const Settings& settings = {})
{
    return {std::move(path), settings};
}

// The code page in which the text of files is read, by name or number: "utf-8", "gbk",
// "windows-1252". For the whole process, and for files that are opened afterwards. False for an
// unknown one.
inline bool set_encoding(const std::string& name)
{
    return detail::TabulexReaderEncoding(detail::text_of(name)) != 0;
}

// ---- implementation

namespace detail {

inline std::int64_t given(const std::optional<Moment>& value)
{
    return value ? value->time_since_epoch().count() : kNotGiven;
}

template <class T>
std::int64_t given(const std::optional<T>& value)
{
    return value ? static_cast<std::int64_t>(*value) : kNotGiven;
}

inline std::optional<Moment> moment_of(std::int64_t value)
{
    return value == kNotGiven ? std::nullopt : std::optional(Moment(TimeOfDay(value)));
}

inline ReaderHandle open_reader(const std::string& path, const Settings& settings)
{
    std::vector<ColumnChoice> columns;
    for (const ColumnSetting& column : settings.columns)
        columns.push_back({static_cast<std::uint32_t>(column.column),
                           static_cast<std::int32_t>(column.field), text_of(column.pattern)});
    const Choices choices{columns.data(),
                          columns.size(),
                          given(settings.dividers),
                          given(settings.header),
                          given(settings.lines_to_skip),
                          given(settings.resolution),
                          given(settings.size),
                          given(settings.code_page),
                          given(settings.from),
                          given(settings.to),
                          text_of(settings.symbol),
                          static_cast<std::int32_t>(settings.price_multiplier),
                          static_cast<std::int32_t>(settings.volume_multiplier)};
    Failure failure;
    Reader* const reader = TabulexReaderOpen(text_of(path), &choices, failure.taker());
    if (!reader)
        failure.raise(path);
    return {reader, TabulexReaderClose};
}

inline Column column_of(const ColumnRow& row)
{
    const auto field = static_cast<Field>(row.field);
    return {std::string(name_of(field)), field, kind_of(field), string_of(row.pattern),
            string_of(row.heading)};
}

// Only the columns that are read.
inline std::shared_ptr<const RowShape> shape_of(std::string path,
                                                const std::vector<Column>& columns)
{
    auto shape = std::make_shared<RowShape>();
    shape->file = std::move(path);
    shape->place.fill(-1);
    for (const Column& column : columns)
        if (column.field != Field::none) {
            shape->place[static_cast<std::size_t>(column.field)] =
                static_cast<std::int8_t>(shape->columns.size());
            shape->columns.push_back(column);
        }
    return shape;
}

} // namespace detail

inline File::File(std::string path, const Settings& settings)
    : m_reader(detail::open_reader(path, settings))
{
    detail::LayoutRow row{};
    TabulexReaderLayout(m_reader.get(), &row);
    m_layout = layout_of(row);
    take_columns(row.column_count);
    m_shape = detail::shape_of(std::move(path), m_columns);
}

inline Layout File::layout_of(const detail::LayoutRow& row)
{
    return {row.dividers,
            row.has_header != 0,
            row.lines_to_skip,
            detail::string_of(row.header),
            row.runs_backwards != 0,
            static_cast<Resolution>(row.resolution),
            row.size,
            detail::moment_of(row.first),
            detail::moment_of(row.last),
            detail::string_of(row.fault)};
}

inline void File::take_columns(std::size_t count)
{
    for (std::size_t i = 0; i < count; ++i) {
        detail::ColumnRow row{};
        TabulexReaderColumn(m_reader.get(), i, &row);
        m_columns.push_back(detail::column_of(row));
    }
}

template <std::invocable<const Row&> Take>
Summary File::read(Take take, Reading reading) const
{
    Rows found = rows(std::move(reading));
    for (const Row& row : found) {
        if constexpr (std::convertible_to<std::invoke_result_t<Take&, const Row&>, bool>) {
            if (!take(row))
                break;
        } else {
            take(row);
        }
    }
    return {found.counts(), found.bad_lines(), found.is_complete()};
}

} // namespace tabulex
