// The picture of the import dialog. Each drawing lays the panes out anew: the size of the
// terminal, the widths of the labels and whether the folder can be used may all have changed.

#include <algorithm>

#include <fmt/format.h>

#include "interfaces/NativeHost.h"
#include "tools/tabulex/import/ImportDialogView.h"
#include "tools/tabulex/import/terminal/ImportTexts.h"
#include "tools/tabulex/text/VisibleText.h"

namespace tabulex {

using namespace IQRL_TabulexConverter;

void ImportDialogView::Draw(Canvas& canvas)
{
    const Size size = canvas.GetSize();
    const int nInner = size.nColumns - 4;
    const int nFormRows = Pane(PaneSettings) ? Pane(PaneSettings)->Controls().Arrange(nInner) : 1;
    m_layout = LayOutImport(size, nFormRows, m_pFolder && m_pFolder->IsFrozen());
    canvas.Fill({0, 0, size.nColumns, size.nRows}, Look::Normal);
    DrawTitles(canvas);
    DrawPanes(canvas);
    DrawStatus(canvas);
    DrawKeys(canvas);
}

void ImportDialogView::DrawTitles(Canvas& canvas)
{
    const Size size = canvas.GetSize();
    canvas.Put(1, 0, TextOf(ImportText::Title), Look::Title);
    const std::string help = TextOf(ImportText::HelpKey);
    canvas.Put(size.nColumns - 1 - CellsOf(help), 0, help, Look::Title);
    const auto heading = [](DialogId pane) {
        return VisibleText(TabulexDialogText(pane, kWholeView));
    };
    const std::string hint =
        TextOf(m_pFolder && m_pFolder->IsFrozen() ? ImportText::FrozenHint : ImportText::FileHint);
    DrawPaneTitle(canvas, PaneFolder, FolderTitle(size.nColumns - CellsOf(hint) - 10), hint);
    DrawPaneTitle(canvas, PaneContent, heading(DialogContent), CodePageHint());
    DrawPaneTitle(canvas, PaneSettings, heading(DialogSettings), "");
    DrawPaneTitle(canvas, PaneDecode, VisibleText(TabulexDialogText(DialogDecode, DecodeLabel)),
                  RecordHint());
    canvas.Fill({0, m_layout.nBottom, size.nColumns, 1}, Look::Title, '-');
    canvas.Put(0, m_layout.nBottom, "+", Look::Title);
    canvas.Put(size.nColumns - 1, m_layout.nBottom, "+", Look::Title);
}

// A border with the pane's number and title at the left, and a hint at the right.
void ImportDialogView::DrawPaneTitle(Canvas& canvas, int nPane, const std::string& sTitle,
                                     const std::string& sHint)
{
    const Rect& pane = m_layout.panes[static_cast<std::size_t>(nPane)];
    if (pane.nRows == 0)
        return;
    const int nColumns = canvas.GetSize().nColumns;
    const int nRow = pane.nRow - 1;
    canvas.Fill({0, nRow, nColumns, 1}, Look::Title, '-');
    canvas.Fill({0, pane.nRow, 1, pane.nRows}, Look::Title, '|');
    canvas.Fill({nColumns - 1, pane.nRow, 1, pane.nRows}, Look::Title, '|');
    canvas.Put(0, nRow, "+", Look::Title);
    canvas.Put(nColumns - 1, nRow, "+", Look::Title);
    const int nHint = sHint.empty() ? 0 : std::min(CellsOf(sHint), nColumns / 2) + 2;
    const std::string title = fmt::format("{} {} ", nPane + 1, sTitle);
    const int nTitle = std::min(CellsOf(title), nColumns - 4 - nHint);
    canvas.PutCell(2, nRow, title, nPane == m_nFocus ? Look::Focused : Look::Title, nTitle);
    if (nHint > 0)
        canvas.PutCell(nColumns - 2 - nHint, nRow, " " + sHint + " ", Look::Title, nHint);
}

void ImportDialogView::DrawPanes(Canvas& canvas)
{
    const auto inner = [&](int nPane) {
        const Rect& pane = m_layout.panes[static_cast<std::size_t>(nPane)];
        return Rect{pane.nColumn + 1, pane.nRow, pane.nColumns - 2, pane.nRows};
    };
    if (m_pFolder)
        m_pFolder->Draw(canvas, inner(PaneFolder), m_nFocus == PaneFolder);
    for (const int nPane : {PaneContent, PaneDecode})
        if (Pane(nPane) && Pane(nPane)->Grid())
            Pane(nPane)->Grid()->Draw(canvas, inner(nPane), m_nFocus == nPane);
    if (PaneView* pSettings = Pane(PaneSettings))
        pSettings->Controls().Draw(canvas, inner(PaneSettings), m_nFocus == PaneSettings);
}

// The end of a long path says more than its beginning.
std::string ImportDialogView::FolderTitle(int nCells) const
{
    const std::string label = VisibleText(TabulexDialogText(DialogImport, ImportLabel));
    const std::string path = m_pFolder ? m_pFolder->Folder() : std::string();
    const int nPath = CellsOf(path);
    if (nPath > nCells)
        return "~" + std::string(WithoutFront(path, nPath - nCells + 1));
    return CellsOf(label) + 1 + nPath > nCells ? path : fmt::format("{} {}", label, path);
}

std::string ImportDialogView::CodePageHint() const
{
    PaneView* const pPane = Pane(PaneContent);
    if (!pPane)
        return {};
    const std::string label = VisibleText(TabulexDialogText(DialogContent, ContentLanguageLabel));
    const std::string name =
        VisibleText(pPane->RowText(ContentLanguage, pPane->Selected(ContentLanguage)));
    return fmt::format("F3 {} {}", label, name);
}

std::string ImportDialogView::RecordHint() const
{
    PaneView* const pPane = Pane(PaneDecode);
    GridView* const pGrid = pPane ? pPane->Grid() : nullptr;
    if (!pGrid || pGrid->RowCount() == 0)
        return {};
    return fmt::format("{}  {}", TextOf(ImportText::Imported),
                       fmt::format(fmt::runtime(TextOf(ImportText::RecordOf)),
                                   LONGLONG(pGrid->CurrentRow()) + 1, pGrid->RowCount()));
}

// What stands against an import is for the component to say; this is what can be seen of it.
std::string ImportDialogView::StatusText()
{
    PaneView* const pSettings = Pane(PaneSettings);
    SYSTEMTIME date{};
    if (IsEnabled(ImportOk))
        return TextOf(pSettings && !pSettings->Date(SettingsDateFirst, date) ? ImportText::NoDates
                                                                             : ImportText::Ready);
    return TextOf(pSettings && pSettings->IsEnabled(SettingsDelimiters) ? ImportText::NotReady
                                                                        : ImportText::NoFile);
}

void ImportDialogView::DrawStatus(Canvas& canvas)
{
    const Size size = canvas.GetSize();
    const std::string& message = m_desk.Hint().empty() ? m_desk.Message() : m_desk.Hint();
    canvas.PutCell(0, size.nRows - 2, " " + (message.empty() ? StatusText() : message),
                   m_desk.Hint().empty() && !message.empty() ? Look::Error : Look::Normal,
                   size.nColumns);
}

// The keys of the two buttons can be pressed by the mouse as well.
void ImportDialogView::DrawKeys(Canvas& canvas)
{
    const Size size = canvas.GetSize();
    const int nRow = size.nRows - 1;
    const std::string ok = TextOf(ImportText::OkKey), cancel = TextOf(ImportText::CancelKey);
    m_cancelPlace = {size.nColumns - 1 - CellsOf(cancel), nRow, CellsOf(cancel), 1};
    m_okPlace = {m_cancelPlace.nColumn - 3 - CellsOf(ok), nRow, CellsOf(ok), 1};
    const int nRoom = m_okPlace.nColumn - 3;
    const std::string keys = TextOf(ImportText::Keys);
    canvas.PutCell(1, nRow, CellsOf(keys) > nRoom ? TextOf(ImportText::FewKeys) : keys,
                   Look::Normal, nRoom);
    canvas.Put(m_okPlace.nColumn, nRow, ok, IsEnabled(ImportOk) ? Look::Title : Look::Disabled);
    canvas.Put(m_cancelPlace.nColumn, nRow, cancel, Look::Title);
}

} // namespace tabulex
