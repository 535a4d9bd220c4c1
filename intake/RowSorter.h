// RowSorter: rows in the order of their symbol and moment, or of the moment alone.
//
// Rows with the same key stay in the order in which they came. What doesn't fit into memory waits
// in a store. Used by one thread.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string_view>
#include <vector>

#include "intake/Intake.h"

namespace tabulex::intake {

struct SortedRow
{
    std::int64_t nMoment = 0;
    std::uint64_t nOrigin = 0; // of the line in the file, from 0; rows come with rising ones
    std::uint32_t nSymbol = 0; // bytes of the text that are its symbol; 0 to sort without
    std::string_view text;

    std::string_view Symbol() const { return text.substr(0, nSymbol); }
};

class RowSorter
{
public:
    // Of rows in memory, about.
    static constexpr std::size_t kMostBytes = std::size_t{32} << 20;

    explicit RowSorter(MakeStore makeStore, std::size_t nMostBytes = kMostBytes);

    void Add(const SortedRow& row);
    // All rows, in order. Once. The text is good for the call.
    void Give(const std::function<void(const SortedRow&)>& take);

private:
    struct Place; // of a row in memory
    class Run;    // sorted rows in the store

    void SortRows();
    void WriteRun();
    SortedRow RowAt(const Place& place) const;
    bool IsBefore(const Place& a, const Place& b) const;

    MakeStore m_makeStore;
    const std::size_t m_nMostBytes;
    std::unique_ptr<Store> m_store;    // null until memory was full
    std::uint64_t m_nStored = 0;       // bytes in the store
    std::vector<std::uint64_t> m_runs; // where each begins
    std::vector<char> m_texts;
    std::vector<Place> m_places;

public:
    ~RowSorter();
};

} // namespace tabulex::intake
