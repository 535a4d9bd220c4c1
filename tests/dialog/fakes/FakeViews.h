// Views that nobody sees, with a script in the place of the user.
//
//   FakeViews views;
//   views.m_onRun = [](FakeDialog& dialog) { dialog.Click(ImportOk); };
//
// They write to the log, if there is one, what is told to dialogs, panes and grids from
// outside; reads aren't written down.
#pragma once

#include <functional>
#include <memory>
#include <set>

#include "interfaces/ControlTable.h"
#include "interfaces/IDialogViews.h"
#include "src/UIComponents/views/DialogViews.h"
#include "tests/dialog/fakes/FakeGrid.h"

namespace dialog_test {

// What panes and dialogs share: the log, and the text events of edits.
template <class View>
class FakeControls : public ControlTable<View>
{
public:
    using Table = ControlTable<View>;

    FakeControls(std::string sName, CallLog* pLog, IControlEvents& events)
        : m_sName(std::move(sName)), m_pLog(pLog), m_events(events)
    {}

    std::set<LONG> m_missing; // controls that the view lacks
    std::set<LONG> m_edits = {SettingsSize, SettingsStartRow, TemplateText};

    // ---- the user

    void Type(LONG nControl, const char* pszText)
    {
        this->SetFocus(nControl);
        Table::SetText(nControl, Wide(pszText).c_str());
        m_events.OnText(nControl);
    }
    void Choose(LONG nControl, LONG nRow)
    {
        Table::Select(nControl, nRow);
        m_events.OnSelect(nControl);
    }
    void Click(LONG nControl) { m_events.OnClick(nControl); }
    void Tick(LONG nControl, LONG nState)
    {
        Table::SetCheck(nControl, nState);
        m_events.OnClick(nControl);
    }
    void PickDate(LONG nControl, const SYSTEMTIME& date)
    {
        Table::SetDate(nControl, &date);
        m_events.OnDate(nControl);
    }
    void Resize(LONG nWidth, LONG nHeight)
    {
        const ControlPlace place = this->Place(kWholeView);
        Table::Move(kWholeView,
                    {place.nLeft, place.nTop, place.nLeft + nWidth, place.nTop + nHeight});
        m_events.OnResize();
    }
    std::string TextAt(LONG nControl) { return Utf8(this->Text(nControl)); }
    std::string ChosenText(LONG nControl)
    {
        return Utf8(this->RowText(nControl, this->Selected(nControl)));
    }
    std::vector<std::string> Rows(LONG nControl)
    {
        std::vector<std::string> rows;
        for (LONG n = 0; n < this->RowCount(nControl); ++n)
            rows.push_back(Utf8(this->RowText(nControl, n)));
        return rows;
    }
    std::string DateFormat(LONG nControl) { return Utf8(this->At(nControl).sDateFormat.c_str()); }

    // ---- IControlsView

    bool Exists(LONG nControl) override { return !m_missing.contains(nControl); }
    void SetText(LONG nControl, const OLECHAR* pszText) override
    {
        Table::SetText(nControl, pszText);
        Told("text", nControl, Utf8(pszText));
        if (m_edits.contains(nControl))
            m_events.OnText(nControl);
    }
    void SetEnabled(LONG nControl, bool bEnabled) override
    {
        Table::SetEnabled(nControl, bEnabled);
        Told(bEnabled ? "enable" : "disable", nControl);
    }
    void SetShown(LONG nControl, bool bShown) override
    {
        Table::SetShown(nControl, bShown);
        Told(bShown ? "show" : "hide", nControl);
    }
    void Move(LONG nControl, const ControlPlace& place) override
    {
        Table::Move(nControl, place);
        Told("move", nControl,
             std::to_string(place.nLeft) + "," + std::to_string(place.nTop) + "-" +
                 std::to_string(place.nRight) + "," + std::to_string(place.nBottom));
        if (nControl == kWholeView)
            m_events.OnResize();
    }
    bool Select(LONG nControl, LONG nRow) override
    {
        Told("select", nControl, std::to_string(nRow));
        return Table::Select(nControl, nRow);
    }
    void SetCheck(LONG nControl, LONG nState) override
    {
        Table::SetCheck(nControl, nState);
        Told("check", nControl, std::to_string(nState));
    }
    void SetDate(LONG nControl, const SYSTEMTIME* pDate) override
    {
        Table::SetDate(nControl, pDate);
        Told("date", nControl, pDate ? DateText(*pDate) : "none");
    }
    void Repaint(LONG nControl) override { Told("repaint", nControl); }

