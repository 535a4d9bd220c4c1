// The rows go to the panes from what each wants to what each needs: the folder and the lines get
// little on a small terminal, the settings all that they take, the records the rest. Where that
// isn't enough for a heading and some records, lines and folder give up rows.

#include "tools/tabulex/import/ImportLayout.h"

#include <algorithm>

namespace tabulex {

namespace {

constexpr int kTopRows = 1;      // the title
constexpr int kBottomRows = 3;   // border, status, keys
constexpr int kWholeRows = 30;   // from here on there is room for everything
constexpr int kLeastRecords = 4; // a heading and three records
constexpr int kLeastLines = 2;

struct PaneRows
{
    int nFolder, nContent;
};

PaneRows WantedRows(Size size, bool bFileGiven)
{
    if (size.nRows < kWholeRows)
        return {bFileGiven ? 0 : 3, 3};
    const int nMore = (size.nRows - kWholeRows) / 4;
    return {6 + nMore, 5 + nMore};
}

} // namespace

ImportLayout LayOutImport(Size size, int nFormRows, bool bFileGiven)
{
    PaneRows rows = WantedRows(size, bFileGiven);
    const int nTitles = rows.nFolder > 0 ? PaneCount : PaneCount - 1;
    const int nBody = size.nRows - kTopRows - kBottomRows - nTitles;
    const auto records = [&] { return nBody - rows.nFolder - rows.nContent - nFormRows; };
    while (records() < kLeastRecords && rows.nContent > kLeastLines)
        --rows.nContent;
    while (records() < kLeastRecords && rows.nFolder > kLeastLines)
        --rows.nFolder;
    const std::array heights = {rows.nFolder, rows.nContent, nFormRows, std::max(records(), 1)};
    ImportLayout layout;
    int nRow = kTopRows;
    for (std::size_t n = 0; n < heights.size(); ++n) {
        const int nTitle = heights[n] > 0 ? 1 : 0;
        layout.panes[n] = {1, nRow + nTitle, size.nColumns - 2, heights[n]};
        nRow += nTitle + heights[n];
    }
    layout.nBottom = nRow;
    return layout;
}

} // namespace tabulex
