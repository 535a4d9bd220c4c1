// Rows are gathered until memory is full, sorted, and written to the store as a run; in the end the
// runs are merged, each read in blocks. A row in the store is its numbers, then its text.

#include "intake/RowSorter.h"

#include <algorithm>
#include <cstring>
#include <queue>
#include <tuple>

namespace tabulex::intake {

namespace {

// Ahead of each text in a run.
struct RowHead
{
    std::int64_t nMoment;
    std::uint64_t nOrigin;
    std::uint32_t nSymbol;
    std::uint32_t nText;
};

bool Precedes(const SortedRow& a, const SortedRow& b)
{
    if (const int nOrder = a.Symbol().compare(b.Symbol()); nOrder != 0)
        return nOrder < 0;
    return std::tie(a.nMoment, a.nOrigin) < std::tie(b.nMoment, b.nOrigin);
}

} // namespace

struct RowSorter::Place
{
    std::size_t nText;
    RowHead head;
};

// The rows of a run, one after the other.
class RowSorter::Run
{
public:
    Run(Store& store, std::uint64_t nBegin, std::uint64_t nEnd, std::size_t nBlock)
        : m_store(store), m_nNext(nBegin), m_nEnd(nEnd), m_nBlock(nBlock)
    {}

    // False at the end. The row is good until the next call.
    bool Next()
    {
        if (!Have(sizeof(RowHead)))
            return false;
        RowHead head;
        std::memcpy(&head, m_bytes.data() + m_nAt, sizeof head);
        m_nAt += sizeof head;
        Have(head.nText);
        m_row = {head.nMoment, head.nOrigin, head.nSymbol, {m_bytes.data() + m_nAt, head.nText}};
        m_nAt += head.nText;
        return true;
    }
    const SortedRow& Row() const { return m_row; }

private:
    // Reads on until so many bytes are there; false at the end of the run.
    bool Have(std::size_t nBytes)
    {
        if (m_bytes.size() - m_nAt >= nBytes)
            return true;
        m_bytes.erase(m_bytes.begin(), m_bytes.begin() + static_cast<std::ptrdiff_t>(m_nAt));
        m_nAt = 0;
        const std::size_t nHave = m_bytes.size();
        const std::size_t nMore = static_cast<std::size_t>(
            std::min<std::uint64_t>(m_nEnd - m_nNext, std::max(m_nBlock, nBytes)));
        m_bytes.resize(nHave + nMore);
        m_store.ReadAt(m_nNext, {m_bytes.data() + nHave, nMore});
        m_nNext += nMore;
        return m_bytes.size() >= nBytes;
    }

    Store& m_store;
    std::uint64_t m_nNext;
    const std::uint64_t m_nEnd;
    const std::size_t m_nBlock;
    std::vector<char> m_bytes;
    std::size_t m_nAt = 0;
    SortedRow m_row;
};

RowSorter::RowSorter(MakeStore makeStore, std::size_t nMostBytes)
    : m_makeStore(std::move(makeStore)), m_nMostBytes(nMostBytes)
{}

RowSorter::~RowSorter() = default;

SortedRow RowSorter::RowAt(const Place& place) const
{
    const RowHead& head = place.head;
    return {head.nMoment, head.nOrigin, head.nSymbol, {m_texts.data() + place.nText, head.nText}};
}

bool RowSorter::IsBefore(const Place& a, const Place& b) const
{
    return Precedes(RowAt(a), RowAt(b));
}

void RowSorter::Add(const SortedRow& row)
{
    if (m_texts.size() + m_places.size() * sizeof(Place) > m_nMostBytes)
        WriteRun();
    m_places.push_back(
        {m_texts.size(),
         {row.nMoment, row.nOrigin, row.nSymbol, static_cast<std::uint32_t>(row.text.size())}});
    m_texts.insert(m_texts.end(), row.text.begin(), row.text.end());
}

// Most files are in order already.
void RowSorter::SortRows()
{
    const auto before = [this](const Place& a, const Place& b) { return IsBefore(a, b); };
    if (!std::ranges::is_sorted(m_places, before))
        std::ranges::sort(m_places, before);
}

void RowSorter::WriteRun()
{
    constexpr std::size_t kBlock = 1 << 18;
    if (!m_store)
        m_store = m_makeStore();
    SortRows();
    m_runs.push_back(m_nStored);
    std::string block;
    for (const Place& place : m_places) {
        block.append(reinterpret_cast<const char*>(&place.head), sizeof place.head);
        block.append(m_texts.data() + place.nText, place.head.nText);
        if (block.size() >= kBlock || &place == &m_places.back()) {
            m_store->Append(block);
            m_nStored += block.size();
            block.clear();
        }
    }
    m_places.clear();
    m_texts.clear();
}

void RowSorter::Give(const std::function<void(const SortedRow&)>& take)
{
    if (m_runs.empty()) {
        SortRows();
        for (const Place& place : m_places)
            take(RowAt(place));
        return;
    }
    if (!m_places.empty())
        WriteRun();
    std::vector<char>().swap(m_texts);
    const std::size_t nBlock = std::max<std::size_t>(m_nMostBytes / 2 / m_runs.size(), 4096);
    std::vector<std::unique_ptr<Run>> runs;
    const auto later = [](const Run* a, const Run* b) { return Precedes(b->Row(), a->Row()); };
    std::priority_queue<Run*, std::vector<Run*>, decltype(later)> next(later);
    for (std::size_t n = 0; n < m_runs.size(); ++n) {
        const std::uint64_t nEnd = n + 1 < m_runs.size() ? m_runs[n + 1] : m_nStored;
        runs.push_back(std::make_unique<Run>(*m_store, m_runs[n], nEnd, nBlock));
        if (runs.back()->Next())
            next.push(runs.back().get());
    }
    while (!next.empty()) {
        Run* const pRun = next.top();
        next.pop();
        take(pRun->Row());
        if (pRun->Next())
            next.push(pRun);
    }
}

} // namespace tabulex::intake