    static std::string DateText(const SYSTEMTIME& date)
    {
        char text[64];
        std::snprintf(text, sizeof text, "%04u-%02u-%02u %02u:%02u:%02u", date.wYear, date.wMonth,
                      date.wDay, date.wHour, date.wMinute, date.wSecond);
        return text;
    }

protected:
    void Told(const std::string& sVerb, LONG nControl, const std::string& sValue = {})
    {
        if (m_pLog)
            m_pLog->Add(m_sName + ": " + sVerb + " " + std::to_string(nControl) +
                        (sValue.empty() ? "" : " " + sValue));
    }

    const std::string m_sName;
    CallLog* const m_pLog;
    IControlEvents& m_events;
};

class FakePane final : public FakeControls<IPaneView>
{
public:
    using FakeControls::FakeControls;

    std::unique_ptr<FakeGrid> m_pGrid;
    bool m_bRefuseGrid = false;

    IGridView* MakeGrid(IGridEvents& events) override
    {
        if (!m_bRefuseGrid)
            m_pGrid = std::make_unique<FakeGrid>(m_sName + " grid", m_pLog, events);
        return m_pGrid.get();
    }
};

class FakeFolderView final : public FakeControls<IFolderView>
{
public:
    FakeFolderView(std::string sName, CallLog* pLog, IFolderEvents& events)
        : FakeControls(std::move(sName), pLog, events), m_folderEvents(events)
    {}

    bool m_bRefuseFolders = false;
    bool m_bFrozen = false;
    std::string m_sFolder, m_sSelected;
    FolderMode m_mode = ModeNames;
    std::function<LONG(ViewMenu)> m_onMenu;

    IFolderEvents& Events() { return m_folderEvents; }
    // The user selects an entry by its name.
    void Pick(const std::string& sName)
    {
        for (LONG n = 0; n < m_folderEvents.EntryCount(); ++n)
            if (const FolderEntry entry = m_folderEvents.Entry(n); Utf8(entry.pszName) == sName)
                return m_folderEvents.OnSelection(string_t(entry.pszPath).c_str());
    }

    bool ShowFolder(const OLECHAR* pszFolder, FolderMode mode) override
    {
        if (m_bRefuseFolders)
            return false;
        m_sFolder = Utf8(pszFolder);
        m_mode = mode;
        m_sSelected.clear();
        return true;
    }
    void SelectEntry(const OLECHAR* pszPath) override { m_sSelected = Utf8(pszPath); }
    void Freeze(bool bFrozen) override { m_bFrozen = bFrozen; }
    LONG TrackMenu(ViewMenu menu) override { return m_onMenu ? m_onMenu(menu) : 0; }

private:
    IFolderEvents& m_folderEvents;
};

class FakeDialog final : public FakeControls<IDialogView>
{
public:
    FakeDialog(DialogId dialog, LONG_PTR hwndParent, CallLog* pLog, IDialogEvents& events)
        : FakeControls("dialog", pLog, events), m_dialog(dialog), m_hwndParent(hwndParent),
          m_dialogEvents(events)
    {
        Table::Move(kWholeView, {0, 0, 855, 593});
    }
    ~FakeDialog() { CloseChildren(); }

    const DialogId m_dialog;
    const LONG_PTR m_hwndParent;
    LONG m_nResult = 0;                      // 0 while it runs
    std::set<LONG> m_refused;                // panes that can't be made
    std::function<void(FakePane&)> m_onPane; // when one has been made
    std::map<LONG, std::unique_ptr<FakePane>> m_panes;
    std::unique_ptr<FakeFolderView> m_pFolderView;

