// The library's side of tabulex.hpp: plain calls and plain data. A program uses the classes of
// tabulex.hpp and leaves these alone.
//
// Texts are UTF-8 with a length, and borrowed: what is handed in is copied where it is kept;
// what is given out is good for as long as the object it comes from isn't changed or closed.
// A call that can fail tells the reason to `fail` before it returns. No call throws.
#pragma once

#include <cstddef>
#include <cstdint>

namespace tabulex::detail {

struct Reader; // an open file
struct Run;    // a reading of its rows
struct Batch;  // rows of a run

struct Text
{
    const char* data;
    std::size_t size;
};

// `line` is 0 where no line is to blame.
using Fail = void (*)(void* context, Text message, std::uint64_t line);

struct Failing
{
    Fail tell;
    void* context;
};

// A number that isn't given is kNotGiven.
inline constexpr std::int64_t kNotGiven = INT64_MIN;

struct ColumnChoice
{
    std::uint32_t column; // from 0
    std::int32_t field;   // -1 for none
    Text pattern;         // empty: the one that fits
};

// Of Settings in settings.hpp; dates are milliseconds since 1970.
struct Choices
{
    const ColumnChoice* columns;
    std::size_t column_count;
    std::int64_t dividers;
    std::int64_t header;
    std::int64_t lines_to_skip;
    std::int64_t resolution;
    std::int64_t size;
    std::int64_t code_page;
    std::int64_t from;
    std::int64_t to;
    Text symbol; // empty for all
    std::int32_t price_multiplier;
    std::int32_t volume_multiplier;
};

// Of Layout in layout.hpp.
struct LayoutRow
{
    std::uint32_t dividers;
    std::uint32_t has_header;
    std::uint32_t lines_to_skip;
    std::uint32_t runs_backwards;
    std::int32_t resolution;
    std::int32_t size;
    std::int64_t first; // milliseconds since 1970; kNotGiven where it isn't known
    std::int64_t last;
    Text header;
    Text fault; // why no rows can be read; empty if they can
    std::size_t column_count;
};

struct ColumnRow
{
    std::int32_t field;
    Text pattern;
    Text heading;
};

// The value of a row in a column, by the column's kind: a day since 1970, milliseconds since
// midnight, a price, a whole number, or a text among the batch's texts.
union Cell {
    std::int64_t number;
    double price;
    struct
    {
        std::uint32_t offset, size;
    } text;
};

struct BadRow
{
    std::uint64_t line;
    std::uint32_t column; // from 0; 0xFFFFFFFF: the line as a whole
    Text message;
};

// Rows lie one after the other, each with a cell for each column that is read.
struct BatchRow
{
    const Cell* cells;
    std::size_t rows;
    const char* texts;
    const BadRow* bad; // lines that were rejected since the batch before
    std::size_t bad_count;
};

struct CountsRow
{
    std::uint64_t lines, delivered, bad, out_of_range, other_symbols, cut_volumes;
};

enum class Step : std::int32_t
{
    failed,
    batch,
    end,
    cancelled,
};

#pragma GCC visibility push(default)
extern "C" {

// Null after a failure.
Reader* TabulexReaderOpen(Text path, const Choices* choices, Failing fail);
void TabulexReaderClose(Reader* reader);
void TabulexReaderLayout(const Reader* reader, LayoutRow* layout);
void TabulexReaderColumn(const Reader* reader, std::size_t column, ColumnRow* row);

// One run of a reader at a time; null after a failure. The run ends before the reader.
Run* TabulexRunStart(Reader* reader, Failing fail);
// Waits for the next batch, which is the caller's to close, and may outlive the run.
Step TabulexRunNext(Run* run, Batch** batch, BatchRow* rows, Failing fail);
// From any thread. The next step gives Step::cancelled.
void TabulexRunCancel(Run* run);
// Of the batches that were given out.
void TabulexRunCounts(const Run* run, CountsRow* counts);
void TabulexRunClose(Run* run);

void TabulexBatchClose(Batch* batch);

// For the process: the code page in which the text of files is read. 0 for an unknown one.
int TabulexReaderEncoding(Text name);
}
#pragma GCC visibility pop

} // namespace tabulex::detail
