// Rows: one reading of a file's rows, a batch at a time.
//
// The file is read on a thread of the library, which is at most a few batches ahead of the
// program: memory is bounded, whatever the size of the file. A reading that is given up in the
// middle ends with this object. For one thread at a time, but for cancel.
#pragma once

#include <functional>
#include <iterator>
#include <memory>
#include <optional>
#include <stop_token>
#include <vector>

#include "tabulex/row.hpp"

namespace tabulex {

// lines = delivered + bad + out_of_range + other_symbols
struct Counts
{
    std::uint64_t lines = 0; // of data, with content
    std::uint64_t delivered = 0;
    std::uint64_t bad = 0;
    std::uint64_t out_of_range = 0;  // before Settings::from or after Settings::to
    std::uint64_t other_symbols = 0; // not of Settings::symbol
    std::uint64_t cut_volumes = 0;   // that the multiplier couldn't keep whole

    std::uint64_t skipped() const { return lines - delivered; }
};

struct Reading
{
    std::stop_token stop = {};
    // Each bad line, ahead of the rows of its batch, on the thread that asks for rows. Without
    // it they are collected.
    std::function<void(const BadLine&)> on_bad_line = {};
    std::size_t most_bad_lines = 10'000; // that are collected; all are counted
};

namespace detail {

using ReaderHandle = std::shared_ptr<Reader>;

struct CloseRun
{
    void operator()(Run* run) const { TabulexRunClose(run); }
};

} // namespace detail

class Rows
{
public:
    class iterator;

    // Rows are there once, for one loop. The first call waits for the first batch. Throws error
    // where reading fails, as does going on to the next row.
    iterator begin();
    std::default_sentinel_t end() const { return {}; }

    // Ends the loop at its next step of a batch. From any thread.
    void cancel() { TabulexRunCancel(m_state->run.get()); }

    // Of the batches that have come so far.
    const Counts& counts() const { return m_state->counts; }
    const std::vector<BadLine>& bad_lines() const { return m_state->bad_lines; }
    // The loop has seen all rows of the file.
    bool is_complete() const { return m_state->step == detail::Step::end; }
    bool is_cancelled() const { return m_state->step == detail::Step::cancelled; }

    // The file stays open for as long as its rows are being read.
    Rows(detail::ReaderHandle reader, std::shared_ptr<const detail::RowShape> shape,
         Reading reading)
        : m_state(std::make_unique<State>(std::move(reader), std::move(shape), std::move(reading)))
    {}

private:
    struct Canceller
    {
        detail::Run* run;
        void operator()() const { TabulexRunCancel(run); }
    };

    // What an iterator points to; it stays where it is when the rows are moved.
    struct State
    {
        State(detail::ReaderHandle file, std::shared_ptr<const detail::RowShape> columns,
              Reading how);

        bool next(); // false at the end
        bool next_batch();
        void take_bad_lines(const detail::BatchRow& rows);

        detail::ReaderHandle reader;
        std::shared_ptr<const detail::RowShape> shape;
        Reading reading;
        std::unique_ptr<detail::Run, detail::CloseRun> run;
        std::optional<std::stop_callback<Canceller>> stop; // goes ahead of the run
        Row row;
        detail::Step step = detail::Step::batch;
        Counts counts;
        std::vector<BadLine> bad_lines;
    };

    std::unique_ptr<State> m_state;
};

class Rows::iterator
{
public:
    using iterator_concept = std::input_iterator_tag;
    using value_type = Row;
    using difference_type = std::ptrdiff_t;

    iterator() = default;
    const Row& operator*() const { return m_state->row; }
    const Row* operator->() const { return &m_state->row; }
    iterator& operator++()
    {
        if (!m_state->next())
            m_state = nullptr;
        return *this;
    }
    void operator++(int) { ++*this; }
    friend bool operator==(const iterator& it, std::default_sentinel_t) { return !it.m_state; }

private:
    friend class Rows;
    explicit iterator(State* state) : m_state(state) {}

    State* m_state = nullptr;
};

// ---- implementation

inline Rows::State::State(detail::ReaderHandle file,
                          std::shared_ptr<const detail::RowShape> columns, Reading how)
    : reader(std::move(file)), shape(std::move(columns)), reading(std::move(how))
{
    detail::Failure failure;
    run.reset(TabulexRunStart(reader.get(), failure.taker()));
    if (!run)
        failure.raise(shape->file);
    stop.emplace(reading.stop, Canceller{run.get()});
}

inline Rows::iterator Rows::begin()
{
    return iterator(m_state->next() ? m_state.get() : nullptr);
}

inline bool Rows::State::next()
{
    if (row.m_batch && ++row.m_row < row.m_batch->rows.rows)
        return true;
    while (next_batch())
        if (row.m_batch->rows.rows != 0)
            return true;
    return false;
}

inline bool Rows::State::next_batch()
{
    row = Row();
    if (step != detail::Step::batch)
        return false;
    const auto batch = std::make_shared<detail::BatchData>();
    detail::Failure failure;
    step = TabulexRunNext(run.get(), &batch->handle, &batch->rows, failure.taker());
    if (step == detail::Step::failed)
        failure.raise(shape->file);
    if (step != detail::Step::batch)
        return false;
    detail::CountsRow now{};
    TabulexRunCounts(run.get(), &now);
    counts = {now.lines,        now.delivered,     now.bad,
              now.out_of_range, now.other_symbols, now.cut_volumes};
    take_bad_lines(batch->rows);
    batch->shape = shape;
    row.m_batch = batch;
    return true;
}

inline void Rows::State::take_bad_lines(const detail::BatchRow& rows)
{
    constexpr std::uint32_t whole_line = 0xFFFFFFFF;
    for (std::size_t i = 0; i < rows.bad_count; ++i) {
        const detail::BadRow& bad = rows.bad[i];
        BadLine line{bad.line, {}, detail::string_of(bad.message)};
        if (bad.column != whole_line)
            line.column = bad.column;
        if (reading.on_bad_line)
            reading.on_bad_line(line);
        else if (bad_lines.size() < reading.most_bad_lines)
            bad_lines.push_back(std::move(line));
    }
}

} // namespace tabulex
