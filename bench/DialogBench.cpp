// The import dialog on a large file, over views that draw nothing: opening it until all of its
// panes show, and drawing a page of the preview somewhere in the file.

#include <benchmark/benchmark.h>

#include <random>

#include "bench/MinuteBars.h"
#include "bench/Parser.h"
#include "platform/threads/MessageWindow.h"
#include "src/UIComponents/controls/QRLDataGridViewCtrl.h"
#include "tests/dialog/fakes/FakeViews.h"
#include "tests/front/NewConvertor.h"

namespace bench {
namespace {

using dialog_test::FakeDialog;
using dialog_test::FakeGrid;
using dialog_test::FakeViews;
using Hesperon::specifics::CQRLDataGridViewCtrl;

constexpr LONG kPageRows = 50;
constexpr LONG kCellUnits = 259;

// Asks for what a view draws of some rows; gives the number of cells.
LONG Draw(FakeGrid& grid, LONG nFrom, LONG nRows)
{
    OLECHAR szText[kCellUnits];
    const LONG nColumns = grid.ColumnCount();
    grid.Events().OnRange(nFrom, nFrom + nRows - 1);
    for (LONG nRow = nFrom; nRow < nFrom + nRows; ++nRow) {
        benchmark::DoNotOptimize(grid.Events().RowColour(nRow));
        for (LONG nColumn = 0; nColumn < nColumns; ++nColumn)
            grid.Events().CellText(nRow, nColumn, szText, kCellUnits);
    }
    return nRows * nColumns;
}

// Left alone, a file is counted only as far as a first display needs it.
void FindAllLines(IDataParser& parser)
{
    constexpr ULONGLONG kAfterEveryFile = 0xFFFFFFFF'FFFF;
    parser.put_Position(kAfterEveryFile);
    ULONGLONG nCount = 0;
    VARIANT_BOOL bComplete = VARIANT_FALSE;
    Check(parser.GetCount(&nCount, &bComplete), "GetCount");
    if (!bComplete)
        throw std::runtime_error("the file isn't counted");
}

void PreviewPage(benchmark::State& state)
{
    const com_ptr<IDataParser> parser = OpenFile(MinuteBarsPath());
    com_ptr<CQRLDataGridViewCtrl> grid;
    Check(CreateObject(grid), "grid");
    FakeGrid view("grid", nullptr, grid->Events());
    grid->Attach(&view);
    Check(grid->put_DataParser(parser.get()), "DataParser");
    FindAllLines(*parser.get());
    Check(grid->CreateFields(), "CreateFields");
    std::mt19937 random(1);
    std::uniform_int_distribution<LONG> first(0, view.m_nRows - kPageRows);
    for (auto _ : state)
        Draw(view, first(random), kPageRows);
    grid->Events().OnClose();
}
BENCHMARK(PreviewPage)->Unit(benchmark::kMillisecond)->UseRealTime();

// Panes show when the lines and the records can be drawn.
void OpenDialog(benchmark::State& state)
{
    FakeViews views;
    views.m_onRun = [](FakeDialog& dialog) {
        FakeGrid& lines = dialog.Grid(IQRL_TabulexConverter::DialogContent);
        FakeGrid& records = dialog.Grid(IQRL_TabulexConverter::DialogDecode);
        while (records.m_columns.empty() || lines.m_nPosted < kPageRows)
            PumpMessages(std::chrono::milliseconds(1));
        Draw(records, 0, kPageRows);
        Draw(lines, 0, kPageRows);
        dialog.Click(IQRL_TabulexConverter::ImportCancel);
    };
    for (auto _ : state) {
        const com_ptr<IqrlTabulexConvertor> convertor = NewConvertor();
        VARIANT_BOOL bStatus = VARIANT_FALSE;
        Check(convertor->put_FileName(Bstr(PathFromBytes(MinuteBarsPath())).get()), "FileName");
        Check(convertor->DoAnalyse(&bStatus, 0), "DoAnalyse");
    }
}
BENCHMARK(OpenDialog)->Unit(benchmark::kMillisecond)->UseRealTime();

} // namespace
} // namespace bench
