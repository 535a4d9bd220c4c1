// The component holds the folder; the view asks for the entries in sight each time that it draws.
// Its own are the marked row and the scroll position, which only a change of the folder resets.

#include "tools/tabulex/import/FolderListView.h"

#include <algorithm>
#include <array>
#include <utility>

#include <fmt/format.h>

#include "tools/tabulex/import/terminal/ImportTexts.h"
#include "tools/tabulex/import/terminal/Popup.h"
#include "tools/tabulex/text/Formats.h"
#include "tools/tabulex/text/VisibleText.h"

namespace tabulex {

using namespace IQRL_TabulexConverter;

namespace {

constexpr int kSizeCells = 10, kDateCells = 18; // of the columns of details

// "88 KB": three digits at most are left before the next unit.
std::string SizeText(ULONGLONG nBytes)
{
    constexpr std::array kUnits = {"B", "KB", "MB", "GB", "TB"};
    auto size = static_cast<double>(nBytes);
    std::size_t nUnit = 0;
    for (; size >= 999.5 && nUnit + 1 < kUnits.size(); ++nUnit)
        size /= 1024;
    const int nDecimals = nUnit > 0 && size < 9.95 ? 1 : 0;
    return fmt::format("{:.{}f} {}", size, nDecimals, kUnits[nUnit]);
}

// To the minute.
std::string MinuteText(DATE date)
{
    constexpr std::size_t kToTheMinute = 16;
    return date == 0 ? std::string() : DateTimeText(date, ' ').substr(0, kToTheMinute);
}

} // namespace

FolderListView::FolderListView(Desk& desk, IFolderEvents& events) : m_desk(desk), m_pEvents(&events)
{}

void FolderListView::Close()
{
    IFolderEvents* const pEvents = std::exchange(m_pEvents, nullptr);
    if (pEvents)
        pEvents->OnClose();
}

// ---- what the component shows

bool FolderListView::ShowFolder(const OLECHAR* pszFolder, FolderMode mode)
{
    const string_t sBefore = std::exchange(m_sFolder, pszFolder);
    const bool bOther = m_sFolder != sBefore;
    m_sFolderShown = VisibleText(m_sFolder);
    m_bRoot = m_sFolder.empty() || m_sFolder == OLESTR("/");
    m_mode = mode;
    if (bOther) {
        m_nFirst = m_nRow = 0;
        SelectEntry(sBefore.c_str()); // after a step up, the folder that one comes from
    }
    m_desk.Invalidate();
    return true;
}

void FolderListView::SelectEntry(const OLECHAR* pszPath)
{
    const LONG nCount = m_pEvents ? m_pEvents->EntryCount() : 0;
    for (LONG n = 0; n < nCount; ++n)
        if (string_view_t(m_pEvents->Entry(n).pszPath) == pszPath)
            return GoTo(HasParent() ? n + 1 : n);
}

void FolderListView::Freeze(bool bFrozen)
{
    m_bFrozen = bFrozen;
    m_desk.Invalidate();
}

LONG FolderListView::TrackMenu(ViewMenu menu)
{
    return ChooseFromMenu(m_desk, menu, {m_rect.nColumn, m_rect.nRow - 1, 1, 1});
}

// ---- the user

LONG FolderListView::RowCount()
{
    return (m_pEvents ? m_pEvents->EntryCount() : 0) + (HasParent() ? 1 : 0);
}

void FolderListView::GoTo(LONG nRow)
{
    m_nRow = std::clamp<LONG>(nRow, 0, std::max<LONG>(RowCount() - 1, 0));
    m_desk.Invalidate();
}

bool FolderListView::Handle(const Input& input)
{
    if (m_bFrozen || !m_pEvents)
        return false;
    const LONG nPage = std::max(m_rect.nRows, 1);
    switch (input.key) {
    case Key::Up:
        GoTo(m_nRow - 1);
        return true;
    case Key::Down:
        GoTo(m_nRow + 1);
        return true;
    case Key::PageUp:
    case Key::WheelUp:
        GoTo(m_nRow - nPage);
        return true;
    case Key::PageDown:
    case Key::WheelDown:
        GoTo(m_nRow + nPage);
        return true;
    case Key::Home:
        GoTo(0);
        return true;
    case Key::End:
        GoTo(RowCount() - 1);
        return true;
    case Key::Backspace:
        m_pEvents->OnCommand(FolderUp);
        return true;
    case Key::Press:
        return Press(input);
    case Key::Text:
        if (input.Is(U'v'))
            SwitchMode();
        return input.Is(U'v');
    default:
        return false;
    }
}

// A press on the marked row counts as Enter, which isn't handled here.
bool FolderListView::Press(const Input& input)
{
    const LONG nRow = m_nFirst + input.nRow - m_rect.nRow;
    if (nRow == m_nRow || nRow >= RowCount())
        return false;
    GoTo(nRow);
    return true;
}

void FolderListView::SwitchMode()
{
    m_pEvents->OnCommand(m_mode == ModeDetails ? FolderNames : FolderDetails);
    m_desk.Invalidate();
}

bool FolderListView::Choose()
{
    if (m_bFrozen || !m_pEvents)
        return false;
    const LONG nEntry = EntryOf(m_nRow);
    if (nEntry < 0) {
        m_pEvents->OnCommand(FolderUp);
        return false;
    }
    if (nEntry >= m_pEvents->EntryCount())
        return false;
    const string_t sPath = m_pEvents->Entry(nEntry).pszPath; // the event may read the folder again
    m_pEvents->OnSelection(sPath.c_str());
    return true;
}

std::string FolderListView::MarkedFolder()
{
    const LONG nEntry = EntryOf(m_nRow);
    if (!m_pEvents || nEntry < 0 || nEntry >= m_pEvents->EntryCount())
        return {};
    const FolderEntry entry = m_pEvents->Entry(nEntry);
    return entry.bFolder ? VisibleText(entry.pszName) : std::string();
}

// ---- the picture

void FolderListView::Draw(Canvas& canvas, const Rect& rect, bool bFocused)
{
    m_rect = rect;
    const LONG nRows = RowCount();
    // Files may have gone since the row was marked.
    m_nRow = std::clamp<LONG>(m_nRow, 0, std::max<LONG>(nRows - 1, 0));
    m_nFirst = std::clamp(m_nFirst, std::max<LONG>(m_nRow - rect.nRows + 1, 0), m_nRow);
    for (int n = 0; n < rect.nRows && m_nFirst + n < nRows; ++n)
        DrawRow(canvas, m_nFirst + n, rect.nRow + n, bFocused);
}

void FolderListView::DrawRow(Canvas& canvas, LONG nRow, int nLine, bool bFocused)
{
    const bool bMarked = nRow == m_nRow;
    const Look chosen = bFocused ? Look::Focused : Look::Selected;
    const Look plain = m_bFrozen ? Look::Disabled : Look::Normal;
    const Look look = bMarked && !m_bFrozen ? chosen : plain;
    const FolderEntry entry = EntryOf(nRow) < 0 ? FolderEntry{} : m_pEvents->Entry(EntryOf(nRow));
    const bool bDetails = m_mode == ModeDetails;
    const int nDetails = bDetails ? kSizeCells + kDateCells : 0;
    std::string name = EntryOf(nRow) < 0 ? TextOf(ImportText::Parent) : VisibleText(entry.pszName);
    if (entry.bFolder)
        name += '/';
    canvas.Fill({m_rect.nColumn, nLine, m_rect.nColumns, 1}, look);
    canvas.Put(m_rect.nColumn, nLine, bMarked ? ">" : " ", look);
    canvas.PutCell(m_rect.nColumn + 2, nLine, name, look, m_rect.nColumns - 3 - nDetails);
    if (!bDetails || EntryOf(nRow) < 0)
        return;
    const int nAt = m_rect.nColumn + m_rect.nColumns - nDetails;
    canvas.PutCell(nAt, nLine, entry.bFolder ? "" : SizeText(entry.nSize), look, kSizeCells, true);
    canvas.PutCell(nAt + kSizeCells, nLine, MinuteText(entry.dtModified), look, kDateCells, true);
}

} // namespace tabulex
