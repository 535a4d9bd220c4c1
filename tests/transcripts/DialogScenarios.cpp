// A person imports each sample through the dialog: picks it, gives a column another type and back,
// confirms its delimiters, moves the start row, narrows the dates, and imports. What the views
// are told is written down after each step.

#include <algorithm>
#include <array>

#include "platform/threads/MessageWindow.h"
#include "src/parsing/EnvironmentDocument.h"
#include "tests/dialog/fakes/FakeViews.h"
#include "tests/transcripts/Scenarios.h"

using namespace IQRL_TabulexConverter;

namespace transcripts {

namespace {

using ViewCalls = dialog_test::Calls;
using dialog_test::FakeDialog;
using dialog_test::FakeGrid;
using dialog_test::FakePane;

// Counts come when the file's worker has them; folders and code pages are those of the machine.
bool DependsOnTheMachine(const std::string& sCall)
{
    return sCall.starts_with("folder: ") || sCall.starts_with("212: select 216 ") ||
           sCall.find("rows ") != std::string::npos;
}

class Person
{
public:
    Person(Host& host, const char* pszSample) : m_host(host), m_sSample(pszSample)
    {
        m_views.m_onRun = [this](FakeDialog& dialog) {
            if (dialog.m_dialog == DialogDelimiters)
                dialog.Click(SmallDialogOk);
            else
                Import(dialog);
        };
    }

    void Analyse()
    {
        const string_t sFolder = Wide(m_host.Samples().string());
        m_host.Converter().put_Environment(
            Bstr(Hesperon::specifics::WriteEnvironment(sFolder, {})).get());
        VARIANT_BOOL bStatus = VARIANT_FALSE;
        const HRESULT hr = m_host.Converter().DoAnalyse(&bStatus, 0);
        Tell("closed");
        m_host.NoteOpened(m_sSample);
        m_host.Tell(bStatus ? "confirmed" : "cancelled", hr);
        if (bStatus)
            m_host.Convert();
    }

private:
    void Import(FakeDialog& dialog)
    {
        Tell("opened");
        dialog.m_pFolderView->Pick(m_sSample);
        FakeGrid& grid = dialog.Grid(DialogDecode);
        while (grid.m_nPosted <= 0 || grid.m_columns.empty())
            PumpMessages(std::chrono::milliseconds(1));
        grid.m_nRows = grid.m_nPosted;
        Look("picked", grid);
        GiveTheLastColumnNoType(grid);
        Look("last column", grid);
        FakePane& pane = dialog.Pane(DialogSettings);
        pane.Click(SettingsDelimiters);
        Look("delimiters", grid);
        pane.Type(SettingsStartRow,
                  std::to_string(std::stol(pane.TextAt(SettingsStartRow)) + 1).c_str());
        Look("start row", grid);
        SYSTEMTIME last{};
        if (pane.Date(SettingsDateLast, last)) {
            last.wDay = static_cast<WORD>(std::max(1, last.wDay - 1));
            pane.PickDate(SettingsDateLast, last);
        }
        Look("last date", grid);
        dialog.Click(ImportOk);
        Tell("ok");
    }

    static void GiveTheLastColumnNoType(FakeGrid& grid)
    {
        grid.m_onMenu = [](ViewMenu menu, LONG) { return menu.front().nId; };
        grid.Events().OnHeaderPress(grid.ColumnCount() - 1);
    }

    void Tell(const char* pszStep)
    {
        ViewCalls calls = m_log.Take();
        std::erase_if(calls, DependsOnTheMachine);
        m_host.Tell(pszStep);
        for (const std::string& sCall : calls)
            m_host.Tell("  " + sCall);
    }

    // How many cells of the first row have a text, and how many rows are tinted.
    void Look(const char* pszStep, FakeGrid& grid)
    {
        Tell(pszStep);
        const LONG nRows = grid.m_nRows;
        grid.Events().OnRange(0, nRows - 1);
        LONG nFilled = 0, nTinted = 0;
        for (LONG nColumn = 0; nColumn < grid.ColumnCount(); ++nColumn)
            nFilled += !grid.CellText(0, nColumn).empty();
        for (LONG nRow = 0; nRow < nRows; ++nRow)
            nTinted += grid.Events().IsImported(nRow);
        m_host.Tell("  sees " + std::to_string(nFilled) + " cells, " + std::to_string(nTinted) +
                    " rows tinted");
    }

    Host& m_host;
    const std::string m_sSample;
    dialog_test::CallLog m_log;
    dialog_test::FakeViews m_views{&m_log};
};

constexpr const char* kSamples[] = {"date-06.csv",     "day-no-header.csv", "descending.csv",
                                    "divider-tab.txt", "minute-5.csv",      "symbols.csv",
                                    "time-10.csv",     "week.csv"};

template <std::size_t n>
void Run(Host& host)
{
    Person(host, kSamples[n]).Analyse();
}

template <std::size_t... n>
constexpr std::array<Scenario, sizeof...(n)> Scenarios(std::index_sequence<n...>)
{
    return {{{kSamples[n], &Run<n>}...}};
}

constexpr auto kDialogScenarios = Scenarios(std::make_index_sequence<std::size(kSamples)>());

} // namespace

std::span<const Scenario> DialogScenarios()
{
    return kDialogScenarios;
}

} // namespace transcripts
