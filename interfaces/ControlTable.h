// ControlTable: a view's memory of what was written to its controls.
//
//   class MyView final : public ControlTable<IProgressView>
//
// A view derives from it and overrides the writes that it shows, calling the one here first.
// As it stands it shows nothing and tells no events: the controls of a dialog that nobody
// sees. Every control exists in it.
#pragma once

#include <map>
#include <optional>
#include <vector>

#include "interfaces/IControlsView.h"

namespace IQRL_TabulexConverter {

// View is IControlsView or an interface derived from it.
template <class View = IControlsView>
class ControlTable : public View
{
public:
    bool Exists(LONG) override { return true; }

    // ---- any control

    void SetText(LONG nControl, const OLECHAR* pszText) override { At(nControl).sText = pszText; }
    const OLECHAR* Text(LONG nControl) override { return At(nControl).sText.c_str(); }
    LONG TextWidth(LONG nControl) override { return static_cast<LONG>(At(nControl).sText.size()); }
    void SetEnabled(LONG nControl, bool bEnabled) override { At(nControl).bEnabled = bEnabled; }
    bool IsEnabled(LONG nControl) override { return At(nControl).bEnabled; }
    void SetShown(LONG nControl, bool bShown) override { At(nControl).bShown = bShown; }
    bool IsShown(LONG nControl) override { return At(nControl).bShown; }
    ControlPlace Place(LONG nControl) override { return At(nControl).place; }
    void Move(LONG nControl, const ControlPlace& place) override { At(nControl).place = place; }
    void Repaint(LONG) override {}
    void SetFocus(LONG nControl) override { m_nFocus = nControl; }
    LONG Focus() override { return m_nFocus; }
    ControlPlace ClientArea() override
    {
        const ControlPlace& place = At(kWholeView).place;
        return {0, 0, place.nRight - place.nLeft, place.nBottom - place.nTop};
    }

    // ---- lists

    LONG AddRow(LONG nControl, const OLECHAR* pszText, LONG_PTR nData) override
    {
        auto& rows = At(nControl).rows;
        rows.push_back({pszText, nData});
        return static_cast<LONG>(rows.size()) - 1;
    }
    void RemoveRow(LONG nControl, LONG nRow) override
    {
        Control& control = At(nControl);
        if (!control.HasRow(nRow))
            return;
        control.rows.erase(control.rows.begin() + nRow);
        if (control.nSelected == nRow)
            control.nSelected = kNoRow;
        else if (control.nSelected > nRow)
            --control.nSelected;
    }
    void ClearRows(LONG nControl) override
    {
        At(nControl).rows.clear();
        At(nControl).nSelected = kNoRow;
    }
    LONG RowCount(LONG nControl) override { return static_cast<LONG>(At(nControl).rows.size()); }
    const OLECHAR* RowText(LONG nControl, LONG nRow) override
    {
        const Row* pRow = RowAt(nControl, nRow);
        return pRow ? pRow->sText.c_str() : OLESTR("");
    }
    LONG_PTR RowData(LONG nControl, LONG nRow) override
    {
        const Row* pRow = RowAt(nControl, nRow);
        return pRow ? pRow->nData : 0;
    }
    bool Select(LONG nControl, LONG nRow) override
    {
        Control& control = At(nControl);
        control.nSelected = control.HasRow(nRow) ? nRow : kNoRow;
        return control.nSelected != kNoRow;
    }
    LONG Selected(LONG nControl) override { return At(nControl).nSelected; }
    LONG RowHeight(LONG nControl) override { return At(nControl).nRowHeight; }
    void SetRowHeight(LONG nControl, LONG nHeight) override { At(nControl).nRowHeight = nHeight; }

    // ---- edits

    void SetReadOnly(LONG nControl, bool bReadOnly) override { At(nControl).bReadOnly = bReadOnly; }
    bool IsReadOnly(LONG nControl) override { return At(nControl).bReadOnly; }
    TextRange SelectedText(LONG nControl) override { return At(nControl).selection; }
    void SelectText(LONG nControl, const TextRange& range) override
    {
        At(nControl).selection = range;
    }
    void ShowCaret(LONG) override {}

    // ---- check boxes

    void SetCheck(LONG nControl, LONG nState) override { At(nControl).nCheck = nState; }
    LONG Check(LONG nControl) override { return At(nControl).nCheck; }

    // ---- date pickers

    void SetDate(LONG nControl, const SYSTEMTIME* pDate) override
    {
        At(nControl).date = pDate ? std::optional(*pDate) : std::nullopt;
    }
    bool Date(LONG nControl, SYSTEMTIME& date) override
    {
        const Control& control = At(nControl);
        if (control.date)
            date = *control.date;
        return control.date.has_value();
    }
    void SetDateFormat(LONG nControl, const OLECHAR* pszFormat) override
    {
        At(nControl).sDateFormat = pszFormat;
    }

protected:
    struct Row
    {
        string_t sText;
        LONG_PTR nData;
    };

    struct Control
    {
        string_t sText;
        bool bEnabled = true;
        bool bShown = true;
        ControlPlace place;
        std::vector<Row> rows;
        LONG nSelected = kNoRow;
        LONG nRowHeight = 1;
        bool bReadOnly = false;
        TextRange selection;
        LONG nCheck = 0;
        std::optional<SYSTEMTIME> date;
        string_t sDateFormat;

        bool HasRow(LONG nRow) const
        {
            return nRow >= 0 && static_cast<std::size_t>(nRow) < rows.size();
        }
    };

    ~ControlTable() = default;

    Control& At(LONG nControl) { return m_controls[nControl]; }

private:
    const Row* RowAt(LONG nControl, LONG nRow)
    {
        const Control& control = At(nControl);
        return control.HasRow(nRow) ? &control.rows[static_cast<std::size_t>(nRow)] : nullptr;
    }

    std::map<LONG, Control> m_controls;
    LONG m_nFocus = kWholeView;
};

} // namespace IQRL_TabulexConverter
