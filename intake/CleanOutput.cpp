#include "intake/CleanOutput.h"

#include <algorithm>
#include <utility>

#include "intake/OriginList.h"

namespace tabulex::intake {

namespace {

constexpr std::size_t kOutputBlock = 1 << 18;

} // namespace

CleanOutput::CleanOutput(const Recipe& recipe, Intake::Output output, MakeStore makeStore,
                         IntakeAccount& account)
    : m_output(std::move(output)), m_makeStore(std::move(makeStore)), m_account(account),
      m_bSymbols(recipe.order == Order::SymbolAndMoment), m_bHeading(recipe.HasHeading())
{
    if (recipe.order != Order::AsRead)
        m_sorter = std::make_unique<RowSorter>(m_makeStore);
}

void CleanOutput::Flush()
{
    if (m_text.Size() > 0)
        m_output(m_text.Text());
    m_text.CutTo(0);
}

void CleanOutput::FlushIfFull()
{
    if (m_text.Size() >= kOutputBlock)
        Flush();
}

void CleanOutput::EndHeading()
{
    m_text.Add('\n');
    ++m_nHeadings;
}

// Sorted rows stand without blank lines between.
void CleanOutput::BlankLine()
{
    if (!m_sorter)
        m_text.Add('\n');
    FlushIfFull();
}

void CleanOutput::EndRow(std::optional<std::int64_t> nMoment, std::size_t nStart,
                         std::uint64_t nLine)
{
    if (!m_sorter) {
        m_text.Add('\n');
        FlushIfFull();
        return;
    }
    const std::string_view row = m_text.From(nStart);
    const std::size_t nSymbol = m_bSymbols ? std::min(row.find(';'), row.size()) : 0;
    m_nLastMoment = nMoment.value_or(m_nLastMoment);
    m_sorter->Add({m_nLastMoment, nLine - 1, static_cast<std::uint32_t>(nSymbol), row});
    m_text.CutTo(nStart);
}

void CleanOutput::GiveSorted()
{
    auto origins = std::make_shared<OriginList>(m_nHeadings, m_makeStore());
    std::uint64_t nLatest = 0;
    m_sorter->Give([&](const SortedRow& row) {
        m_text.Add(row.text);
        m_text.Add('\n');
        origins->Add(row.nOrigin);
        m_account.nMoved += row.nOrigin < nLatest ? 1 : 0;
        nLatest = std::max(nLatest, row.nOrigin);
        FlushIfFull();
    });
    origins->Finish();
    m_origins = std::move(origins);
}

void CleanOutput::Finish()
{
    if (m_sorter)
        GiveSorted();
    else
        m_origins = std::make_shared<OriginShift>(m_bHeading ? 1 : 0);
    Flush();
}

} // namespace tabulex::intake