    IDialogEvents& Events() { return m_dialogEvents; }
    FakePane& Pane(DialogId pane) { return *m_panes.at(pane); }
    FakeGrid& Grid(DialogId pane) { return *Pane(pane).m_pGrid; }
    // Enter while a control of a pane, 0 for the dialog itself, has the focus.
    void PressEnter(LONG nPane, LONG nControl)
    {
        SetFocus(nPane == 0 ? nControl : kWholeView);
        for (auto& [pane, pPane] : m_panes)
            pPane->SetFocus(pane == nPane ? nControl : kWholeView);
        m_dialogEvents.OnDefaultCommand();
    }

    IPaneView* MakePane(DialogId pane, IControlEvents& events) override
    {
        if (m_refused.contains(pane))
            return nullptr;
        auto& pPane = m_panes[pane];
        pPane = std::make_unique<FakePane>(std::to_string(pane), m_pLog, events);
        if (m_onPane)
            m_onPane(*pPane);
        return pPane.get();
    }
    IFolderView* MakeFolderView(IFolderEvents& events) override
    {
        if (m_refused.contains(DialogFolder))
            return nullptr;
        m_pFolderView = std::make_unique<FakeFolderView>("folder", m_pLog, events);
        return m_pFolderView.get();
    }
    void Centre() override
    {
        if (m_pLog)
            m_pLog->Add("dialog: centre");
    }
    LONG_PTR Window() override { return 4711; }
    void End(LONG nResult) override { m_nResult = nResult; }

    // What a view does when it goes.
    void CloseChildren()
    {
        for (auto& [pane, pPane] : m_panes)
            if (pPane->m_pGrid)
                pPane->m_pGrid->Events().OnClose();
        if (m_pFolderView)
            m_pFolderView->Events().OnClose();
        m_panes.clear();
        m_pFolderView.reset();
    }

private:
    IDialogEvents& m_dialogEvents;
};

// The events of a dialog that is there for its panes only.
struct NoDialogEvents : IDialogEvents
{
    void OnOpen(IDialogView&) override {}
    void OnDefaultCommand() override {}
    void OnDestroy() override {}
    void OnText(LONG) override {}
    void OnSelect(LONG) override {}
    void OnClick(LONG) override {}
    void OnDate(LONG) override {}
    void OnResize() override {}
};

// The process's views while it lives.
class FakeViews final : public IDialogViews
{
public:
    explicit FakeViews(CallLog* pLog = nullptr)
        : m_pLog(pLog), m_pBefore(Hesperon::specifics::UILayer::SetDialogViews(this))
    {}
    ~FakeViews() { Hesperon::specifics::UILayer::SetDialogViews(m_pBefore); }

    // What the user does once the dialog is open; a dialog that it leaves open is cancelled.
    std::function<void(FakeDialog&)> m_onRun;
    std::function<void(FakeDialog&)> m_onMade; // before it opens
    bool m_bRefuse = false;                    // dialogs can't be set up
    LONG_PTR m_hwndActive = 42;
    int m_nWaiting = 0, m_nMostWaiting = 0;

    LONG Run(DialogId dialog, LONG_PTR hwndParent, IDialogEvents& events) override
    {
        if (m_bRefuse)
            return kDialogFailed;
        FakeDialog view(dialog, hwndParent, m_pLog, events);
        if (const auto onMade = m_onMade)
            onMade(view);
        events.OnOpen(view);
        if (const auto onRun = m_onRun)
            onRun(view);
        events.OnDestroy();
        view.CloseChildren();
        return view.m_nResult ? view.m_nResult : kDialogCancel;
    }
    LONG_PTR ActiveWindow() override { return m_hwndActive; }
    void ShowWaiting(bool bWaiting) override
    {
        m_nWaiting += bWaiting ? 1 : -1;
        m_nMostWaiting = std::max(m_nMostWaiting, m_nWaiting);
    }

private:
    CallLog* const m_pLog;
    IDialogViews* const m_pBefore;
};

} // namespace dialog_test
