// FolderListView: the folder in which the user picks a file.
//
// It shows the entries that the component lists, below a row for the parent folder. A row is
// selected when the user opens or chooses it; moving over the rows tells nothing, as each
// selection of a file has the component open it.
#pragma once

#include <string>

#include "interfaces/ControlTable.h"
#include "interfaces/IFolderView.h"
#include "tools/tabulex/import/terminal/Desk.h"

namespace tabulex {

class FolderListView final
    : public IQRL_TabulexConverter::ControlTable<IQRL_TabulexConverter::IFolderView>
{
public:
    // Both outlive the view, the events until Close.
    FolderListView(Desk& desk, IQRL_TabulexConverter::IFolderEvents& events);
    ~FolderListView() = default;

    void Close();
    void Draw(Canvas& canvas, const Rect& rect, bool bFocused);
    // False for a key that means nothing in the list.
    bool Handle(const Input& input);
    // Selects the row that is marked. True if it is a folder's or a file's, which the component
    // then opens by the command of Enter; the parent's is opened here.
    bool Choose();
    // Visible text.
    const std::string& Folder() const { return m_sFolderShown; }
    // Visible name of the folder that is marked; empty where a file or the parent is.
    std::string MarkedFolder();
    bool IsFrozen() const { return m_bFrozen; }

    // ---- IFolderView

    bool ShowFolder(const OLECHAR* pszFolder, IQRL_TabulexConverter::FolderMode mode) override;
    void SelectEntry(const OLECHAR* pszPath) override;
    void Freeze(bool bFrozen) override;
    LONG TrackMenu(IQRL_TabulexConverter::ViewMenu menu) override;

private:
    LONG RowCount();
    bool HasParent() const { return !m_bRoot; }
    LONG EntryOf(LONG nRow) const { return HasParent() ? nRow - 1 : nRow; }
    void GoTo(LONG nRow);
    bool Press(const Input& input);
    void SwitchMode();
    void DrawRow(Canvas& canvas, LONG nRow, int nLine, bool bFocused);

    Desk& m_desk;
    IQRL_TabulexConverter::IFolderEvents* m_pEvents; // null after Close
    string_t m_sFolder;
    std::string m_sFolderShown;
    bool m_bRoot = true;
    bool m_bFrozen = false;
    IQRL_TabulexConverter::FolderMode m_mode = IQRL_TabulexConverter::ModeNames;
    LONG m_nFirst = 0; // row in sight
    LONG m_nRow = 0;   // the marked one
    Rect m_rect;       // where it was drawn last
};

} // namespace tabulex
