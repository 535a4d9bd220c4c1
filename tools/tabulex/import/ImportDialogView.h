// ImportDialogView: the import dialog in the terminal: four panes, a status line and a line of
// keys.
//
// Keys that mean the same everywhere are handled here, the others by the pane that has the
// focus. Nothing here knows a rule of the dialog: what a key does is told to the component.
#pragma once

#include <array>
#include <memory>

#include "tools/tabulex/import/FolderListView.h"
#include "tools/tabulex/import/ImportLayout.h"
#include "tools/tabulex/import/PaneView.h"

namespace tabulex {

class ImportDialogView final : public ControlsView<IQRL_TabulexConverter::IDialogView>,
                               public ILayer
{
public:
    // Both outlive the view.
    ImportDialogView(Desk& desk, IQRL_TabulexConverter::IDialogEvents& events);

    // Opens the dialog, and gives what End was given. A terminal that goes cancels.
    LONG Run();

    // ---- ILayer

    void Draw(Canvas& canvas) override;
    bool TakePosted() override;

    // ---- IDialogView

    IQRL_TabulexConverter::IPaneView*
    MakePane(IQRL_TabulexConverter::DialogId pane,
             IQRL_TabulexConverter::IControlEvents& events) override;
    IQRL_TabulexConverter::IFolderView*
    MakeFolderView(IQRL_TabulexConverter::IFolderEvents& events) override;
    void Centre() override {}
    LONG_PTR Window() override { return 0; }
    void End(LONG nResult) override { m_nResult = nResult; }

private:
    void CloseChildren();

    // ---- input

    void Handle(const Input& input);
    bool HandleEverywhere(const Input& input);
    bool HandleDigit(const Input& input);
    void HandlePane(const Input& input);
    void HandleFolder(const Input& input);
    void HandleSettings(const Input& input);
    void HandleGrid(const Input& input);
    void HandlePress(const Input& input);
    void HandleWheel(const Input& input);
    void Confirm();
    void Cancel();
    void MoveFocus(int nStep);
    void FocusPane(int nPane, int nStep);
    bool CanFocus(int nPane) const;
    void SetPane(int nPane);
    void OpenFolderRow();
    void ShowHelp();
    PaneView* Pane(int nPane) const;

    // ---- picture

    void DrawTitles(Canvas& canvas);
    void DrawPaneTitle(Canvas& canvas, int nPane, const std::string& sTitle,
                       const std::string& sHint);
    void DrawPanes(Canvas& canvas);
    void DrawStatus(Canvas& canvas);
    void DrawKeys(Canvas& canvas);
    std::string FolderTitle(int nCells) const;
    std::string CodePageHint() const;
    std::string RecordHint() const;
    std::string StatusText();

    IQRL_TabulexConverter::IDialogEvents& m_dialogEvents;
    std::unique_ptr<FolderListView> m_pFolder;
    std::array<std::unique_ptr<PaneView>, PaneCount> m_panes; // the folder's is never set
    int m_nFocus = PaneFolder;
    LONG m_nResult = 0; // 0 while it runs
    ImportLayout m_layout;
    Rect m_okPlace, m_cancelPlace; // of the hints that the mouse can press
};

} // namespace tabulex
