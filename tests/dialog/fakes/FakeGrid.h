// A grid that nobody sees: it keeps what it is told, and writes the calls down.
#pragma once

#include <atomic>
#include <functional>

#include "interfaces/IGridView.h"
#include "tests/dialog/fakes/CallLog.h"
#include "tests/support/Text.h"

namespace dialog_test {

using namespace IQRL_TabulexConverter;

class FakeGrid final : public IGridView
{
public:
    struct Column
    {
        std::string sText;
        LONG nWidth;
        bool bHeading;
    };

    // The log may be null.
    FakeGrid(std::string sName, CallLog* pLog, IGridEvents& events)
        : m_sName(std::move(sName)), m_pLog(pLog), m_events(events)
    {}

    // ---- what a test looks at, and what it makes the view do

    ControlPlace m_place;
    bool m_bEnabled = true;
    LONG m_nRows = 0;
    std::atomic<LONG> m_nPosted = -1; // row count; -1 for none
    std::vector<Column> m_columns;
    bool m_bHeader = true;
    bool m_bRefuseColumns = false, m_bRefuseHeader = false;
    LONG m_nClientWidth = 400;
    LONG m_nInvalidated = 0; // calls since the test looked
    // Gives the id of the menu item that the user chooses.
    std::function<LONG(ViewMenu, LONG nColumn)> m_onMenu;

    IGridEvents& Events() { return m_events; }
    std::string CellText(LONG nRow, LONG nColumn, LONG nMost = 259)
    {
        std::vector<OLECHAR> buffer(static_cast<std::size_t>(nMost), OLECHAR('#'));
        m_events.CellText(nRow, nColumn, buffer.data(), nMost);
        return Utf8(buffer.data());
    }

    // ---- IGridView

    void Move(const ControlPlace& place) override
    {
        m_place = place;
        Told("move");
    }
    void SetEnabled(bool bEnabled) override
    {
        m_bEnabled = bEnabled;
        Told(bEnabled ? "enable" : "disable");
    }
    void SetRowCount(LONG nRows) override
    {
        m_nRows = nRows;
        Told("rows " + std::to_string(nRows));
    }
    void PostRowCount(LONG nRows) override
    {
        m_nPosted = nRows;
        Told("post rows " + std::to_string(nRows));
    }
    void ScrollToTop() override { Told("scroll to top"); }
    void Invalidate(bool bErase) override
    {
        ++m_nInvalidated;
        Told(bErase ? "erase" : "repaint");
    }
    bool ShowHeader(bool bShow) override
    {
        m_bHeader = bShow;
        Told(bShow ? "header" : "no header");
        return !m_bRefuseHeader;
    }
    void ClearColumns() override
    {
        m_columns.clear();
        Told("clear columns");
    }
    bool AddColumn(const OLECHAR* pszText, LONG nWidth, bool bHeading) override
    {
        m_columns.push_back({Utf8(pszText), nWidth, bHeading});
        Told("column " + Utf8(pszText) + " " + std::to_string(nWidth));
        return !m_bRefuseColumns;
    }
    LONG ColumnCount() override { return static_cast<LONG>(m_columns.size()); }
    void SetColumnText(LONG nColumn, const OLECHAR* pszText) override
    {
        if (nColumn >= 0 && nColumn < ColumnCount())
            m_columns[static_cast<std::size_t>(nColumn)].sText = Utf8(pszText);
        Told("heading " + std::to_string(nColumn) + " " + Utf8(pszText));
    }
    // As if each unit were ten wide.
    LONG HeadingWidth(const OLECHAR* pszText) override
    {
        return 10 * static_cast<LONG>(string_view_t(pszText).size());
    }
    LONG EdgeWidth() override { return 2; }
    LONG ClientWidth() override { return m_nClientWidth; }
    ULONG Colour(SystemColour colour) override
    {
        return colour == ColourHighlight ? 0x00804020 : colour == ColourWindow ? 0x00FFFFFF : 0;
    }
    LONG TrackMenu(ViewMenu menu, LONG nColumn) override
    {
        return m_onMenu ? m_onMenu(menu, nColumn) : 0;
    }

private:
    void Told(const std::string& sCall)
    {
        if (m_pLog)
            m_pLog->Add(m_sName + ": " + sCall);
    }

    const std::string m_sName;
    CallLog* const m_pLog;
    IGridEvents& m_events;
};

} // namespace dialog_test
